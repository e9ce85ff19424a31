/// The rules of preprocessing, as plainly as they can be written.
#pragma once

#include <Plinth/Label.h>

#include <map>
#include <string>

namespace TestSupport {

using Files = std::map<std::string, std::string>;

/// The four rules, for each byte. Files that include each other are as deep as its recursion.
class PlainPreprocessor {
 public:
  explicit PlainPreprocessor(const Files& allFiles) : files(allFiles) {}

  double process(const std::string& name, std::string& out) const {
    const auto found = files.find(name);
    if (found == files.end()) return 0.0;
    const std::string& text = found->second;
    double version = 1.0;
    bool inString = false;
    unsigned long backslashes = 0;
    std::size_t i = 0;
    while (i < text.size()) {
      if (text.compare(i, 10, "#include \"") == 0) {
        const std::size_t end = text.find('"', i + 10);
        if (end == std::string::npos) return 0.0;
        if (process(text.substr(i + 10, end - i - 10), out) == 0.0) return 0.0;
        i = end + 1;
      } else if (text.compare(i, 15, "#SerialVersion ") == 0) {
        const std::size_t end = endOfLine(text, i);
        version = Plinth::getDouble(text.substr(i + 15, end - i - 15));
        i = end;
      } else if (!inString && text.compare(i, 2, "//") == 0) {
        i = endOfLine(text, i);
      } else {
        const bool behindBackslash = i > 0 && text[i - 1] == '\\';
        const bool escaped = behindBackslash && backslashes % 2 == 1;
        if (text[i] == '"' && !escaped) inString = !inString;
        backslashes = text[i] == '\\' ? backslashes + 1 : 0;
        out += text[i];
        ++i;
      }
    }
    return version;
  }

 private:
  static std::size_t endOfLine(const std::string& text, std::size_t i) {
    const std::size_t lineFeed = text.find('\n', i);
    return lineFeed == std::string::npos ? text.size() : lineFeed + 1;
  }

  const Files& files;
};

}  // namespace TestSupport
