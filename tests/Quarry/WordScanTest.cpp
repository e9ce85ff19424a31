// Looking at 16 bytes at once: the same answers as byte by byte, and not a byte too far.

#include <Quarry/internal/WordScan.h>
#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <random>
#include <string>

using Quarry::areNameBytes;
using Quarry::countBeforeZero;
using Quarry::countNameBytesQuickly;
using Quarry::countSpacesQuickly;
using Quarry::findNameEnd;
using Quarry::findNumberEnd;
using Quarry::findNumberListEnd;
using Quarry::findShortNumberEnd;
using Quarry::findStringStop;
using Quarry::findWordStop;
using Quarry::hasFractionMark;
using Quarry::skipSpaces;

namespace {

// --- Byte by byte --------------------------------------------------------------------------------

bool isStop(char byte) { return std::strchr(" \t\r\n{}(),=\"", byte) != nullptr && byte != 0; }

bool isNameByte(char byte) {
  const bool isLetter = (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
  const bool isDigit = byte >= '0' && byte <= '9';
  return isLetter || isDigit || (byte != 0 && std::strchr("[]_-.%:", byte) != nullptr);
}

bool isNumberByte(char byte) { return (byte >= '-' && byte <= '<' && byte != '/') || byte == 'e'; }

bool isNumberListByte(char byte) { return static_cast<unsigned char>(byte) <= '<' || byte == 'e'; }

bool isStopInString(char byte) { return byte == 0 || std::strchr("\"\\\r\n", byte) != nullptr; }

bool isFractionMark(char byte) { return byte == 'e' || byte == '.'; }

bool isNoShortNumberByte(char byte) { return (byte < '0' || byte > '9') && !isFractionMark(byte); }

/// Returns the first byte for which `test` holds.
template <class Test>
const char* findFirst(const char* begin, const char* end, Test test) {
  while (begin != end && !test(*begin))
    ++begin;
  return begin;
}

// --- Guarded texts -------------------------------------------------------------------------------

/// Pages with inaccessible ones before and behind: who reads too far is ended by the system.
class GuardedPage {
 public:
  GuardedPage() : pageSize(static_cast<unsigned long>(::sysconf(_SC_PAGESIZE))) {
    void* pages = ::mmap(nullptr, 3 * pageSize, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    region = static_cast<char*>(pages);
    EXPECT_NE(pages, MAP_FAILED);
    EXPECT_EQ(::mprotect(region + pageSize, pageSize, PROT_READ | PROT_WRITE), 0);
  }
  GuardedPage(const GuardedPage&) = delete;
  GuardedPage& operator=(const GuardedPage&) = delete;
  ~GuardedPage() { ::munmap(region, 3 * pageSize); }

  /// Copies a text to where the page ends; it is good until the next one.
  const char* putAtEnd(const std::string& text) const {
    return copy(region + 2 * pageSize - text.size(), text);
  }

  /// Copies a text to where the page begins.
  const char* putAtBegin(const std::string& text) const { return copy(region + pageSize, text); }

 private:
  static const char* copy(char* to, const std::string& text) {
    if (!text.empty()) std::memcpy(to, text.data(), text.size());
    return to;
  }

  unsigned long pageSize;
  char* region;
};

/// Checks what needs 32 bytes.
void checkQuickWays(const char* begin, const char* end) {
  const std::string shown(begin, end);
  const auto isOther = [](char byte) { return byte != ' '; };
  EXPECT_EQ(begin + countSpacesQuickly(begin), findFirst(begin, begin + 32, isOther)) << shown;
  const auto isZero = [](char byte) { return byte == 0; };
  EXPECT_EQ(begin + countBeforeZero(begin), findFirst(begin, begin + 16, isZero)) << shown;
  EXPECT_EQ(begin + countNameBytesQuickly(begin), findNameEnd(begin, begin + 16)) << shown;
  const Quarry::NumberEnd shortNumber = findShortNumberEnd(begin);
  EXPECT_EQ(shortNumber.at, findFirst(begin, begin + 16, isNoShortNumberByte)) << shown;
  EXPECT_EQ(shortNumber.hasFractionMark,
            findFirst(begin, shortNumber.at, isFractionMark) != shortNumber.at)
      << shown;
  const auto isNoNumber = [](char byte) { return !isNumberByte(byte); };
  const char* stop = findFirst(begin, begin + 32, isNoNumber);
  const Quarry::NumberEnd number = findNumberEnd(begin);
  EXPECT_EQ(number.at, stop != begin + 32 ? stop : begin) << shown;
  EXPECT_EQ(number.hasFractionMark, findFirst(begin, number.at, isFractionMark) != number.at)
      << shown;
}

/// Checks every function on the bytes [begin, end), of which there may be more up to `readable`.
void checkRange(const char* begin, const char* end, const char* readable) {
  const std::string shown(begin, end);
  EXPECT_EQ(skipSpaces(begin, end), findFirst(begin, end, [](char b) { return b != ' '; }))
      << shown;
  EXPECT_EQ(findWordStop(begin, end), findFirst(begin, end, isStop)) << shown;
  EXPECT_EQ(areNameBytes(begin, end, readable),
            findFirst(begin, end, [](char b) { return !isNameByte(b); }) == end)
      << shown;
  EXPECT_EQ(hasFractionMark(begin, end, readable), findFirst(begin, end, isFractionMark) != end)
      << shown;
  EXPECT_EQ(findNameEnd(begin, end), findFirst(begin, end, [](char b) { return !isNameByte(b); }))
      << shown;
  EXPECT_EQ(findStringStop(begin, end), findFirst(begin, end, isStopInString)) << shown;
  EXPECT_EQ(findNumberListEnd(begin, end),
            findFirst(begin, end, [](char b) { return !isNumberListByte(b); }))
      << shown;
  if (end - begin >= 32) checkQuickWays(begin, end);
}

/// Checks the text from every byte to its end, and to every earlier end about the block sizes.
void checkText(const char* begin, unsigned long size) {
  const char* readable = begin + size;
  for (const char* from = begin; from <= readable; ++from) {
    const auto left = static_cast<unsigned long>(readable - from);
    checkRange(from, readable, readable);
    for (const unsigned long length : {0UL, 1UL, 2UL, 15UL, 16UL, 17UL, 31UL, 32UL, 33UL}) {
      if (length <= left) checkRange(from, from + length, readable);
    }
  }
}

/// Makes a text of one kind of byte with few others, so that blocks without a hit are common.
std::string makeText(std::mt19937& random, unsigned long size) {
  const std::string mostly = " aZ7\t/";
  const std::string others =
      " \t\r\n{}(),=\"\\!#$&'*+-./0:;<>?@[]^_`e|~%\x7F\x80\xFF" + std::string(1, '\0');
  std::string text(size, mostly[random() % mostly.size()]);
  for (unsigned long i = random() % 4; i > 0 && size > 0; --i)
    text[random() % size] = others[random() % others.size()];
  return text;
}

}  // namespace

TEST(WordScanTest, TextsAtTheEndOfReadableMemoryAreScannedAsByteByByte) {
  const GuardedPage page;
  std::mt19937 random(1);
  for (unsigned long size = 0; size <= 70; ++size) {
    for (int i = 0; i < 10; ++i)
      checkText(page.putAtEnd(makeText(random, size)), size);
  }
}

TEST(WordScanTest, TextsAtTheBeginningOfReadableMemoryAreScannedAsByteByByte) {
  const GuardedPage page;
  std::mt19937 random(2);
  for (unsigned long size = 0; size <= 70; ++size) {
    for (int i = 0; i < 5; ++i)
      checkText(page.putAtBegin(makeText(random, size)), size);
  }
}

TEST(WordScanTest, EveryByteIsToldFromEveryOtherAtEveryPlace) {
  const GuardedPage page;
  for (const char fill : {'a', ' ', '/'}) {
    for (unsigned long place = 0; place < 33; ++place) {
      for (int byte = 0; byte < 256; ++byte) {
        std::string text(33, fill);
        text[place] = static_cast<char>(byte);
        const char* begin = page.putAtEnd(text);
        checkRange(begin, begin + 33, begin + 33);
        checkRange(begin, begin + 16, begin + 33);
        checkRange(begin + 17, begin + 33, begin + 33);
      }
    }
  }
}

TEST(WordScanTest, BytesBehindTheEndAreNotCountedThoughTheyMayBeRead) {
  const std::string text = "abc/.e{ \"" + std::string(16, '/');
  const char* begin = text.data();
  EXPECT_TRUE(areNameBytes(begin, begin + 3, begin + text.size()));
  EXPECT_FALSE(hasFractionMark(begin, begin + 3, begin + text.size()));
  EXPECT_EQ(findWordStop(begin, begin + 3), begin + 3);
}

TEST(WordScanTest, AnEmptyRangeHasOnlyNameBytesAndNoFractionMark) {
  const std::string text(32, '.');
  EXPECT_TRUE(areNameBytes(text.data(), text.data(), text.data() + 32));
  EXPECT_FALSE(hasFractionMark(text.data(), text.data(), text.data() + 32));
}
