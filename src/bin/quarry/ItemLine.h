/// The line that shows an item.
#pragma once

#include <Quarry/ParserValue.h>

#include "Output.h"

#include <string_view>

namespace Tool {

/// Writes a name and what the item holds: `size: int 1920 1080`, `blur (call): int 4, bool yes`,
/// `camera: group`, `note: empty`. Values that follow one another with the same type share its
/// name.
class ItemLine {
 public:
  explicit ItemLine(Output& target) : output(target) {}

  /// Begins a line behind what was written before it.
  void begin(Style style, std::string_view name);

  /// Adds a remark to the name.
  void mark(Style style, std::string_view remark);

  /// Adds a value as it is spelled.
  void addValue(Quarry::ParserValue::Type type, std::string_view text);

  void addGroup();

  /// Ends the line, if one was begun.
  void end();

 private:
  void writeType(Quarry::ParserValue::Type type);

  Output& output;
  bool isOpen = false;
  /// Of the last value; empty for none.
  Quarry::ParserValue::Type lastType = Quarry::ParserValue::TYPE_EMPTY;
};

}  // namespace Tool
