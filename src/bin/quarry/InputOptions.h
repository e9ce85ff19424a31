/// What a command reads: a file or standard input, within limits.
#pragma once

#include <Quarry/ParserLimits.h>

#include "Command.h"

#include <string>
#include <string_view>

namespace Tool {

/// How a command reads what it is given. The name `-` stands for standard input.
struct InputOptions {
  std::string standInName = "standard input";  ///< what standard input is called in messages
  bool isUnlimited = false;

  /// Adds --stdin-filename and --no-limits.
  void addTo(Command& command);

  /// Returns the limits within which the tool reads, unless it is told not to: wide enough for
  /// every document that people have, and narrow enough to end on all others.
  Quarry::ParserLimits getLimits() const;

  /// Returns what a file is called in messages.
  const std::string& getShownName(const std::string& file) const;

  /// Returns the bytes of a file. Throws a Failure when they cannot be read, or are too many.
  std::string readBytes(const std::string& file) const;

  /// Returns what gzip packed, all members of it. Throws a Failure when it is damaged or too long.
  /// @param file where it comes from, for messages
  std::string unpackBytes(std::string_view packed, const std::string& file) const;

  /// Returns what the library makes of an unpacked document: lines without their markers. Throws a
  /// Failure where the library would throw.
  std::string takeMarkers(std::string_view unpacked, const std::string& file) const;
};

}  // namespace Tool
