#include "Commands.h"

namespace Tool {

void writeExpanded(const Document& document, Output& output) {
  output.writeText(document.expand().text);
}

}  // namespace Tool
