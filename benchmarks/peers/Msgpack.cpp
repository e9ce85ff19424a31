#include <msgpack.h>

#include "../Measure.h"
#include "../forms/Plain.h"

#include <cstdlib>
#include <stdexcept>
#include <string>
#include <string_view>

namespace QuarryBenchmarks {

namespace {

// --- From the plain form -------------------------------------------------------------------------

void packString(msgpack_packer* packer, const std::string& text) {
  msgpack_pack_str(packer, text.size());
  msgpack_pack_str_body(packer, text.data(), text.size());
}

void packNumber(msgpack_packer* packer, const std::string& text) {
  if (text.find_first_of(".eE") == std::string::npos) {
    msgpack_pack_int64(packer, std::strtoll(text.c_str(), nullptr, 10));
  } else {
    msgpack_pack_double(packer, std::strtod(text.c_str(), nullptr));
  }
}

void pack(msgpack_packer* packer, const Plain& value);

void packChildren(msgpack_packer* packer, const Plain& value) {
  for (std::size_t i = 0; i < value.children.size(); ++i) {
    if (value.kind == Plain::OBJECT) packString(packer, value.names[i]);
    pack(packer, value.children[i]);
  }
}

void pack(msgpack_packer* packer, const Plain& value) {
  switch (value.kind) {
    case Plain::EMPTY: msgpack_pack_nil(packer); return;
    case Plain::BOOL:
      value.text == "true" ? msgpack_pack_true(packer) : msgpack_pack_false(packer);
      return;
    case Plain::NUMBER: packNumber(packer, value.text); return;
    case Plain::STRING: packString(packer, value.text); return;
    case Plain::BLOCK:
      msgpack_pack_bin(packer, value.text.size());
      msgpack_pack_bin_body(packer, value.text.data(), value.text.size());
      return;
    case Plain::ARRAY: msgpack_pack_array(packer, value.children.size()); break;
    case Plain::OBJECT: msgpack_pack_map(packer, value.children.size()); break;
  }
  packChildren(packer, value);
}

// --- The library ---------------------------------------------------------------------------------

/// What was packed, in a buffer that grows.
class Packed {
 public:
  explicit Packed(const Plain& value) : Packed() { pack(&packer, value); }
  explicit Packed(const msgpack_object& object) : Packed() { msgpack_pack_object(&packer, object); }
  Packed(const Packed&) = delete;
  Packed& operator=(const Packed&) = delete;
  ~Packed() { msgpack_sbuffer_destroy(&buffer); }

  std::string_view getBytes() const { return {buffer.data, buffer.size}; }

 private:
  Packed() {
    msgpack_sbuffer_init(&buffer);
    msgpack_packer_init(&packer, &buffer, msgpack_sbuffer_write);
  }

  msgpack_sbuffer buffer{};
  msgpack_packer packer{};
};

double addAll(const msgpack_object& object) {
  double sum = 0.0;
  switch (object.type) {
    case MSGPACK_OBJECT_POSITIVE_INTEGER: return static_cast<double>(object.via.u64);
    case MSGPACK_OBJECT_NEGATIVE_INTEGER: return static_cast<double>(object.via.i64);
    case MSGPACK_OBJECT_FLOAT64: return object.via.f64;
    case MSGPACK_OBJECT_ARRAY:
      for (std::uint32_t i = 0; i < object.via.array.size; ++i)
        sum += addAll(object.via.array.ptr[i]);
      return sum;
    case MSGPACK_OBJECT_MAP:
      for (std::uint32_t i = 0; i < object.via.map.size; ++i)
        sum += addAll(object.via.map.ptr[i].val);
      return sum;
    default: return sum;
  }
}

/// MessagePack, through the interface for C: objects in a zone, whose strings stay in the source.
struct Msgpack {
  static constexpr bool IS_BINARY = true;

  struct Tree {
    Tree() { msgpack_unpacked_init(&unpacked); }
    Tree(const Tree&) = delete;
    Tree& operator=(const Tree&) = delete;
    ~Tree() { msgpack_unpacked_destroy(&unpacked); }

    msgpack_unpacked unpacked{};
  };

  static Source convert(const Workload& workload) {
    return {std::string(Packed(makePlain(workload)).getBytes())};
  }

  static void read(Tree& tree, const Source& source) {
    std::size_t position = 0;
    const msgpack_unpack_return result =
        msgpack_unpack_next(&tree.unpacked, source.text.data(), source.text.size(), &position);
    if (result != MSGPACK_UNPACK_SUCCESS) throw std::runtime_error("broken MessagePack");
  }

  static double addNumbers(const Tree& tree, const Source&) { return addAll(tree.unpacked.data); }

  static Packed encode(const Tree& tree) { return Packed(tree.unpacked.data); }
};

const PeerRegistration registration(Measure<Msgpack>::makePeer("msgpack-c"));

}  // namespace

}  // namespace QuarryBenchmarks
