#include "BinaryInput.h"

#include <Plinth/Console.h>

#include "Failure.h"
#include "Texts.h"

namespace Tool {

void readBinary(Quarry::ParserFile& file, const std::string& bytes, const InputOptions& options,
                const std::string& name) {
  file.setFilename(options.getShownName(name));  // for the message of a limit that is exceeded
  file.setLimits(options.getLimits());
  if (!file.setBinary({bytes.begin(), bytes.end()}))
    throw Failure(Texts::noBinaryDocument(options.getShownName(name)));
  const std::size_t understood = file.getBinary().size();
  if (understood == bytes.size()) return;
  Plinth::console.warning(Texts::brokenWithin(bytes.size(), understood), std::string());
}

}  // namespace Tool
