/// Holds the word stream against the plain rules.
#pragma once

#include <Quarry/internal/ParserWordStream.h>
#include <gtest/gtest.h>

#include <string>

#include "support/ByteByByte.h"

namespace WordCutting {

/// Expects that the text is cut as byte by byte.
inline void checkText(const std::string& text) {
  Quarry::ParserWordStream stream(text, 1.1);
  TestSupport::ByteByByte expected(text);
  for (;;) {
    ASSERT_EQ(stream.isExhausted(), expected.isExhausted()) << text;
    if (stream.isExhausted()) return;
    const Quarry::ParserWord* word = stream.next();
    expected.next();
    ASSERT_TRUE(TestSupport::isSame(word, expected)) << text << "\nat " << expected.start;
  }
}

}  // namespace WordCutting
