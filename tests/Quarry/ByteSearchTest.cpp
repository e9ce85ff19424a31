#include <Quarry/internal/ByteSearch.h>
#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

using Quarry::countQuotes;
using Quarry::findAnyOf;
using Quarry::findByteOrPair;

namespace {

/// Beyond two groups of four blocks nothing new begins.
constexpr std::size_t LONGEST = 140;

std::size_t findMark(std::string_view text) {
  const char* found = findAnyOf<'#', '/', '"', '\\'>(text.data(), text.data() + text.size());
  return static_cast<std::size_t>(found - text.data());
}

bool isQuoteCountOdd(std::string_view text) {
  return countQuotes(text.data(), text.data() + text.size()).isOdd;
}

bool hasQuoteBehindBackslash(std::string_view text) {
  return countQuotes(text.data(), text.data() + text.size()).hasBehindBackslash;
}

/// A page of memory between two that must not be touched.
class GuardedPage {
 public:
  GuardedPage()
      : size(static_cast<std::size_t>(sysconf(_SC_PAGESIZE))),
        pages(static_cast<char*>(
            mmap(nullptr, 3 * size, PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))) {
    EXPECT_EQ(mprotect(pages + size, size, PROT_READ | PROT_WRITE), 0);
  }
  GuardedPage(const GuardedPage&) = delete;
  GuardedPage& operator=(const GuardedPage&) = delete;
  ~GuardedPage() { munmap(pages, 3 * size); }

  std::string_view placeAtBegin(const std::string& text) { return place(pages + size, text); }
  std::string_view placeAtEnd(const std::string& text) {
    return place(pages + 2 * size - text.size(), text);
  }

 private:
  static std::string_view place(char* where, const std::string& text) {
    std::copy(text.begin(), text.end(), where);
    return {where, text.size()};
  }

  std::size_t size;
  char* pages;
};

}  // namespace

// --- findAnyOf -----------------------------------------------------------------------------------

TEST(FindAnyOfTest, NothingIsFoundInAnEmptyText) { EXPECT_EQ(findMark(""), 0U); }

TEST(FindAnyOfTest, WithoutAHitTheEndIsReturned) {
  for (std::size_t size = 0; size < LONGEST; ++size) {
    EXPECT_EQ(findMark(std::string(size, 'a')), size);
  }
}

TEST(FindAnyOfTest, EachOfTheBytesIsFoundAtEveryPlaceOfEveryLength) {
  for (std::size_t size = 1; size < LONGEST; ++size) {
    for (std::size_t place = 0; place < size; ++place) {
      for (const char mark : {'#', '/', '"', '\\'}) {
        std::string text(size, 'a');
        text[place] = mark;
        EXPECT_EQ(findMark(text), place) << mark << " in " << size << " bytes";
      }
    }
  }
}

TEST(FindAnyOfTest, TheFirstOfTwoHitsIsReturned) {
  for (std::size_t first = 0; first < LONGEST; ++first) {
    for (std::size_t second = first + 1; second < LONGEST; ++second) {
      std::string text(LONGEST, 'a');
      text[first] = '/';
      text[second] = '#';
      EXPECT_EQ(findMark(text), first);
    }
  }
}

TEST(FindAnyOfTest, OnlyTheBytesThatAreAskedForAreFound) {
  for (int value = 0; value < 256; ++value) {
    const char byte = static_cast<char>(value);
    const bool isMark = byte == '#' || byte == '/' || byte == '"' || byte == '\\';
    EXPECT_EQ(findMark(std::string(20, byte)), isMark ? 0U : 20U) << value;
  }
}

TEST(FindAnyOfTest, ZeroBytesAndBytesAbove127CanBeAskedFor) {
  const std::string text = std::string(17, 'a') + '\0' + '\xFF';
  const char* begin = text.data();
  const char* end = begin + text.size();
  EXPECT_EQ((findAnyOf<'\0'>(begin, end)), begin + 17);
  EXPECT_EQ((findAnyOf<'\xFF'>(begin, end)), begin + 18);
}

TEST(FindAnyOfTest, AHitBehindTheRangeIsNone) {
  const std::string text = std::string(40, 'a') + "#";
  for (std::size_t size = 0; size <= 40; ++size) {
    EXPECT_EQ(findMark(std::string_view(text).substr(40 - size, size)), size);
  }
}

TEST(FindAnyOfTest, AHitBeforeTheRangeIsNone) {
  const std::string text = "#" + std::string(40, 'a');
  for (std::size_t size = 0; size <= 40; ++size) {
    EXPECT_EQ(findMark(std::string_view(text).substr(1, size)), size);
  }
}

TEST(FindAnyOfTest, NothingOutsideTheRangeIsRead) {
  GuardedPage page;
  for (std::size_t size = 0; size < LONGEST; ++size) {
    EXPECT_EQ(findMark(page.placeAtBegin(std::string(size, 'a'))), size);
    EXPECT_EQ(findMark(page.placeAtEnd(std::string(size, 'a'))), size);
  }
}

// --- findByteOrPair ------------------------------------------------------------------------------

namespace {

std::size_t findHashOrSlashes(std::string_view text) {
  const char* found = findByteOrPair<'#', '/'>(text.data(), text.data() + text.size());
  return static_cast<std::size_t>(found - text.data());
}

}  // namespace

TEST(FindByteOrPairTest, TheByteIsFoundAtEveryPlaceOfEveryLength) {
  for (std::size_t size = 1; size < LONGEST; ++size) {
    for (std::size_t place = 0; place < size; ++place) {
      std::string text(size, 'a');
      text[place] = '#';
      EXPECT_EQ(findHashOrSlashes(text), place) << size;
    }
  }
}

TEST(FindByteOrPairTest, ThePairIsFoundAtEveryPlaceOfEveryLength) {
  for (std::size_t size = 2; size < LONGEST; ++size) {
    for (std::size_t place = 0; place + 1 < size; ++place) {
      std::string text(size, 'a');
      text.replace(place, 2, "//");
      EXPECT_EQ(findHashOrSlashes(text), place) << size;
    }
  }
}

TEST(FindByteOrPairTest, OneOfThePairIsNoHitAtAnyPlaceOfAnyLength) {
  for (std::size_t size = 1; size < LONGEST; ++size) {
    for (std::size_t place = 0; place < size; ++place) {
      std::string text(size, 'a');
      text[place] = '/';
      EXPECT_EQ(findHashOrSlashes(text), size) << place;
    }
  }
}

TEST(FindByteOrPairTest, APairThatReachesOverTheEndIsNoHit) {
  const std::string text = std::string(40, 'a') + "//";
  for (std::size_t size = 1; size <= 41; ++size) {
    EXPECT_EQ(findHashOrSlashes(std::string_view(text).substr(41 - size, size)), size);
  }
}

TEST(FindByteOrPairTest, TheFirstOfTwoHitsIsReturned) {
  for (std::size_t first = 0; first < LONGEST; ++first) {
    for (std::size_t second = first + 2; second < LONGEST; ++second) {
      std::string text(LONGEST, 'a');
      text.replace(first, 2, "//");
      text[second] = '#';
      EXPECT_EQ(findHashOrSlashes(text), first);
    }
  }
}

TEST(FindByteOrPairTest, NothingOutsideTheRangeIsRead) {
  GuardedPage page;
  for (std::size_t size = 0; size < LONGEST; ++size) {
    EXPECT_EQ(findHashOrSlashes(page.placeAtBegin(std::string(size, '-'))), size);
    EXPECT_EQ(findHashOrSlashes(page.placeAtEnd(std::string(size, '-'))), size);
  }
}

// --- countQuotes ---------------------------------------------------------------------------------

TEST(CountQuotesTest, NoneIsAnEvenNumber) {
  for (std::size_t size = 0; size < LONGEST; ++size) {
    EXPECT_FALSE(isQuoteCountOdd(std::string(size, 'a')));
  }
}

TEST(CountQuotesTest, OneIsCountedAtEveryPlaceOfEveryLength) {
  for (std::size_t size = 1; size < LONGEST; ++size) {
    for (std::size_t place = 0; place < size; ++place) {
      std::string text(size, 'a');
      text[place] = '"';
      EXPECT_TRUE(isQuoteCountOdd(text)) << place << " of " << size;
    }
  }
}

TEST(CountQuotesTest, TwoAreCountedAtAnyTwoPlaces) {
  for (std::size_t first = 0; first < LONGEST; ++first) {
    for (std::size_t second = first + 1; second < LONGEST; ++second) {
      std::string text(LONGEST, 'a');
      text[first] = '"';
      text[second] = '"';
      EXPECT_FALSE(isQuoteCountOdd(text)) << first << " and " << second;
    }
  }
}

TEST(CountQuotesTest, ATextOfNothingElseIsAsOddAsItsLength) {
  for (std::size_t size = 0; size < LONGEST; ++size) {
    EXPECT_EQ(isQuoteCountOdd(std::string(size, '"')), size % 2 == 1) << size;
  }
}

TEST(CountQuotesTest, AQuoteBehindABackslashIsSeenAtEveryPlaceOfEveryLength) {
  for (std::size_t size = 2; size < LONGEST; ++size) {
    for (std::size_t place = 0; place + 1 < size; ++place) {
      std::string text(size, 'a');
      text.replace(place, 2, "\\\"");
      EXPECT_TRUE(hasQuoteBehindBackslash(text)) << place << " of " << size;
      EXPECT_TRUE(isQuoteCountOdd(text)) << place << " of " << size;
    }
  }
}

TEST(CountQuotesTest, ABackslashBehindAQuoteOrFurtherBeforeItIsNotSeen) {
  for (std::size_t size = 3; size < LONGEST; ++size) {
    for (std::size_t place = 0; place + 2 < size; ++place) {
      std::string text(size, 'a');
      EXPECT_FALSE(hasQuoteBehindBackslash(text.replace(place, 3, "\"\\a")));
      EXPECT_FALSE(hasQuoteBehindBackslash(text.replace(place, 3, "\\a\"")));
    }
  }
}

TEST(CountQuotesTest, ABackslashBeforeTheRangeIsNotSeen) {
  const std::string text = "\\\"" + std::string(40, 'a');
  for (std::size_t size = 1; size <= 40; ++size) {
    EXPECT_FALSE(hasQuoteBehindBackslash(std::string_view(text).substr(1, size)));
  }
}

TEST(CountQuotesTest, NothingOutsideTheRangeIsCounted) {
  const std::string text = "\"" + std::string(40, 'a') + "\"";
  for (std::size_t size = 0; size <= 40; ++size) {
    EXPECT_FALSE(isQuoteCountOdd(std::string_view(text).substr(1, size)));
    EXPECT_FALSE(isQuoteCountOdd(std::string_view(text).substr(41 - size, size)));
  }
}

TEST(CountQuotesTest, NothingOutsideTheRangeIsRead) {
  GuardedPage page;
  for (std::size_t size = 0; size < LONGEST; ++size) {
    EXPECT_FALSE(isQuoteCountOdd(page.placeAtBegin(std::string(size, 'a'))));
    EXPECT_FALSE(isQuoteCountOdd(page.placeAtEnd(std::string(size, 'a'))));
  }
}
