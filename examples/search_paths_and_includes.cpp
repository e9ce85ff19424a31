// Shows where files are looked for: search_paths_and_includes FOLDER
#include <Quarry/ParserFile.h>

#include <iostream>
#include <set>
#include <string>

using Quarry::ParserFile;

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  const std::string folder = argv[1];

  // The file itself is found under its own name, but what it includes is not: the folder of the
  // including file plays no part.
  ParserFile alone;
  alone.setFilename(folder + "/show.cfg");
  std::cout << "without search paths: " << (alone.read("") ? "read" : "not read") << "\n";

  // Both are found in a search path. Paths are tried in order; the first file wins.
  ParserFile file;
  file.setSearchPaths({folder + "/own-palettes", folder});
  std::cout << "with search paths: " << (file.read("show.cfg") ? "read" : "not read") << "\n";
  std::cout << "format version: " << file.getVersion() << "\n";
  std::cout << "from palette.cfg: "
            << file.getRoot().getGroup("palette")->getItem("moon")->getString(3) << "\n";

  // The text that preprocessing makes: includes expanded, comments dropped. Only read() also tries
  // a file's own name; an empty path stands for that.
  std::string text;
  std::set<std::string> included;
  ParserFile preprocessor;
  preprocessor.setSearchPaths({""});
  preprocessor.preprocessFile(text, folder + "/palette.cfg", included);
  std::cout << text;
}
