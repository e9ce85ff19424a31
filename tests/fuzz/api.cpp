// A group and a simple model of it are changed in the same way, step by step as the input says, and
// give the same answers after each step.

#include <memory>

#include "Fuzz.h"
#include "GroupModel.h"

using Fuzz::ItemModel;
using Fuzz::Place;
using Fuzz::require;
using Quarry::ParserGroup;
using Quarry::ParserItem;

namespace {

/// Each step takes its choices off the input.
class Script {
 public:
  explicit Script(Fuzz::Input& bytes) : input(bytes), group(new ParserGroup("group")) {}

  /// All places are looked at after each step, which bounds the number of steps.
  void run() {
    unsigned long left = MOST_WORK;
    while (!input.getBytes().empty()) {
      const std::string name = takeStep();
      if (left < model.places.size()) break;
      left -= model.places.size();
      model.checkName(*group, name);
      model.checkAll(*group);
    }
  }

 private:
  static constexpr unsigned long MOST_WORK = 1 << 15;

  /// Returns the name that the step is about.
  std::string takeStep() {
    switch (input.takeChoice() % 16) {
      case 0: return addMany(input.takeChoice() % 64);
      case 1: return adopt();
      case 2: return addGroup();
      case 3: return detach(false);
      case 4: return detach(true);
      case 5: return remove();
      case 6: return copy();
      case 7: return lookUpOften();
      case 8: return rename();
      case 9: return copyFromOther();
      case 10: return addValue();
      case 11: return setValue();
      case 12: return removeValue();
      case 13: return setTemplate();
      case 14: return readText();
      default: return input.takeChoice() % 16 == 0 ? clear() : setArray();
    }
  }

  std::string takeName() {
    const unsigned choice = input.takeChoice();
    const std::string number = std::to_string(choice % 64);
    if (choice >= 192) return "#k" + number;
    return (choice >= 128 ? "a_name_longer_than_most_" : "n") + number;
  }

  /// Returns a place with an item, or null.
  Place* takePlace() {
    if (model.places.empty()) return nullptr;
    Place& place = model.places[input.takeChoice() % model.places.size()];
    return place.item != nullptr ? &place : nullptr;
  }

  static ParserItem::Type typeFor(const std::string& name) {
    return name.starts_with('#') ? ParserItem::ITEM_KEYWORD : ParserItem::ITEM_PLAIN;
  }

  // --- The group ---------------------------------------------------------------------------------

  std::string addMany(unsigned count) {
    std::string name = takeName();
    for (unsigned i = 0; i <= count; ++i) {
      model.add(group->addItem(name, 0, 0), {name, typeFor(name)});
      name = (name.starts_with('#') ? "#k" : "n") + std::to_string(i);
    }
    return name;
  }

  std::string adopt() {
    const std::string name = takeName();
    const auto type = static_cast<ParserItem::Type>(input.takeChoice() % 3);
    model.add(group->addItem(*new ParserItem(name, type, 0, 0)), {name, type});
    return name;
  }

  std::string addGroup() {
    auto inner = std::make_unique<ParserGroup>(takeName());
    const std::string name = inner->getName();
    inner->addItem("inner", 0, 0)->addInt(1);
    group->addGroup(inner.release(), false);
    const Fuzz::Items items = Fuzz::ItemLister::list(*group);
    model.add(items.back(), {name, typeFor(name), {name + " { inner 1 }"}});
    return name;
  }

  /// The item is deleted, or added again at the end.
  std::string detach(bool isAddedAgain) {
    if (group->getItemCount() == 0) return takeName();
    const unsigned long index = input.takeChoice() % group->getItemCount();
    std::unique_ptr<ParserItem> item(group->getItem(index));
    if (item == nullptr) return takeName();
    group->detachItem(index);
    Place& place = findPlace(item.get());
    const ItemModel itemModel = place.model;
    place.item = nullptr;
    if (isAddedAgain) model.add(group->addItem(*item.release()), itemModel);
    return itemModel.name;
  }

  Place& findPlace(const ParserItem* item) {
    for (Place& place : model.places)
      if (place.item == item) return place;
    std::abort();
  }

  std::string remove() {
    const std::string name = takeName();
    group->removeItem(name);
    model.remove(name);
    return name;
  }

  std::string copy() {
    group = std::make_unique<ParserGroup>(*group);
    model.moveTo(*group);
    return takeName();
  }

  std::string lookUpOften() {
    const std::string name = takeName();
    const ParserItem* first = group->getItem(name);
    for (int i = 0; i < 8; ++i)
      require(group->getItem(name) == first);
    return name;
  }

  std::string readText() {
    const std::string name = takeName();
    group->setText(name + " 1, yes \"x\"", 1.1);
    model.add(Fuzz::ItemLister::list(*group).back(), {name, typeFor(name), {"1", "yes", "\"x\""}});
    return name;
  }

  std::string clear() {
    group->clear();
    model.places.clear();
    return takeName();
  }

  // --- An item -----------------------------------------------------------------------------------

  std::string rename() {
    const std::string name = takeName();
    Place* place = takePlace();
    if (place == nullptr) return name;
    const std::string oldName = place->model.name;
    place->item->rename(name);
    place->model.name = name;
    model.checkName(*group, oldName);
    return name;
  }

  /// The copy keeps its place in the lists, whatever it has become.
  std::string copyFromOther() {
    Place* to = takePlace();
    const Place* from = takePlace();
    if (to == nullptr || from == nullptr) return takeName();
    const std::string oldName = to->model.name;
    to->item->copyFrom(*from->item);
    to->model = from->model;
    model.checkName(*group, oldName);
    return to->model.name;
  }

  std::string addValue() {
    Place* place = takePlace();
    if (place == nullptr) return takeName();
    const unsigned choice = input.takeChoice();
    std::vector<std::string>& values = place->model.values;
    switch (choice % 4) {
      case 0: place->item->addInt(static_cast<int>(choice)); break;
      case 1: place->item->addString(std::string(choice, 's')); break;
      case 2: place->item->addBool(choice >= 128); break;
      default: place->item->addDouble(choice + 0.5); break;
    }
    const std::string texts[] = {std::to_string(choice), '"' + std::string(choice, 's') + '"',
                                 choice >= 128 ? "yes" : "no", std::to_string(choice) + ".5"};
    values.push_back(texts[choice % 4]);
    return place->model.name;
  }

  /// Numbers that are set are written as one raw byte.
  std::string setValue() {
    Place* place = takePlace();
    if (place == nullptr || place->model.values.empty()) return takeName();
    const unsigned choice = input.takeChoice();
    const unsigned long index = input.takeChoice() % place->model.values.size();
    const char byte = static_cast<char>(choice);
    switch (choice % 4) {
      case 0: place->item->setInt(byte, index); break;
      case 1: place->item->setString(place->model.name, index); break;
      case 2: place->item->setBool(choice >= 128, index); break;
      default: place->item->setDouble(byte, index); break;
    }
    const std::string texts[] = {std::string(1, byte), '"' + place->model.name + '"',
                                 choice >= 128 ? "yes" : "no", std::string(1, byte)};
    place->model.values[index] = texts[choice % 4];
    return place->model.name;
  }

  /// Removes one value, or it and the one behind the next, or all.
  std::string removeValue() {
    Place* place = takePlace();
    if (place == nullptr || place->model.values.empty()) return takeName();
    std::vector<std::string>& values = place->model.values;
    const unsigned long index = input.takeChoice() % (values.size() + 1);
    if (index == values.size()) {
      place->item->reset();
      values.clear();
    } else if (input.takeChoice() % 2 == 0) {
      place->item->removeValue(index);
      values.erase(values.begin() + static_cast<long>(index));
    } else {
      place->item->removeValue(std::vector<unsigned long>{index + 2, index, index});
      if (index + 2 < values.size()) values.erase(values.begin() + static_cast<long>(index) + 2);
      values.erase(values.begin() + static_cast<long>(index));
    }
    return place->model.name;
  }

  /// The count of an array is written as one raw byte.
  std::string setArray() {
    const unsigned long arrayCount = input.takeChoice();
    Place* place = takePlace();
    if (place == nullptr) return takeName();
    place->item->setArray(arrayCount < 200, arrayCount);
    const char byte = static_cast<char>(arrayCount);
    place->model.array = arrayCount == 0 ? "[]" : std::string{'[', byte, ']'};
    if (arrayCount >= 200) place->model.array.clear();
    return place->model.name;
  }

  std::string setTemplate() {
    const std::string name = input.takeChoice() % 2 == 0 ? takeName() : "";
    Place* place = takePlace();
    if (place == nullptr) return takeName();
    place->item->setTemplate(name);
    place->model.templateName = name;
    return place->model.name;
  }

  Fuzz::Input& input;
  std::unique_ptr<ParserGroup> group;
  Fuzz::GroupModel model;
};

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Fuzz::Input input(data, size);
  Script(input).run();
  return 0;
}
