/// Changes a group, step by step as an input says, and its model in the same way.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>

#include <cstdlib>
#include <memory>
#include <string>

#include "Fuzz.h"
#include "GroupModel.h"
#include "ItemChanges.h"

namespace Fuzz {

/// Each step takes its choices off the input.
class GroupScript {
 public:
  explicit GroupScript(Input& bytes) : input(bytes), group(new Quarry::ParserGroup("group")) {}

  const Quarry::ParserGroup& getGroup() const { return *group; }
  const GroupModel& getModel() const { return model; }

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

 private:
  using ParserGroup = Quarry::ParserGroup;
  using ParserItem = Quarry::ParserItem;

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
    const Items items = ItemLister::list(*group);
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
    model.add(ItemLister::list(*group).back(), {name, typeFor(name), {"1", "yes", "\"x\""}});
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
    Fuzz::addValue(*place, input.takeChoice());
    return place->model.name;
  }

  std::string setValue() {
    Place* place = takePlace();
    if (place == nullptr || place->model.values.empty()) return takeName();
    const unsigned choice = input.takeChoice();
    Fuzz::setValue(*place, input.takeChoice() % place->model.values.size(), choice);
    return place->model.name;
  }

  std::string removeValue() {
    Place* place = takePlace();
    if (place == nullptr || place->model.values.empty()) return takeName();
    const unsigned long count = place->model.values.size();
    const unsigned long index = input.takeChoice() % (count + 1);
    if (index == count) {
      Fuzz::removeAllValues(*place);
    } else if (input.takeChoice() % 2 == 0) {
      Fuzz::removeValue(*place, index);
    } else {
      Fuzz::removeValueAndNextButOne(*place, index);
    }
    return place->model.name;
  }

  std::string setArray() {
    const unsigned long arrayCount = input.takeChoice();
    Place* place = takePlace();
    if (place == nullptr) return takeName();
    Fuzz::setArray(*place, arrayCount);
    return place->model.name;
  }

  std::string setTemplate() {
    const std::string name = input.takeChoice() % 2 == 0 ? takeName() : "";
    Place* place = takePlace();
    if (place == nullptr) return takeName();
    Fuzz::setTemplate(*place, name);
    return place->model.name;
  }

  Input& input;
  std::unique_ptr<ParserGroup> group;
  GroupModel model;
};

}  // namespace Fuzz
