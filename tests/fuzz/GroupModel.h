/// What a group has to answer, kept as simply as can be.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>

#include <string>
#include <vector>

#include "Fuzz.h"
#include "Trees.h"

namespace Fuzz {

/// What an item holds, as text.
struct ItemModel {
  std::string name;
  Quarry::ParserItem::Type type = Quarry::ParserItem::ITEM_PLAIN;
  std::vector<std::string> values = {};
  std::string templateName = {};
  std::string array = {};  ///< as it is written

  std::string getText() const {
    const bool isCall = type == Quarry::ParserItem::ITEM_CALL;
    std::string text = templateName.empty() ? name : name + '<' + templateName + '>';
    text += array;
    if (isCall) text += '(';
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (!isCall) text += ' ';
      if (isCall && i > 0) text += ", ";
      text += values[i];
    }
    if (isCall) return text + ')';
    return values.empty() ? text + " <empty>" : text;
  }
};

using Items = std::vector<Quarry::ParserItem*>;

/// Lists all items of a group itself, keywords too.
class ItemLister {
 public:
  static Items list(const Quarry::ParserGroup& group) {
    ItemLister lister;
    Quarry::TreeWalker(lister).walkGroup(group, {0});
    return lister.items;
  }

  struct GroupMark {
    unsigned long depth;
  };
  struct ItemMark {};

  ItemMark beginItem(const Quarry::ParserItem& item, const GroupMark& group) {
    if (group.depth == 0) items.push_back(const_cast<Quarry::ParserItem*>(&item));
    return {};
  }
  void value(const Quarry::ParserItem&, unsigned long, const Quarry::ParserValue&) {}
  GroupMark beginGroup(const Quarry::ParserItem&, unsigned long, const Quarry::ParserGroup&,
                       const GroupMark& outer) {
    return {outer.depth + 1};
  }
  void endGroup(const GroupMark&) {}
  void endItem(const Quarry::ParserItem&, const ItemMark&) {}

 private:
  Items items;
};

/// A place in a group. Its item is null when that was detached.
struct Place {
  Quarry::ParserItem* item;
  ItemModel model;

  bool isPlain;  ///< the item was entered as a plain one
};

/// Lists the places of a group and answers every look-up by a walk over them.
class GroupModel {
 public:
  std::vector<Place> places;

  void add(Quarry::ParserItem* item, const ItemModel& model) {
    places.push_back({item, model, model.type == Quarry::ParserItem::ITEM_PLAIN});
  }

  void remove(const std::string& name) {
    std::erase_if(places, [&name](const Place& place) {
      return place.item == nullptr || place.model.name == name;
    });
    enterByType();
  }

  /// All places are those of a copy: without the detached items, and with items of its own.
  void moveTo(const Quarry::ParserGroup& copy) {
    std::erase_if(places, [](const Place& place) { return place.item == nullptr; });
    enterByType();
    const Items items = ItemLister::list(copy);
    require(items.size() == places.size());
    for (unsigned long i = 0; i < places.size(); ++i)
      places[i].item = items[i];
  }

  void checkAll(const Quarry::ParserGroup& group) const {
    Items all;
    Items plain;
    Items shown;
    std::string text;
    for (const Place& place : places) {
      if (place.isPlain) plain.push_back(place.item);
      if (place.item == nullptr) continue;
      all.push_back(place.item);
      if (place.model.type != Quarry::ParserItem::ITEM_KEYWORD) shown.push_back(place.item);
      text += ' ' + place.model.getText();
    }
    require(ItemLister::list(group) == all);
    require(group.getItemCount() == plain.size());
    for (unsigned long i = 0; i < plain.size(); ++i)
      require(group.getItem(i) == plain[i]);
    const Quarry::ParserItems items = group.getItems("");
    require(Items(items.begin(), items.end()) == shown);
    require(writeText(group, false) == text);
  }

  void checkName(const Quarry::ParserGroup& group, const std::string& name) const {
    Items plain;
    Items others;
    for (const Place& place : places) {
      if (place.item == nullptr || place.model.name != name) continue;
      (place.isPlain ? plain : others).push_back(place.item);
    }
    require(group.getEntries(name) == plain);
    require(group.getItem(name) == (plain.empty() ? nullptr : plain.front()));
    require(group.getKeyword(name) == (others.empty() ? nullptr : others.front()));
  }

 private:
  void enterByType() {
    for (Place& place : places)
      place.isPlain = place.model.type == Quarry::ParserItem::ITEM_PLAIN;
  }
};

}  // namespace Fuzz
