/// Pieces of the slab heap that show whether they are their owner's alone.
#pragma once

#include <Quarry/internal/SlabHeap.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <random>
#include <utility>
#include <vector>

namespace HeapPieces {

/// A piece of memory, filled from end to end with a byte of its own.
class Piece {
 public:
  Piece(std::size_t bytes, unsigned char pattern)
      : begin(static_cast<unsigned char*>(Quarry::SlabHeap::allocate(bytes))),
        size(bytes),
        fill(pattern) {
    std::memset(begin, fill, size);
  }
  Piece(Piece&& other) noexcept
      : begin(std::exchange(other.begin, nullptr)), size(other.size), fill(other.fill) {}
  Piece& operator=(Piece&& other) noexcept {
    std::swap(begin, other.begin);
    std::swap(size, other.size);
    std::swap(fill, other.fill);
    return *this;
  }
  ~Piece() { Quarry::SlabHeap::free(begin, size); }

  bool isIntact() const {
    return std::all_of(begin, begin + size, [this](unsigned char byte) { return byte == fill; });
  }
  const void* getBegin() const { return begin; }

 private:
  unsigned char* begin;
  std::size_t size;
  unsigned char fill;
};

using Pieces = std::vector<Piece>;

inline bool areIntact(const Pieces& pieces) {
  return std::all_of(pieces.begin(), pieces.end(), [](const Piece& p) { return p.isIntact(); });
}

/// Sizes as trees ask for them: mostly small, some just about the limits, a few large.
inline std::size_t chooseSize(std::mt19937& random) {
  switch (random() % 16) {
    case 0: return Quarry::SlabHeap::LARGEST - 8 + random() % 17;
    case 1: return 1 + random() % 20000;
    case 2: return 1 + random() % Quarry::SlabHeap::LARGEST;
    case 3: return 1 + random() % Quarry::SlabHeap::LARGEST_OF_REGION;
    default: return 1 + random() % 200;
  }
}

inline unsigned char chooseFill(std::mt19937& random) {
  return static_cast<unsigned char>(random());
}

/// Replaces pieces at random and checks each before it goes; returns whether all were intact.
inline bool exchangeAtRandom(std::mt19937& random, Pieces& pieces, int steps) {
  bool intact = true;
  for (int step = 0; step < steps; ++step) {
    Piece& replaced = pieces[random() % pieces.size()];
    intact = intact && replaced.isIntact();
    replaced = Piece(chooseSize(random), chooseFill(random));
  }
  return intact;
}

inline Pieces makePieces(std::mt19937& random, std::size_t count) {
  Pieces pieces;
  for (std::size_t i = 0; i < count; ++i)
    pieces.emplace_back(chooseSize(random), chooseFill(random));
  return pieces;
}

#ifndef QUARRY_PLAIN_HEAP

/// A size that nothing else here asks for, and how many of its pieces a slab has room for.
constexpr std::size_t RARE_SIZE = 1008;
constexpr std::size_t RARE_IN_SLAB = (Quarry::SlabSource::SLAB_SIZE - 64) / RARE_SIZE;

inline std::uintptr_t slabOf(const void* piece) {
  return reinterpret_cast<std::uintptr_t>(piece) / Quarry::SlabSource::SLAB_SIZE;
}

inline std::vector<void*> allocateRare(std::size_t count) {
  std::vector<void*> pieces(count);
  for (void*& piece : pieces)
    piece = Quarry::SlabHeap::allocate(RARE_SIZE);
  return pieces;
}

inline void freeRare(const std::vector<void*>& pieces) {
  for (void* piece : pieces)
    Quarry::SlabHeap::free(piece, RARE_SIZE);
}

#endif

}  // namespace HeapPieces
