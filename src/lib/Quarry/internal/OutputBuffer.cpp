#include "OutputBuffer.h"

#include "SlabSource.h"

#include <algorithm>

namespace Quarry {

OutputBuffer::~OutputBuffer() {
  Block* block = first()->next;
  while (block != nullptr) {
    Block* next = block->next;
    SlabSource::get().giveBack(block);
    block = next;
  }
}

/// Begins a further block. Whatever room the last one had stays empty.
void OutputBuffer::extend() {
  auto* block = ::new (SlabSource::get().take()) Block;
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
