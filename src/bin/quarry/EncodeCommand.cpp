#include <unistd.h>

#include "Commands.h"
#include "Failure.h"
#include "Texts.h"

#include <string_view>

namespace Tool {

void encode(const Document& document, const std::string& target, Output& output) {
  const bool toStandardOutput = target == "-";
  if (toStandardOutput && isatty(STDOUT_FILENO) == 1) throw Failure(Texts::noBinaryOnTerminal());
  Quarry::ParserFile file;
  document.read(file);
  const std::vector<char> data = file.getBinary();
  const std::string_view bytes(data.data(), data.size());
  if (toStandardOutput) {
    output.write(bytes);
  } else {
    writeFile(target, bytes);
  }
}

}  // namespace Tool
