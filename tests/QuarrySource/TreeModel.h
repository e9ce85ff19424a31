/// Trees of which parts can be left out, for tests that make many of them.
#pragma once

#include <Quarry/ParserGroup.h>
#include <Quarry/ParserItem.h>
#include <Quarry/ParserValue.h>

#include <map>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace TestSupport {

struct ItemModel;

/// How code makes a value.
struct ValueModel {
  enum Form {
    ADD_BOOL,
    ADD_CHAR,
    ADD_INT,
    ADD_DOUBLE,
    ADD_STRING,
    ADD_BLOCK,
    SET_BOOL,
    SET_INT,
    SET_DOUBLE,
    SET_STRING,
    SET_BLOCK,
    WORD,  ///< from a word, of any type
    GROUP
  };

  Form form = ADD_INT;
  int integer = 0;  ///< also a bool or a character
  double number = 0.0;
  std::string text;  ///< a string, a block, a word, or the name of a group
  Quarry::ParserValue::Type type = Quarry::ParserValue::TYPE_INT;  ///< of a word
  double version = 1.1;                                            ///< of a word
  std::vector<ItemModel> items;                                    ///< of a group
};

/// How code makes an item.
struct ItemModel {
  enum Form {
    BUILT,    ///< from its parts
    READ,     ///< from a text, which may have any number of items
    DECODED,  ///< from binary data, as many items as the first value has
  };

  Form form = BUILT;
  unsigned long number = 0;  ///< tells it from all others
  std::string name;
  Quarry::ParserItem::Type type = Quarry::ParserItem::ITEM_PLAIN;
  std::string templateName;
  bool isArray = false;
  unsigned long arrayCount = 0;
  bool isFolded = false;
  bool isDetached = false;
  bool wasWritten = false;  ///< its values have been given texts
  bool wasAsked = false;    ///< its numbers have been converted
  std::vector<ValueModel> values;
  std::string text;      ///< that is read
  double version = 1.1;  ///< of that text
};

/// Makes trees of models.
class TreeMaker {
 public:
  /// Leaves out the items of those numbers.
  explicit TreeMaker(std::set<unsigned long> doomedNumbers = {});

  void addItems(Quarry::ParserGroup& group, const std::vector<ItemModel>& models);

  /// Returns the number of the model that an item was made of.
  unsigned long getNumber(const Quarry::ParserItem* item) const { return numbers.at(item); }

 private:
  void addItem(Quarry::ParserGroup& group, const ItemModel& model);
  void addValue(Quarry::ParserItem& item, const ValueModel& model);
  void build(Quarry::ParserGroup& group, const ItemModel& model);
  void noteNewItems(const Quarry::ParserGroup& group, unsigned long number);

  const std::set<unsigned long> doomed;
  std::map<const Quarry::ParserItem*, unsigned long> numbers;
  std::vector<std::unique_ptr<Quarry::ParserItem>> detached;  ///< kept: no other gets its place
};

/// Describes a tree so that equal trees, and only those, have equal descriptions: names, kinds,
/// templates, arrays, types, values and groups, but not how numbers are spelled.
std::string describeAll(const Quarry::ParserGroup& root);

/// Returns the texts that the values of a tree have so far.
std::vector<std::string> collectWords(const Quarry::ParserGroup& root);

}  // namespace TestSupport
