/// How a formatted document looks.
#pragma once

#include <optional>
#include <string>

namespace Tool {

struct FormatStyle {
  std::string indent = "    ";              ///< of one level
  std::optional<std::string> lineEnd = {};  ///< none: that of the file's first line
  std::optional<bool> endsInLineEnd = {};   ///< none: as the file does
};

}  // namespace Tool
