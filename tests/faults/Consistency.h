/// Checks that a tree of which a part is missing is a tree all the same.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/internal/SlabHeap.h>
#include <gtest/gtest.h>

#include <string>

#include "support/Documents.h"

namespace TestSupport {

/// How often something is done that has to need much memory, and how many groups stand one within
/// another. With the address sanitizer each part of a tree is an allocation and so a fault of its
/// own: there, few are many.
#ifdef QUARRY_PLAIN_HEAP
constexpr int MANY = 25;
constexpr int DEEP = 25;
#else
constexpr int MANY = 3000;
constexpr int DEEP = 150;
#endif

/// Expects that a group can be written, copied, encoded, decoded and looked through.
inline void expectConsistent(const Quarry::ParserGroup& group) {
  const std::string text = writeLines(group);
  EXPECT_EQ(writeLines(Quarry::ParserGroup(group)), text);
  const std::vector<char> bytes = group.getBinary(false);
  Quarry::ParserGroup decoded("decoded");
  unsigned long position = 0;
  EXPECT_TRUE(decoded.setBinary(bytes, position));
  EXPECT_EQ(position, bytes.size());
  for (unsigned long i = 0; i < group.getItemCount(); ++i) {
    const Quarry::ParserItem* item = group.getItem(i);
    if (item == nullptr) continue;
    EXPECT_NE(group.getItem(item->getName()), nullptr) << item->getName();
  }
}

}  // namespace TestSupport
