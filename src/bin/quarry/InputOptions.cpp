#include "InputOptions.h"

#include "Compression.h"
#include "Failure.h"
#include "FileBytes.h"
#include "LineMarkers.h"
#include "SharedOptions.h"
#include "Texts.h"

#include <stdexcept>

namespace Tool {

using Quarry::ParserLimits;

void InputOptions::addTo(Command& command) {
  command.addOption("--stdin-filename", "NAME", standInName,
                    "What standard input is called in messages, and where it lies");
  addUnlimited(command, isUnlimited);
}

ParserLimits InputOptions::getLimits() const {
  ParserLimits limits;
  if (isUnlimited) return limits;
  limits.includeDepth = 64;
  limits.preprocessedBytes = 1UL << 30;
  limits.nestingDepth = 10000;
  return limits;
}

const std::string& InputOptions::getShownName(const std::string& file) const {
  return file == "-" ? standInName : file;
}

std::string InputOptions::readBytes(const std::string& file) const {
  const unsigned long most = getLimits().preprocessedBytes;
  return file == "-" ? readStandardInput(standInName, most) : readFile(file, most);
}

std::string InputOptions::unpackBytes(std::string_view packed, const std::string& file) const {
  const unsigned long most = getLimits().preprocessedBytes;
  std::string bytes;
  switch (decompress(packed, most, bytes)) {
    case UnpackResult::UNPACKED: return bytes;
    case UnpackResult::DAMAGED: throw Failure(Texts::damaged(getShownName(file)));
    default: throw Failure(Texts::tooLarge(getShownName(file), most));
  }
}

std::string InputOptions::takeMarkers(std::string_view unpacked, const std::string& file) const {
  try {
    return takeLineMarkers(unpacked);
  } catch (const std::out_of_range&) {
    throw Failure(Texts::badCompression(getShownName(file)));
  }
}

}  // namespace Tool
