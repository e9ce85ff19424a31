#include "OutputBuffer.h"

#include "SlabHeap.h"
#include "SlabSource.h"

#include <algorithm>

namespace Quarry {

namespace {

#ifdef QUARRY_PLAIN_HEAP

void* takeSlab() { return ::operator new(SlabSource::SLAB_SIZE); }
void giveBackSlab(void* slab) { ::operator delete(slab); }

#else

void* takeSlab() { return SlabSource::get().take(); }
void giveBackSlab(void* slab) { SlabSource::get().giveBack(slab); }

#endif

}  // namespace

OutputBuffer::~OutputBuffer() {
  Block* block = first()->next;
  while (block != nullptr) {
    Block* next = block->next;
    giveBackSlab(block);
    block = next;
  }
}

/// Begins a further block. Whatever room the last one had stays empty.
void OutputBuffer::extend() {
  auto* block = ::new (takeSlab()) Block;
  last->used = used();
  last->next = block;
  earlier += last->used;
  beginBlock(block, SlabSource::SLAB_SIZE);
}

void OutputBuffer::appendInParts(std::string_view piece) {
  while (!piece.empty()) {
    if (room() == 0) extend();
    const std::string_view part = piece.substr(0, room());
    std::memcpy(at, part.data(), part.size());
    at += part.size();
    piece.remove_prefix(part.size());
  }
}

void OutputBuffer::appendMany(std::size_t count, char byte) {
  while (count > 0) {
    const std::size_t part = std::min(count, MOST_CLAIMED);
    std::memset(claim(part), byte, part);
    count -= part;
  }
}

}  // namespace Quarry
