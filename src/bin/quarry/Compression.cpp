#include "Compression.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <limits>
#include <new>

namespace Tool {

namespace {

constexpr int GZIP_WINDOW = MAX_WBITS + 16;
constexpr int MEMORY_LEVEL = 8;  // zlib's default
constexpr int UNKNOWN_SYSTEM = 255;

using Block = std::array<unsigned char, 1 << 16>;

/// Hands a text to zlib, which counts no more than 32 bits at a time.
class Feed {
 public:
  explicit Feed(std::string_view all) : rest(all) {}

  void fill(z_stream& stream) {
    if (stream.avail_in > 0) return;
    const std::size_t size =
        std::min<std::size_t>(rest.size(), std::numeric_limits<unsigned>::max());
    stream.next_in = reinterpret_cast<unsigned char*>(const_cast<char*>(rest.data()));
    stream.avail_in = static_cast<unsigned>(size);
    rest.remove_prefix(size);
  }

  bool isEmpty() const { return rest.empty(); }

 private:
  std::string_view rest;
};

void empty(z_stream& stream, Block& block) {
  stream.next_out = block.data();
  stream.avail_out = static_cast<unsigned>(block.size());
}

std::string_view getFilled(const z_stream& stream, const Block& block) {
  return {reinterpret_cast<const char*>(block.data()), block.size() - stream.avail_out};
}

class Deflater {
 public:
  Deflater() {
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, GZIP_WINDOW, MEMORY_LEVEL,
                     Z_DEFAULT_STRATEGY) != Z_OK)
      throw std::bad_alloc();
    header.os = UNKNOWN_SYSTEM;
    deflateSetHeader(&stream, &header);
  }
  Deflater(const Deflater&) = delete;
  Deflater& operator=(const Deflater&) = delete;
  ~Deflater() { deflateEnd(&stream); }

  z_stream stream = {};

 private:
  gz_header header = {};
};

class Inflater {
 public:
  Inflater() {
    if (inflateInit2(&stream, GZIP_WINDOW) != Z_OK) throw std::bad_alloc();
  }
  Inflater(const Inflater&) = delete;
  Inflater& operator=(const Inflater&) = delete;
  ~Inflater() { inflateEnd(&stream); }

  z_stream stream = {};
};

}  // namespace

std::string compress(std::string_view bytes) {
  Deflater deflater;
  Feed feed(bytes);
  Block block;
  std::string packed;
  int result = Z_OK;
  while (result != Z_STREAM_END) {
    feed.fill(deflater.stream);
    empty(deflater.stream, block);
    result = deflate(&deflater.stream, feed.isEmpty() ? Z_FINISH : Z_NO_FLUSH);
    packed += getFilled(deflater.stream, block);
  }
  return packed;
}

UnpackResult decompress(std::string_view packed, unsigned long most, std::string& bytes) {
  Inflater inflater;
  Feed feed(packed);
  Block block;
  unsigned long left = most;
  for (;;) {
    feed.fill(inflater.stream);
    empty(inflater.stream, block);
    const int result = inflate(&inflater.stream, Z_NO_FLUSH);
    if (result == Z_MEM_ERROR) throw std::bad_alloc();
    const std::string_view filled = getFilled(inflater.stream, block);
    if (filled.size() > left) return UnpackResult::TOO_LARGE;
    left -= filled.size();
    bytes += filled;
    const bool isAtEnd = inflater.stream.avail_in == 0 && feed.isEmpty();
    if (result == Z_STREAM_END && isAtEnd) return UnpackResult::UNPACKED;
    if (result == Z_STREAM_END) {
      inflateReset(&inflater.stream);
    } else if (result != Z_OK) {
      return UnpackResult::DAMAGED;
    }
  }
}

}  // namespace Tool
