// Writes a small document, reads it again, and counts the warnings of a damaged one.

#include <Plinth/Console.h>
#include <Plinth/Exception.h>
#include <Quarry/ParserFile.h>

#include <fstream>
#include <iostream>
#include <string>

namespace {

int fail(const std::string& reason) {
  std::cerr << "stranger: " << reason << '\n';
  return 1;
}

bool refusesBadName(Quarry::ParserGroup& group) {
  try {
    group.addItem("not a name", 0, 0);
  } catch (const Plinth::Exception&) {
    return true;
  }
  return false;
}

}  // namespace

int main() {
  std::ofstream("harbor.cfg") << "#SerialVersion 1.1\n"
                                 "title \"Harbor\\tat dawn\"\n"
                                 "camera { fov 39.6 size 1920, 1080 }\n";

  Quarry::ParserFile file;
  if (!file.read("harbor.cfg")) return fail("the document cannot be read");
  const Quarry::ParserGroup& root = file.getRoot();
  if (root.getItem("title")->getString(0) != "Harbor\tat dawn") return fail("wrong title");
  const Quarry::ParserGroup* camera = root.getGroup("camera");
  if (camera->getItem("size")->getInt(1) != 1080) return fail("wrong size");
  if (camera->getItem("fov")->getDouble(0) != 39.6) return fail("wrong field of view");

  file.getRoot().addItem("take", 0, 0)->addInt(7);
  if (!file.write("harbor-2.cfg")) return fail("the document cannot be written");
  Quarry::ParserFile copy;
  if (!copy.read("harbor-2.cfg")) return fail("the written document cannot be read");
  if (copy.getRoot().getItem("take")->getInt(0) != 7) return fail("wrong take");

  if (!refusesBadName(file.getRoot())) return fail("a bad name was taken");

  int warnings = 0;
  Plinth::console.setHandler(
      [&warnings](Plinth::Console::Level level, const std::string&, const std::string&) {
        if (level == Plinth::Console::LEVEL_WARNING) ++warnings;
      });
  Quarry::ParserGroup damaged("damaged");
  damaged.setText("size 1920 , , 1080", 1.1);
  if (warnings == 0) return fail("a damaged document drew no warning");
  return 0;
}
