#include <Quarry/internal/OutputBuffer.h>
#include <Quarry/internal/SlabHeap.h>
#include <Quarry/internal/SlabSource.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace {

using Quarry::OutputBuffer;
using Quarry::SlabSource;

/// More than a few blocks hold.
constexpr std::size_t MANY = 300'000;

/// So many bytes before the end of the first block are tried one by one.
constexpr std::size_t AROUND = 2 * OutputBuffer::MOST_CLAIMED;
constexpr std::size_t ABOUT_FIRST = 4096;

std::string contentOf(const OutputBuffer& buffer) {
  std::string text;
  buffer.appendTo(text);
  return text;
}

/// Bytes of which each is unlike its neighbours.
std::string makeBytes(std::size_t count) {
  std::string bytes;
  for (std::size_t i = 0; i < count; ++i)
    bytes += static_cast<char>('!' + i % 89);
  return bytes;
}

/// Calls `append(buffer)` with every number of bytes about the end of the first block before it,
/// and expects it to have appended `piece`.
template <class Append>
void expectAtEveryRoom(std::string_view piece, Append append) {
  for (std::size_t before = ABOUT_FIRST - AROUND; before <= ABOUT_FIRST; ++before) {
    const std::string begin = makeBytes(before);
    OutputBuffer buffer;
    buffer.append(begin);
    append(buffer);
    buffer.push_back('|');
    ASSERT_EQ(contentOf(buffer), begin + std::string(piece) + '|') << before;
    ASSERT_EQ(buffer.size(), before + piece.size() + 1);
  }
}

// --- Nothing and little --------------------------------------------------------------------------

TEST(OutputBufferTest, ANewOneIsEmpty) {
  const OutputBuffer buffer;
  EXPECT_EQ(buffer.size(), 0U);
  EXPECT_EQ(contentOf(buffer), "");
}

TEST(OutputBufferTest, AnEmptyPieceIsNothing) {
  OutputBuffer buffer;
  buffer.append(std::string_view());
  buffer.append(0, ' ');
  EXPECT_EQ(buffer.size(), 0U);
  EXPECT_EQ(contentOf(buffer), "");
}

TEST(OutputBufferTest, PiecesFollowOneAnother) {
  OutputBuffer buffer;
  buffer.push_back('a');
  buffer.append("bcd");
  buffer.append(2, '-');
  buffer.appendShort<8>("ef......", 2);
  buffer.claim(1)[0] = 'g';
  EXPECT_EQ(contentOf(buffer), "abcd--efg");
}

TEST(OutputBufferTest, ZeroBytesAreBytes) {
  OutputBuffer buffer;
  buffer.append(std::string_view("a\0b", 3));
  EXPECT_EQ(contentOf(buffer), std::string("a\0b", 3));
}

// --- At the end of a block -----------------------------------------------------------------------

TEST(OutputBufferTest, AByteFindsRoom) {
  expectAtEveryRoom("x", [](OutputBuffer& buffer) { buffer.push_back('x'); });
}

TEST(OutputBufferTest, APieceFindsRoom) {
  const std::string piece = makeBytes(50);
  expectAtEveryRoom(piece, [&](OutputBuffer& buffer) { buffer.append(piece); });
}

TEST(OutputBufferTest, AShortPieceFindsRoom) {
  expectAtEveryRoom(
      "abc", [](OutputBuffer& buffer) { buffer.appendShort<24>("abc.....................", 3); });
}

TEST(OutputBufferTest, RepeatedBytesFindRoom) {
  expectAtEveryRoom(std::string(63, ' '), [](OutputBuffer& buffer) { buffer.append(63, ' '); });
}

TEST(OutputBufferTest, ClaimedBytesLieSideBySide) {
  const std::string piece = makeBytes(OutputBuffer::MOST_CLAIMED);
  expectAtEveryRoom(
      piece, [&](OutputBuffer& buffer) { piece.copy(buffer.claim(piece.size()), piece.size()); });
}

// --- Many blocks ---------------------------------------------------------------------------------

TEST(OutputBufferTest, ALongPieceIsTakenWhole) {
  const std::string piece = makeBytes(MANY);
  OutputBuffer buffer;
  buffer.append("begin ");
  buffer.append(piece);
  buffer.append(" end");
  EXPECT_EQ(buffer.size(), piece.size() + 10);
  EXPECT_TRUE(contentOf(buffer) == "begin " + piece + " end");
}

TEST(OutputBufferTest, ManyRepeatedBytesAreTakenWhole) {
  OutputBuffer buffer;
  buffer.append(MANY, ' ');
  EXPECT_EQ(buffer.size(), MANY);
  EXPECT_TRUE(contentOf(buffer) == std::string(MANY, ' '));
}

TEST(OutputBufferTest, ManyPiecesFollowOneAnother) {
  OutputBuffer buffer;
  std::string expected;
  for (std::size_t i = 0; expected.size() < MANY; ++i) {
    const std::string piece = makeBytes(i % 200);
    buffer.append(piece);
    expected += piece;
    ASSERT_EQ(buffer.size(), expected.size());
  }
  EXPECT_TRUE(contentOf(buffer) == expected);
}

TEST(OutputBufferTest, AClaimedPlaceCanBeWrittenLater) {
  OutputBuffer buffer;
  buffer.append("size ");
  char* place = buffer.claim(4);
  buffer.append(MANY, 'x');
  std::string_view("1234").copy(place, 4);
  EXPECT_EQ(contentOf(buffer).substr(0, 12), "size 1234xxx");
}

#ifndef QUARRY_PLAIN_HEAP

/// Slabs that are taken, so that as many others are kept when they come back.
class TakenSlabs {
 public:
  explicit TakenSlabs(std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
      slabs.push_back(SlabSource::get().take());
  }
  TakenSlabs(const TakenSlabs&) = delete;
  TakenSlabs& operator=(const TakenSlabs&) = delete;
  ~TakenSlabs() {
    for (void* slab : slabs)
      SlabSource::get().giveBack(slab);
  }

 private:
  std::vector<void*> slabs;
};

TEST(OutputBufferTest, ItsMemoryIsUsedAgain) {
  constexpr std::size_t BLOCKS = 4;
  const auto fill = [](OutputBuffer& buffer) {
    std::set<std::uintptr_t> slabs;
    for (std::size_t i = 0; i < BLOCKS; ++i) {
      buffer.append(SlabSource::SLAB_SIZE, 'x');
      slabs.insert(reinterpret_cast<std::uintptr_t>(buffer.claim(1)) / SlabSource::SLAB_SIZE);
    }
    return slabs;
  };
  const TakenSlabs taken(2 * BLOCKS);
  std::set<std::uintptr_t> before;
  {
    OutputBuffer first;
    before = fill(first);
  }
  OutputBuffer second;
  EXPECT_EQ(fill(second), before);
}

#endif

// --- Where it goes -------------------------------------------------------------------------------

TEST(OutputBufferTest, WhatTheTargetHoldsComesFirst) {
  OutputBuffer buffer;
  buffer.append("new");
  std::string text = "old ";
  buffer.appendTo(text);
  EXPECT_EQ(text, "old new");
}

TEST(OutputBufferTest, AVectorIsATargetToo) {
  OutputBuffer buffer;
  buffer.append("new");
  std::vector<char> bytes = {'o', 'l', 'd'};
  buffer.appendTo(bytes);
  EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "oldnew");
}

TEST(OutputBufferTest, AnEmptyTargetGetsNoMoreRoomThanItNeeds) {
  OutputBuffer buffer;
  buffer.append(MANY, 'x');
  std::vector<char> bytes;
  buffer.appendTo(bytes);
  EXPECT_EQ(bytes.capacity(), MANY);
}

/// Else to append many small pieces would copy all that is there each time.
TEST(OutputBufferTest, ATargetThatHasToGrowGrowsByHalfAtLeast) {
  OutputBuffer buffer;
  buffer.append("x");
  std::vector<char> bytes(1000);
  buffer.appendTo(bytes);
  EXPECT_GE(bytes.capacity(), 1500U);
}

TEST(OutputBufferTest, ATargetWithRoomDoesNotMove) {
  OutputBuffer buffer;
  buffer.append("new");
  std::vector<char> bytes;
  bytes.reserve(10);
  const char* place = bytes.data();
  buffer.appendTo(bytes);
  EXPECT_EQ(bytes.data(), place);
  EXPECT_EQ(bytes.capacity(), 10U);
}

}  // namespace
