/// Finds the bytes that matter in a text in which most do not.
///
/// A text comes from its file at a speed that a loop over its bytes is far from, so these functions
/// look at 16 bytes with one instruction. Every x86-64 processor has these instructions, and
/// nothing is asked at run time; where there are none, a plain loop does all of the work.
#pragma once

#include <bit>
#include <cstddef>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Quarry {

#ifdef __SSE2__

namespace detail {

constexpr std::ptrdiff_t BLOCK_SIZE = 16;

/// Returns, as bits, the places at which one of the bytes `Wanted` stands in the block of 16 bytes.
template <char... Wanted>
unsigned findInBlock(const char* block) {
  const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(block));
  __m128i hits = _mm_setzero_si128();
  ((hits = _mm_or_si128(hits, _mm_cmpeq_epi8(bytes, _mm_set1_epi8(Wanted)))), ...);
  return static_cast<unsigned>(_mm_movemask_epi8(hits));
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

/// What countQuotes() finds.
struct QuoteCount {
  bool isOdd;               ///< whether the number of quotes is odd
  bool hasBehindBackslash;  ///< whether one of them stands right behind a backslash
};

/// Counts the double quotes in [begin, end). Nothing outside [begin, end) is read.
inline QuoteCount countQuotes(const char* begin, const char* end) {
#ifdef __SSE2__
  if (end - begin >= detail::BLOCK_SIZE) {
    const char* last = end - detail::BLOCK_SIZE;
    unsigned oddPlaces = 0;        // the places of a block at which an odd number of quotes stood
    unsigned behindBackslash = 0;  // the places at which one stood behind a backslash
    unsigned carried = 0;          // whether a backslash stands right before the block
    for (; begin < last; begin += detail::BLOCK_SIZE) {
      const unsigned quotes = detail::findInBlock<'"'>(begin);
      const unsigned backslashes = detail::findInBlock<'\\'>(begin);
      oddPlaces ^= quotes;
      behindBackslash |= quotes & (backslashes << 1 | carried);
      carried = backslashes >> (detail::BLOCK_SIZE - 1);
    }
    const std::ptrdiff_t shared = begin - last;  // with the block before
    const unsigned quotes = detail::findInBlock<'"'>(last);
    const unsigned backslashes = detail::findInBlock<'\\'>(last);
    oddPlaces ^= quotes >> shared;
    behindBackslash |= (quotes & (backslashes << 1 | carried)) >> shared;
    return {std::popcount(oddPlaces) % 2 == 1, behindBackslash != 0};
  }
#endif
  QuoteCount count = {false, false};
  for (char previous = '\0'; begin != end; previous = *begin++) {
    if (*begin != '"') continue;
    count.isOdd = !count.isOdd;
    if (previous == '\\') count.hasBehindBackslash = true;
  }
  return count;
}

}  // namespace Quarry
