/// Reads JSON, told piece by piece, so that nothing but the tree that is made of it is kept.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserLimits.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Tool {

/// Thrown where JSON is broken or has no counterpart; tells where and why.
class JsonFault : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// A value of JSON that holds no other, or bytes or bits that stand for one.
struct JsonScalar {
  enum Kind { NOTHING, BOOL, INTEGER, NUMBER, STRING, BLOCK, BITS };

  Kind kind = NOTHING;
  bool boolean = false;
  std::int64_t integer = 0;
  double number = 0;       ///< of an integer, too
  std::string text;        ///< a string, the bytes of a block, the spelling of a number
  std::uint64_t bits = 0;  ///< of a double
};

/// Names an item that no text can have: there it declares the format version.
inline constexpr char VERSION_KEYWORD[] = "#SerialVersion";

/// What is told of a JSON text. An operation throws a JsonFault, without the place, for what it
/// has no use for.
class JsonListener {
 public:
  virtual ~JsonListener() = default;

  virtual void beginObject() = 0;
  virtual void member(const std::string& name) = 0;
  virtual void endObject() = 0;
  virtual void beginArray() = 0;
  virtual void endArray() = 0;
  virtual void scalar(const JsonScalar& value) = 0;
};

/// What a tree is made for.
enum class TreeUse {
  ANY,   ///< everything is kept
  TEXT,  ///< all numbers are spelled, and items "#SerialVersion" left out
};

struct JsonSettings {
  TreeUse use = TreeUse::ANY;
  unsigned long deepest = Quarry::ParserLimits::UNLIMITED;  ///< as ParserLimits::nestingDepth
};

/// What was read.
struct JsonResult {
  bool hasVersions = false;  ///< items "#SerialVersion" were left out
};

/// Reads either form, the array of items or the plain object, into an empty group. Throws a
/// JsonFault.
JsonResult readJson(std::string_view text, Quarry::ParserGroup& root, const JsonSettings& settings);

/// Tells a listener what a JSON text holds. Throws a JsonFault with the place.
void parseJson(std::string_view text, JsonListener& listener);

}  // namespace Tool
