/// Finds where words end and what they consist of.
///
/// Documents consist of short words, and a loop over a word's bytes costs more in its last, wrongly
/// foreseen step than in all others. These functions look at 16 bytes with a few instructions,
/// where so many may be read, and do the rest byte by byte. Every x86-64 processor has these
/// instructions; elsewhere the loops do all of the work.
#pragma once

#include "ByteClass.h"
#include "ByteSearch.h"

#include <bit>
#include <cassert>
#include <cstdint>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace Quarry {

constexpr int WORD_STOPS = BYTE_BLANK | BYTE_LINE_BREAK | BYTE_DELIMITER | BYTE_QUOTE;
constexpr int NAME_BYTES = BYTE_LETTER | BYTE_DIGIT | BYTE_NAME_MARK;

#ifdef __SSE2__

/// 16 bytes of a text. The results have a bit for each byte that is as asked.
class Block {
 public:
  static constexpr std::ptrdiff_t SIZE = 16;

  explicit Block(const char* begin)
      : bytes(_mm_loadu_si128(reinterpret_cast<const __m128i*>(begin))) {}

  unsigned equal(char wanted) const { return bits(_mm_cmpeq_epi8(bytes, splat(wanted))); }

  /// The bytes that end a word, and a few others up to the comma.
  unsigned likelyStops() const {
    return bits(_mm_or_si128(
        _mm_or_si128(_mm_cmpeq_epi8(_mm_min_epu8(bytes, splat(',')), bytes),
                     _mm_cmpeq_epi8(bytes, splat('='))),
        _mm_or_si128(_mm_cmpeq_epi8(bytes, splat('{')), _mm_cmpeq_epi8(bytes, splat('}')))));
  }

  /// The bytes that most numbers consist of, and a few others, but no slash.
  unsigned numberBytes() const {
    const __m128i slashes = _mm_cmpeq_epi8(bytes, splat('/'));
    const __m128i others = _mm_andnot_si128(slashes, isWithin(bytes, '-', '<'));
    return bits(_mm_or_si128(others, _mm_cmpeq_epi8(bytes, splat('e'))));
  }

  /// The bytes of lists of numbers, and a few others up to the last of numberBytes().
  unsigned numberListBytes() const {
    return bits(_mm_or_si128(_mm_cmpeq_epi8(_mm_min_epu8(bytes, splat('<')), bytes),
                             _mm_cmpeq_epi8(bytes, splat('e'))));
  }

  /// The digits.
  unsigned digits() const { return bits(isWithin(bytes, '0', '9')); }

  /// The bytes that show a number to have a fraction or an exponent.
  unsigned fractionMarks() const {
    return bits(_mm_or_si128(_mm_cmpeq_epi8(bytes, splat('.')), _mm_cmpeq_epi8(bytes, splat('e'))));
  }

  /// The bytes that matter within a string, and a few other control characters.
  unsigned likelyStringStops() const {
    const __m128i controls = _mm_cmpeq_epi8(_mm_min_epu8(bytes, splat('\r')), bytes);
    const __m128i quotes = _mm_cmpeq_epi8(bytes, splat('"'));
    const __m128i backslashes = _mm_cmpeq_epi8(bytes, splat('\\'));
    return bits(_mm_or_si128(controls, _mm_or_si128(quotes, backslashes)));
  }

  /// The bytes of names.
  unsigned nameBytes() const {
    const __m128i letters = isWithin(_mm_or_si128(bytes, splat(0x20)), 'a', 'z');
    const __m128i digitsAndColon = isWithin(bytes, '0', ':');
    const __m128i dashAndPoint = isWithin(bytes, '-', '.');
    const __m128i percent = _mm_cmpeq_epi8(bytes, splat('%'));
    // [ ] _ and Y differ from _ in two bits at most
    const __m128i others = _mm_cmpeq_epi8(_mm_or_si128(bytes, splat(0x06)), splat('_'));
    return bits(_mm_or_si128(_mm_or_si128(letters, digitsAndColon),
                             _mm_or_si128(_mm_or_si128(dashAndPoint, percent), others)));
  }

 private:
  static __m128i splat(char byte) { return _mm_set1_epi8(byte); }
  static unsigned bits(__m128i hits) { return static_cast<unsigned>(_mm_movemask_epi8(hits)); }

  /// Moved so that `high` is the greatest of all signed bytes, those within are the greatest ones.
  static __m128i isWithin(__m128i bytes, char low, char high) {
    constexpr char GREATEST = 127;
    const __m128i moved = _mm_add_epi8(bytes, splat(static_cast<char>(GREATEST - high)));
    return _mm_cmpgt_epi8(moved, splat(static_cast<char>(GREATEST - 1 - (high - low))));
  }

  __m128i bytes;
};

constexpr unsigned WHOLE_BLOCK = 0xFFFF;

/// Returns the place of the lowest bit of a number that is not 0.
template <class Bits>
unsigned firstOf(Bits bits) {
  assert(bits != 0);
  if (bits == 0) __builtin_unreachable();  // or the compiler would ask for it
  return static_cast<unsigned>(std::countr_zero(bits));
}

#endif

/// Returns the first byte of [at, end) that is no blank (32), or `end`.
inline const char* skipSpaces(const char* at, const char* end) {
#ifdef __SSE2__
  for (; end - at >= Block::SIZE; at += Block::SIZE) {
    const unsigned others = Block(at).equal(' ') ^ WHOLE_BLOCK;
    if (others != 0) return at + firstOf(others);
  }
#endif
  while (at != end && *at == ' ')
    ++at;
  return at;
}

/// More blanks than that are not counted; most lines are indented by less.
constexpr unsigned MOST_SPACES = 32;

/// Returns how many blanks (32) stand at `at`, where at least MOST_SPACES bytes are left.
inline unsigned countSpacesQuickly(const char* at) {
#ifdef __SSE2__
  const unsigned spaces = Block(at).equal(' ') | Block(at + Block::SIZE).equal(' ') << Block::SIZE;
  return firstOf(~std::uint64_t{spaces});
#else
  unsigned count = 0;
  while (count < MOST_SPACES && at[count] == ' ')
    ++count;
  return count;
#endif
}

/// A zero byte that comes later is not found.
constexpr unsigned LONGEST_BEFORE_ZERO = 15;

/// Returns how many bytes stand before the first zero byte at `at`, where at least 16 bytes are
/// left; more than LONGEST_BEFORE_ZERO when none is among these.
inline unsigned countBeforeZero(const char* at) {
#ifdef __SSE2__
  return firstOf(Block(at).equal('\0') | (WHOLE_BLOCK + 1));
#else
  unsigned count = 0;
  while (count <= LONGEST_BEFORE_ZERO && at[count] != '\0')
    ++count;
  return count;
#endif
}

/// Returns the first byte of [at, end) that is a blank, a line break, a delimiter or a quote, or
/// `end`.
inline const char* findWordStop(const char* at, const char* end) {
#ifdef __SSE2__
  while (end - at >= Block::SIZE) {
    const unsigned stops = Block(at).likelyStops();
    if (stops == 0) {
      at += Block::SIZE;
      continue;
    }
    at += firstOf(stops);
    if (isByteOf(*at, WORD_STOPS)) return at;
    ++at;
  }
#endif
  while (at != end && !isByteOf(*at, WORD_STOPS))
    ++at;
  return at;
}

/// Tells whether a byte may end a string, or a quote behind it does not: a quote, a backslash, a
/// line break or a zero byte.
inline bool isStringStop(char byte) {
  return byte == '"' || byte == '\\' || byte == '\n' || byte == '\r' || byte == '\0';
}

/// Returns the first byte of [at, end) that is such, or `end`.
inline const char* findStringStop(const char* at, const char* end) {
#ifdef __SSE2__
  while (end - at >= Block::SIZE) {
    const unsigned stops = Block(at).likelyStringStops();
    if (stops == 0) {
      at += Block::SIZE;
      continue;
    }
    at += firstOf(stops);
    if (isStringStop(*at)) return at;
    ++at;
  }
#endif
  while (at != end && !isStringStop(*at))
    ++at;
  return at;
}

/// Returns the first byte of [at, end) that does not stand in names, or `end`.
inline const char* findNameEnd(const char* at, const char* end) {
#ifdef __SSE2__
  for (; end - at >= Block::SIZE; at += Block::SIZE) {
    const unsigned others = Block(at).nameBytes() ^ WHOLE_BLOCK;
    if (others != 0) return at + firstOf(others);
  }
#endif
  while (at != end && isByteOf(*at, NAME_BYTES))
    ++at;
  return at;
}

/// So many bytes most names have at most.
constexpr unsigned SHORT_NAME = 16;

/// Returns how many bytes of names stand at `at`, where at least SHORT_NAME bytes are left; no more
/// are counted.
inline unsigned countNameBytesQuickly(const char* at) {
#ifdef __SSE2__
  return firstOf(~Block(at).nameBytes());
#else
  unsigned count = 0;
  while (count < SHORT_NAME && isByteOf(at[count], NAME_BYTES))
    ++count;
  return count;
#endif
}

/// Where a number ends.
struct NumberEnd {
  const char* at;        ///< the first byte that is none of a number
  bool hasFractionMark;  ///< whether there is an `e` or a point before it
};

#ifdef __SSE2__
/// Tells whether there is a mark below the first stop; no mark is a stop.
inline bool hasMarkBefore(unsigned stops, unsigned marks) { return (marks & (stops - 1)) != 0; }
#endif

/// No number that is longer is looked at.
constexpr int LONGEST_NUMBER = 32;

/// Looks for the first byte that is no `e`, digit or one of "-.:;<", where at least LONGEST_NUMBER
/// bytes are left. What is not found among these is said to be at `begin`.
inline NumberEnd findNumberEnd(const char* begin) {
#ifdef __SSE2__
  const Block first(begin);
  const unsigned marks = first.fractionMarks();
  const unsigned stops = first.numberBytes() ^ WHOLE_BLOCK;
  if (stops != 0) return {begin + firstOf(stops), hasMarkBefore(stops, marks)};
  const char* half = begin + Block::SIZE;
  const Block second(half);
  const unsigned laterMarks = second.fractionMarks();
  const unsigned laterStops = second.numberBytes() ^ WHOLE_BLOCK;
  if (laterStops == 0) return {begin, false};
  return {half + firstOf(laterStops), marks != 0 || hasMarkBefore(laterStops, laterMarks)};
#else
  bool hasFractionMark = false;
  for (const char* at = begin; at != begin + LONGEST_NUMBER; ++at) {
    const bool isNumberByte = (*at >= '-' && *at <= '<' && *at != '/') || *at == 'e';
    if (!isNumberByte) return {at, hasFractionMark};
    hasFractionMark = hasFractionMark || *at == '.' || *at == 'e';
  }
  return {begin, false};
#endif
}

/// Most numbers are no longer.
constexpr int SHORT_NUMBER = 16;

/// Looks for the first byte that is no digit, `e` or point, where at least SHORT_NUMBER bytes are
/// left. Where none of these is such, the end is behind them.
inline NumberEnd findShortNumberEnd(const char* begin) {
#ifdef __SSE2__
  const Block block(begin);
  const unsigned marks = block.fractionMarks();
  const unsigned stops = ~(block.digits() | marks);
  return {begin + firstOf(stops), hasMarkBefore(stops, marks)};
#else
  NumberEnd end{begin, false};
  for (; end.at != begin + SHORT_NUMBER; ++end.at) {
    const bool isMark = *end.at == '.' || *end.at == 'e';
    if (!isMark && !isByteOf(*end.at, BYTE_DIGIT)) break;
    end.hasFractionMark = end.hasFractionMark || isMark;
  }
  return end;
#endif
}

/// Returns the first byte of [at, end) that stands in no list of numbers, or `end`: the first of a
/// name, nearly always, or the brace that closes the group.
inline const char* findNumberListEnd(const char* at, const char* end) {
#ifdef __SSE2__
  for (; end - at >= Block::SIZE; at += Block::SIZE) {
    const unsigned others = Block(at).numberListBytes() ^ WHOLE_BLOCK;
    if (others != 0) return at + firstOf(others);
  }
#endif
  while (at != end && (static_cast<unsigned char>(*at) <= '<' || *at == 'e'))
    ++at;
  return at;
}

/// Tells whether all of [begin, end) are bytes of names. Bytes up to `readable` may be read.
inline bool areNameBytes(const char* begin, const char* end, const char* readable) {
#ifdef __SSE2__
  if (end - begin <= Block::SIZE && readable - begin >= Block::SIZE) {
    const unsigned others = Block(begin).nameBytes() ^ WHOLE_BLOCK;
    return (others & ((1U << (end - begin)) - 1)) == 0;
  }
#else
  static_cast<void>(readable);
#endif
  while (begin != end && isByteOf(*begin, NAME_BYTES))
    ++begin;
  return begin == end;
}

/// Tells whether an `e` or a point is among [begin, end). Bytes up to `readable` may be read.
inline bool hasFractionMark(const char* begin, const char* end, const char* readable) {
#ifdef __SSE2__
  if (end - begin <= Block::SIZE && readable - begin >= Block::SIZE) {
    const Block block(begin);
    const unsigned marks = block.fractionMarks();
    return (marks & ((1U << (end - begin)) - 1)) != 0;
  }
#else
  static_cast<void>(readable);
#endif
  return findAnyOf<'.', 'e'>(begin, end) != end;
}

}  // namespace Quarry
