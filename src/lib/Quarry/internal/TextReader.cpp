#include "TextReader.h"

#include "ParserWordStream.h"
#include "TextParser.h"
#include "TreeBuilder.h"

namespace Quarry {

TextOutcome readText(ParserWordStream& words, ParserGroup& group, unsigned long nestingDepth) {
  TextOutcome outcome;
  WordCutter& cutter = words.getCutter();
  TreeBuilder builder(group, true, cutter.getRestLength());
  outcome.endsWell = TextParser(cutter, builder, nestingDepth).parse();
  builder.completeItem();
  outcome.leavesOut = builder.leavesOut();
  outcome.line = builder.getLeftOut().line;
  outcome.column = builder.getLeftOut().column;
  return outcome;
}

}  // namespace Quarry
