/// Holds the words of a text against the plain rules.
#pragma once

#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/WordCutter.h>
#include <gtest/gtest.h>

#include <string>

#include "support/ByteByByte.h"

namespace WordCutting {

/// Returns what ParserWord's own tests say, in the parser's order.
inline Quarry::ParserWord::Type typeByTests(const Quarry::ParserWord& word) {
  Quarry::ParserValue::Type type = Quarry::ParserValue::TYPE_EMPTY;
  static_cast<void>(word.isIdentifier() || word.isKeyword() || word.isOperator() ||
                    word.isSeparator() || word.isValue(type));
  return word.getType();
}

/// Expects that the cutter's word is the stream's, and classified as by its tests.
inline void checkCut(const std::string& text, const Quarry::TextWord& cut,
                     const Quarry::ParserWord& word) {
  const unsigned long length = word.getLength();
  const std::string bytes = text.substr(word.getStart(), length);
  ASSERT_EQ(std::string(cut.begin(), cut.end()), bytes) << text;
  ASSERT_EQ(cut.getLine(), word.getLine()) << text << "\nat " << bytes;
  ASSERT_EQ(cut.getColumn(), word.getColumn()) << text << "\nat " << bytes;
  ASSERT_EQ(cut.getType(), typeByTests(word)) << text << "\nat " << bytes;
  const bool hasBackslash = bytes.find('\\') != std::string::npos;
  const bool isString = cut.getType() == Quarry::ParserWord::WORD_STRING;
  ASSERT_TRUE(!isString || !hasBackslash || cut.hasEscapes()) << text << "\nat " << bytes;
}

/// Expects that the text is cut as byte by byte.
inline void checkWords(const std::string& text) {
  Quarry::ParserWordStream stream(text, 1.1);
  Quarry::WordCutter cutter(text, 1.1);
  TestSupport::ByteByByte expected(text);
  for (;;) {
    ASSERT_EQ(stream.isExhausted(), expected.isExhausted()) << text;
    ASSERT_EQ(cutter.isExhausted(), expected.isExhausted()) << text;
    if (stream.isExhausted()) return;
    const Quarry::ParserWord* word = stream.next();
    const Quarry::TextWord* cut = cutter.next();
    expected.next();
    ASSERT_TRUE(TestSupport::isSame(word, expected)) << text << "\nat " << expected.start;
    ASSERT_EQ(cut == nullptr, word == nullptr) << text;
    if (word != nullptr) checkCut(text, *cut, *word);
  }
}

/// The same, also where much is left behind the words, so that they are cut the quick way.
inline void checkText(const std::string& text) {
  constexpr unsigned long MUCH = 80;
  checkWords(text);
  checkWords(text + std::string(MUCH, ' '));
  checkWords(text + std::string(MUCH, 'a'));
}

}  // namespace WordCutting
