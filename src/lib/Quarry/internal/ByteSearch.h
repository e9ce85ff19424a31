/// Finds the bytes that matter in a text in which most do not.
///
/// A text comes from its file at a speed that a loop over its bytes is far from, so these functions
/// look at 16 bytes with one instruction. Every x86-64 processor has these instructions, and
/// nothing is asked at run time; where there are none, a plain loop does all of the work.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Quarry {

#ifdef __SSE2__

namespace detail {

constexpr std::ptrdiff_t BLOCK_SIZE = 16;

/// Marks the places at which one of the bytes `Wanted` stands in the block of 16 bytes.
template <char... Wanted>
__m128i markInBlock(const char* block) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block));
  __m128i hits = _mm_setzero_si128();
  ((hits = _mm_or_si128(hits, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(Wanted)))), ...);
  return hits;
}

/// Returns marked places as bits.
inline unsigned toBits(__m128i marks) { return static_cast<unsigned>(_mm_movemask_epi8(marks)); }

/// Returns the marked places of four blocks as bits; 0 at once when there are none.
inline std::uint64_t toBits(const __m128i (&marks)[4]) {
  const __m128i firstHalf = _mm_or_si128(marks[0], marks[1]);
  const __m128i secondHalf = _mm_or_si128(marks[2], marks[3]);
  if (toBits(_mm_or_si128(firstHalf, secondHalf)) == 0) return 0;
  std::uint64_t bits = 0;
  for (int i = 0; i < 4; ++i)
    bits |= std::uint64_t{toBits(marks[i])} << BLOCK_SIZE * i;
  return bits;
}

template <char... Wanted>
unsigned findInBlock(const char* block) {
  return toBits(markInBlock<Wanted...>(block));
}

/// Marks the places at which the byte `Single` or the first of two bytes `Doubled` stands. One byte
/// behind the block is read.
template <char Single, char Doubled>
__m128i markByteOrPair(const char* block) {
  const __m128i pairs = _mm_and_si128(markInBlock<Doubled>(block), markInBlock<Doubled>(block + 1));
  return _mm_or_si128(pairs, markInBlock<Single>(block));
}

}  // namespace detail

#endif

/// Returns the first of [begin, end) that is one of the bytes `Wanted`, or `end`. Nothing outside
/// [begin, end) is read.
template <char... Wanted>
const char* findAnyOf(const char* begin, const char* end) {
#ifdef __SSE2__
  if (end - begin >= detail::BLOCK_SIZE) {
    const char* last = end - detail::BLOCK_SIZE;  // what it shares with the block before is no hit
    for (; begin < last; begin += detail::BLOCK_SIZE) {
      const unsigned hits = detail::findInBlock<Wanted...>(begin);
      if (hits != 0) return begin + std::countr_zero(hits);
    }
    const unsigned hits = detail::findInBlock<Wanted...>(last);
    return hits != 0 ? last + std::countr_zero(hits) : end;
  }
#endif
  while (begin != end && ((*begin != Wanted) && ...))
    ++begin;
  return begin;
}

/// Returns the first of [begin, end) that is the byte `Single`, or the first of two bytes
/// `Doubled`, or `end`. Nothing outside [begin, end) is read.
template <char Single, char Doubled>
const char* findByteOrPair(const char* begin, const char* end) {
#ifdef __SSE2__
  constexpr auto mark = detail::markByteOrPair<Single, Doubled>;
  constexpr std::ptrdiff_t FOUR_BLOCKS = 4 * detail::BLOCK_SIZE;
  for (; end - begin > FOUR_BLOCKS; begin += FOUR_BLOCKS) {
    const __m128i marks[] = {mark(begin), mark(begin + detail::BLOCK_SIZE),
                             mark(begin + 2 * detail::BLOCK_SIZE),
                             mark(begin + 3 * detail::BLOCK_SIZE)};
    const std::uint64_t hits = detail::toBits(marks);
    if (hits != 0) return begin + std::countr_zero(hits);
  }
  for (; end - begin > detail::BLOCK_SIZE; begin += detail::BLOCK_SIZE) {
    const unsigned hits = detail::toBits(mark(begin));
    if (hits != 0) return begin + std::countr_zero(hits);
  }
#endif
  const auto isPair = [end](const char* at) {
    return *at == Doubled && at + 1 != end && at[1] == Doubled;
  };
  while (begin != end && *begin != Single && !isPair(begin))
    ++begin;
  return begin;
}

/// What countQuotes() finds.
struct QuoteCount {
  bool isOdd;               ///< whether the number of quotes is odd
  bool hasBehindBackslash;  ///< whether one of them stands right behind a backslash
};

/// Counts the double quotes in [begin, end). Nothing outside [begin, end) is read.
inline QuoteCount countQuotes(const char* begin, const char* end) {
  QuoteCount count = {false, false};
  if (begin == end) return count;
  if (*begin++ == '"') count.isOdd = true;
#ifdef __SSE2__
  if (end - begin >= detail::BLOCK_SIZE) {
    const char* last = end - detail::BLOCK_SIZE;
    __m128i oddPlaces = _mm_setzero_si128();  // of a block, at which an odd number of quotes stood
    __m128i escapedPlaces = _mm_setzero_si128();  // at which one stood behind a backslash
#pragma GCC unroll 4
    for (; begin < last; begin += detail::BLOCK_SIZE) {
      const __m128i quotes = detail::markInBlock<'"'>(begin);
      const __m128i escaped = _mm_and_si128(quotes, detail::markInBlock<'\\'>(begin - 1));
      oddPlaces = _mm_xor_si128(oddPlaces, quotes);
      escapedPlaces = _mm_or_si128(escapedPlaces, escaped);
    }
    const std::ptrdiff_t shared = begin - last;  // with the block before
    const unsigned quotes = detail::findInBlock<'"'>(last) >> shared;
    const unsigned escaped = quotes & detail::findInBlock<'\\'>(last - 1) >> shared;
    const bool isOdd = std::popcount(detail::toBits(oddPlaces) ^ quotes) % 2 == 1;
    if (isOdd) count.isOdd = !count.isOdd;
    count.hasBehindBackslash = (detail::toBits(escapedPlaces) | escaped) != 0;
    return count;
  }
#endif
  for (; begin != end; ++begin) {
    if (*begin != '"') continue;
    count.isOdd = !count.isOdd;
    if (begin[-1] == '\\') count.hasBehindBackslash = true;
  }
  return count;
}

}  // namespace Quarry
