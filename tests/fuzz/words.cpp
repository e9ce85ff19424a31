// Any bytes are cut into words as the rules say, and each word is what its tests say. Words that
// are cut for the tree are the same ones.

#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/WordClassifier.h>

#include "Fuzz.h"
#include "support/ByteByByte.h"
#include "support/WordTests.h"

using Fuzz::require;
using Quarry::ParserWord;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  const double version = input.takeChoice() % 2 == 0 ? 1.1 : 1.0;
  const std::string& text = input.getBytes();
  Quarry::ParserWordStream stream(text, version);
  Quarry::WordCutter cutter(text, version);
  TestSupport::ByteByByte expected(text);
  unsigned long end = 0;
  while (!stream.isExhausted()) {
    require(!expected.isExhausted());
    const ParserWord* word = stream.next();
    const Quarry::TextWord* cut = cutter.next();
    require((cut == nullptr) == (word == nullptr));
    expected.next();
    require(TestSupport::isSame(word, expected));
    if (word == nullptr) continue;
    require(word->getStart() >= end && word->getLength() <= text.size() - word->getStart());
    end = word->getStart() + word->getLength();
    const ParserWord copy(*word);
    require(TestSupport::passesTest(copy) == (copy.getType() != ParserWord::WORD_UNKNOWN));
    require(Quarry::WordClassifier::classify(*word) == copy.getType());
    require(cut->getType() == copy.getType());
    require(cut->getLine() == word->getLine() && cut->getColumn() == word->getColumn());
    require(word->getString().size() <= word->getLength());
  }
  require(expected.isExhausted());
  return 0;
}
