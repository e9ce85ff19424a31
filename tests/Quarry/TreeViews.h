/// What is seen of a tree while it is being read.
#pragma once

#include <Plinth/Console.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/internal/ParserWordStream.h>
#include <Quarry/internal/TextParser.h>
#include <Quarry/internal/TreeBuilder.h>

#include <string>
#include <utility>
#include <vector>

#include "support/Documents.h"

namespace TreeViews {

constexpr bool QUICK = false;   // as for a text without zero bytes
constexpr bool CAREFUL = true;  // as for one with some

/// Hands every message to a function as long as it lives.
class ConsoleHandler {
 public:
  explicit ConsoleHandler(Plinth::Console::Handler handler)
      : previous(Plinth::console.setHandler(std::move(handler))) {}
  ConsoleHandler(const ConsoleHandler&) = delete;
  ConsoleHandler& operator=(const ConsoleHandler&) = delete;
  ~ConsoleHandler() { Plinth::console.setHandler(std::move(previous)); }

 private:
  Plinth::Console::Handler previous;
};

/// What was seen of a tree: at each warning, and in the end.
using Views = std::vector<std::string>;

/// Reads a text and describes the tree at each warning and in the end.
inline Views watch(const std::string& text, bool way, double version = 1.1) {
  Quarry::ParserGroup root("root");
  Views views;
  const ConsoleHandler handler([&](Plinth::Console::Level, const std::string&, const std::string&) {
    views.push_back(TestSupport::describe(root));
  });
  Quarry::ParserWordStream stream(text, version);
  Quarry::TreeBuilder builder(root, way);
  Quarry::TextParser(stream, builder).parse();
  builder.completeItem();
  views.push_back(TestSupport::describe(root));
  return views;
}

/// Reads with ParserGroup::setText().
inline Views watch(const std::string& text) {
  Quarry::ParserGroup root("root");
  Views views;
  const ConsoleHandler handler([&](Plinth::Console::Level, const std::string&, const std::string&) {
    views.push_back(TestSupport::describe(root));
  });
  root.setText(text, 1.1);
  views.push_back(TestSupport::describe(root));
  return views;
}

}  // namespace TreeViews
