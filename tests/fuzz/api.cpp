// A group and a simple model of it are changed in the same way, step by step as the input says, and
// give the same answers after each step.

#include "Fuzz.h"
#include "GroupModel.h"
#include "GroupScript.h"

/// All places are looked at after each step, which bounds the number of steps.
constexpr unsigned long MOST_WORK = 1 << 15;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  Fuzz::GroupScript script(input);
  unsigned long left = MOST_WORK;
  while (!input.getBytes().empty()) {
    const std::string name = script.takeStep();
    const Fuzz::GroupModel& model = script.getModel();
    if (left < model.places.size()) break;
    left -= model.places.size();
    model.checkName(script.getGroup(), name);
    model.checkAll(script.getGroup());
  }
  return 0;
}
