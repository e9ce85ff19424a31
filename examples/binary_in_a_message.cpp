// Passes a document from one part of a program to another as bytes.
#include <Quarry/ParserFile.h>

#include <iostream>
#include <string>
#include <vector>

using Quarry::ParserFile;
using Quarry::ParserGroup;

namespace {

/// What a socket, a queue or a drag and drop between windows carries.
std::vector<char> makeMessage() {
  ParserFile file;
  ParserGroup& lamp = *file.getRoot().addGroup("lamp", false);
  lamp.addItem("name", 0, 0)->addString("front left");
  lamp.addItem("channel", 0, 0)->addInt(1);
  lamp.addItem("position", 0, 0)->addDouble(-4.25);
  file.getRoot().addItem("#revision", 0, 0)->addInt(7);
  return file.getBinary();
}

/// A message that was cut short or damaged on its way is refused, after a warning on the console.
/// What was read before the damage stays: so the document is a new one, which is then thrown away.
bool receive(const std::vector<char>& message) {
  ParserFile file;
  if (!file.setBinary(message)) return false;

  // No lookup finds what came from bytes, before it is copied.
  const ParserGroup root(file.getRoot());
  const ParserGroup& lamp = *root.getGroup("lamp");
  std::cout << lamp.getItem("name")->getString(0) << " has channel "
            << lamp.getItem("channel")->getInt(0) << "\n";

  // The bytes do not tell keywords from other items: they come back as plain ones.
  std::cout << "revision " << root.getItem("#revision")->getInt(0) << "\n";
  return true;
}

}  // namespace

int main() {
  std::vector<char> message = makeMessage();
  std::cout << message.size() << " bytes, beginning with " << std::string(message.data(), 4)
            << "\n";
  receive(message);

  message.resize(message.size() / 2);
  std::cout << "half of it: " << (receive(message) ? "read" : "refused") << "\n";
}
