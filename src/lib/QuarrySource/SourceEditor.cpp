#include <Quarry/ParserWord.h>
#include <Quarry/internal/FileReplacement.h>
#include <QuarrySource/SourceEditor.h>

#include "internal/EditCheck.h"
#include "internal/EditReasons.h"
#include "internal/ItemPlaces.h"
#include "internal/SourceEdit.h"
#include "internal/TreeEvents.h"
#include "internal/ValueChanges.h"

#include <utility>

namespace Quarry {

namespace {

constexpr unsigned long NOWHERE = SourceTree::NOWHERE;
constexpr double NEWEST_VERSION = 1.1;

std::string quote(const std::string& name) { return "'" + name + "'"; }

bool isKeyword(const std::string& name) {
  return ParserWord(name, true, NEWEST_VERSION).isKeyword();
}

/// Returns why a name cannot be one; empty where it can.
std::string findNameProblem(const std::string& name) {
  const ParserWord word(name, true, NEWEST_VERSION);
  if (word.isIdentifier() || word.isKeyword()) return std::string();
  if (name.empty()) return "a name cannot be empty";
  if (word.isBool()) return quote(name) + " is a value and no name";
  return quote(name) +
         " is no name: that is a letter, '_' or '#', and then letters, digits and [ ] _ - . % :";
}

/// Spells an item up to what its group holds.
std::string spellHead(const TreeEvent& event, bool isGroup,
                      const std::vector<std::string>& spellings) {
  const bool isCall = event.type == ParserItem::ITEM_CALL;
  std::string head = event.text + (isCall ? "(" : "");
  for (const std::string& spelling : spellings) {
    const bool isFirst = &spelling == &spellings.front();
    head += (isCall ? (isFirst ? "" : ", ") : " ") + spelling;
  }
  return head + (isCall ? ")" : "") + (isGroup ? " {" : "");
}

}  // namespace

SourceEditor::SourceEditor(SourceDocument& edited)
    : document(edited),
      tree(std::make_unique<SourceTree>(edited)),
      events(std::make_unique<TreeEvents>(*tree)) {}

SourceEditor::~SourceEditor() = default;

// --- Values --------------------------------------------------------------------------------------

bool SourceEditor::setValues(const std::string& path, const std::vector<SourceLiteral>& literals) {
  unsigned long item = NOWHERE;
  return findItem(path, item) && acceptLiterals(literals) && changeValues(item, literals);
}

bool SourceEditor::setValue(const std::string& path, const SourceLiteral& literal) {
  unsigned long item = NOWHERE;
  unsigned long value = NOWHERE;
  return findValue(path, item, value) && acceptLiterals({literal}) &&
         replaceValue(item, value, literal);
}

bool SourceEditor::addValue(const std::string& path, const SourceLiteral& literal) {
  unsigned long item = NOWHERE;
  if (!findItem(path, item) || !acceptLiterals({literal})) return false;
  return isEmptyItem(item) ? replaceValue(item, 0, literal) : appendValue(item, literal);
}

bool SourceEditor::removeValue(const std::string& path) {
  unsigned long item = NOWHERE;
  unsigned long value = NOWHERE;
  if (!findValue(path, item, value)) return false;
  if (tree->getItem(item).valueCount == 1) return changeValues(item, {});
  SourceEdit edit = startValueEdit(item);
  edit.asked.erase(edit.asked.begin() + static_cast<long>(value));
  ValueChanges changes(*tree, item);
  changes.remove(value);
  edit.ways = {changes.get()};
  return make(edit);
}

/// Tells whether all that stands behind the name is `<empty>`.
bool SourceEditor::isEmptyItem(unsigned long item) const {
  const SourceItem& found = tree->getItem(item);
  return found.valueCount == 1 && tree->getValue(found, 0).type == ParserValue::TYPE_EMPTY;
}

/// Tells whether a value need not be spelled anew.
bool SourceEditor::isKept(const SourceValue& value, const SourceLiteral& literal) const {
  if (tree->getSpelling(value) == literal.getSpelling(document.getVersion())) return true;
  if (literal.isTyped()) return false;
  ParserItem read("value", ParserItem::ITEM_PLAIN, 0, 0);
  tree->appendTo(read, value);
  return literal.isFirstValueOf(read);
}

/// Returns an edit of an item's values that asks for those that are there.
SourceEdit SourceEditor::startValueEdit(unsigned long item) const {
  SourceEdit edit;
  edit.firstEvent = events->getBegin(item) + 1;
  edit.eventCount = tree->getItem(item).valueCount;
  const auto first = events->getAll().begin() + static_cast<long>(edit.firstEvent);
  edit.asked.assign(first, first + static_cast<long>(edit.eventCount));
  return edit;
}

bool SourceEditor::replaceValue(unsigned long item, unsigned long value,
                                const SourceLiteral& literal) {
  if (isKept(tree->getValue(tree->getItem(item), value), literal)) return true;
  const std::string spelling = literal.getSpelling(document.getVersion());
  SourceEdit edit = startValueEdit(item);
  edit.asked[value] = makeValueEvent(literal.getType(), spelling);
  edit.newValues = {{item, value, literal}};
  ValueChanges changes(*tree, item);
  changes.replace(value, spelling);
  if (!changes.getProblem().empty()) return refuse(changes.getProblem());
  edit.ways = {changes.get()};
  return make(edit);
}

bool SourceEditor::appendValue(unsigned long item, const SourceLiteral& literal) {
  const std::string spelling = literal.getSpelling(document.getVersion());
  SourceEdit edit = startValueEdit(item);
  edit.newValues = {{item, edit.asked.size(), literal}};
  edit.asked.push_back(makeValueEvent(literal.getType(), spelling));
  ValueChanges changes(*tree, item);
  changes.append({spelling});
  edit.ways = {changes.get()};
  return make(edit);
}

bool SourceEditor::changeValues(unsigned long item, const std::vector<SourceLiteral>& literals) {
  const SourceItem& changed = tree->getItem(item);
  const bool needsTag = changed.type != ParserItem::ITEM_CALL && !changed.hasGroup();
  if (literals.empty() && needsTag) return changeValues(item, {SourceLiteral::makeEmpty()});
  SourceEdit edit = startValueEdit(item);
  ValueChanges changes(*tree, item);
  std::vector<std::string> added;
  const std::vector<TreeEvent> before = std::exchange(edit.asked, {});
  for (unsigned long i = 0; i < literals.size(); ++i) {
    const std::string spelling = literals[i].getSpelling(document.getVersion());
    const bool isThere = i < before.size();
    if (isThere && isKept(tree->getValue(changed, i), literals[i])) {
      edit.asked.push_back(before[i]);
      continue;
    }
    edit.asked.push_back(makeValueEvent(literals[i].getType(), spelling));
    edit.newValues.push_back({item, i, literals[i]});
    if (isThere) changes.replace(i, spelling);
    if (!isThere) added.push_back(spelling);
  }
  if (literals.size() < before.size()) changes.removeFrom(literals.size());
  if (!added.empty()) changes.append(added);
  if (!changes.getProblem().empty()) return refuse(changes.getProblem());
  edit.ways = {changes.get()};
  return make(edit);
}

// --- Items ---------------------------------------------------------------------------------------

bool SourceEditor::addItem(const std::string& parent, const std::string& name,
                           const std::vector<SourceLiteral>& literals,
                           const SourcePlacement& placement) {
  const auto type = isKeyword(name) ? ParserItem::ITEM_KEYWORD : ParserItem::ITEM_PLAIN;
  const std::vector<SourceLiteral> none = {SourceLiteral::makeEmpty()};
  return insert(parent, placement, makeItemEvent(type, name), literals.empty() ? none : literals);
}

bool SourceEditor::addGroup(const std::string& parent, const std::string& name,
                            const SourcePlacement& placement) {
  const auto type = isKeyword(name) ? ParserItem::ITEM_KEYWORD : ParserItem::ITEM_PLAIN;
  return insert(parent, placement, makeItemEvent(type, name), {});
}

bool SourceEditor::addCall(const std::string& parent, const std::string& name,
                           const std::vector<SourceLiteral>& literals,
                           const SourcePlacement& placement) {
  if (isKeyword(name)) return refuse("a keyword takes no arguments");
  return insert(parent, placement, makeItemEvent(ParserItem::ITEM_CALL, name), literals);
}

/// What has no literals and is no call is a group.
bool SourceEditor::insert(const std::string& parentPath, const SourcePlacement& placement,
                          const TreeEvent& event, const std::vector<SourceLiteral>& literals) {
  unsigned long parent = NOWHERE;
  if (!findGroup(parentPath, parent) || !acceptLiterals(literals)) return false;
  const std::string nameProblem = findNameProblem(event.text);
  if (!nameProblem.empty()) return refuse(nameProblem);
  const bool isGroup = literals.empty() && event.type != ParserItem::ITEM_CALL;
  SourceEdit edit;
  edit.asked = {event};
  std::vector<std::string> spellings;
  for (const SourceLiteral& literal : literals) {
    spellings.push_back(literal.getSpelling(document.getVersion()));
    edit.asked.push_back(makeValueEvent(literal.getType(), spellings.back()));
  }
  if (isGroup) edit.asked.insert(edit.asked.end(), {makeGroupBegin(), makeGroupEnd(true)});
  unsigned long item = NOWHERE;
  const NewItem added = {spellHead(event, isGroup, spellings), isGroup};
  if (!placeItem(parent, placement, added, edit, item)) return false;
  for (unsigned long i = 0; i < literals.size(); ++i)
    edit.newValues.push_back({item, i, literals[i]});
  return make(edit);
}

/// @param item receives the index that the new item will have
bool SourceEditor::placeItem(unsigned long parent, const SourcePlacement& placement,
                             const NewItem& added, SourceEdit& edit, unsigned long& item) {
  const ItemPlaces places(*tree);
  if (placement.side == SourcePlacement::AT_END) {
    const bool isRoot = parent == NOWHERE;
    edit.ways = places.insertAtEnd(parent, added);
    edit.firstEvent = isRoot ? events->getAll().size() : events->getEnd(parent) - 1;
    item = isRoot ? tree->getItemCount() : tree->getItem(parent).next;
    return true;
  }
  unsigned long sibling = NOWHERE;
  if (!findItem(placement.sibling, sibling)) return false;
  if (tree->getItem(sibling).parent != parent) {
    return refuse("'" + placement.sibling + "' is in another group");
  }
  const bool isBefore = placement.side == SourcePlacement::BEFORE;
  edit.ways = isBefore ? places.insertBefore(sibling, added) : places.insertBehind(sibling, added);
  edit.firstEvent = isBefore ? events->getBegin(sibling) : events->getEnd(sibling);
  item = isBefore ? sibling : tree->getItem(sibling).next;
  return true;
}

bool SourceEditor::removeItem(const std::string& path) {
  unsigned long item = NOWHERE;
  if (!findItem(path, item)) return false;
  SourceEdit edit;
  edit.firstEvent = events->getBegin(item);
  edit.eventCount = events->getEnd(item) - edit.firstEvent;
  edit.ways = ItemPlaces(*tree).remove(item);
  if (edit.ways.empty()) return refuse("the item begins in one file and ends in another");
  return make(edit);
}

bool SourceEditor::renameItem(const std::string& path, const std::string& name) {
  unsigned long item = NOWHERE;
  if (!findItem(path, item)) return false;
  const SourceItem& renamed = tree->getItem(item);
  std::string reason = findNameProblem(name);
  if (reason.empty()) {
    reason = findPieceProblem(document, "the name", renamed.nameBegin, renamed.nameLength);
  }
  const bool isCall = renamed.type == ParserItem::ITEM_CALL;
  if (reason.empty() && isCall && isKeyword(name)) reason = "a keyword takes no arguments";
  if (!reason.empty()) return refuse(reason);
  if (tree->getName(renamed) == name) return true;
  const auto type = isKeyword(name) ? ParserItem::ITEM_KEYWORD
                    : isCall        ? ParserItem::ITEM_CALL
                                    : ParserItem::ITEM_PLAIN;
  const SourcePosition begin = document.getPosition(renamed.nameBegin);
  SourceEdit edit;
  edit.ways = {{{begin.opening, begin.offset, begin.offset + renamed.nameLength, name}}};
  edit.firstEvent = events->getBegin(item);
  edit.eventCount = 1;
  edit.asked = {makeItemEvent(type, name)};
  return make(edit);
}

// --- Find ----------------------------------------------------------------------------------------

bool SourceEditor::refuse(const std::string& reason) {
  problem = reason;
  return false;
}

bool SourceEditor::acceptLiterals(const std::vector<SourceLiteral>& literals) {
  for (const SourceLiteral& literal : literals) {
    if (!literal.isValid()) return refuse(literal.getProblem());
  }
  return true;
}

/// Has to come first in every edit.
bool SourceEditor::begin() {
  problem.clear();
  const bool isRead = document.getOpeningCount() > 0 && document.getVersion() > 0.0;
  return isRead || refuse("the document could not be read");
}

bool SourceEditor::findItem(const std::string& path, unsigned long& item) {
  if (!begin()) return false;
  const SourceTarget target = tree->find(path);
  if (!target.isFound()) return refuse(target.problem);
  if (target.item == NOWHERE) return refuse("the path leads to no item");
  if (target.value != NOWHERE) return refuse("'" + path + "' is a value and no item");
  item = target.item;
  return true;
}

bool SourceEditor::findValue(const std::string& path, unsigned long& item, unsigned long& value) {
  if (!begin()) return false;
  const SourceTarget target = tree->find(path);
  if (!target.isFound()) return refuse(target.problem);
  if (target.item == NOWHERE) return refuse("the path leads to no value");
  const unsigned long count = tree->getItem(target.item).valueCount;
  const bool isChosen = target.value != NOWHERE;
  if (!isChosen && count == 0) return refuse("'" + path + "' has no values");
  if (!isChosen && count > 1) {
    const std::string range = "'" + path + "#1' to '" + path + "#" + std::to_string(count) + "'";
    return refuse("'" + path + "' has several values, " + range);
  }
  item = target.item;
  value = isChosen ? target.value : 0;
  return true;
}

bool SourceEditor::findGroup(const std::string& path, unsigned long& item) {
  if (!begin()) return false;
  item = NOWHERE;
  if (path.empty()) return true;
  if (!findItem(path, item)) return false;
  return tree->getItem(item).hasGroup() || refuse("'" + path + "' has no group");
}

// --- Make ----------------------------------------------------------------------------------------

bool SourceEditor::make(const SourceEdit& edit) {
  if (edit.ways.size() == 1 && edit.ways.front().empty()) return true;
  EditCheck check(document, *events, edit);
  if (!check.run()) return refuse(check.getProblem());
  accept(check);
  return true;
}

/// All that can fail comes first, and what has been done until then is undone.
void SourceEditor::accept(EditCheck& check) {
  std::map<std::string, std::string> changed = changedTexts;
  std::map<std::string, Stored> stored = storedTexts;
  for (unsigned long i = 0; i < document.getFileCount(); ++i) {
    const SourceFile& file = document.getFile(i);
    const auto text = check.getTexts().find(file.getPath());
    if (text == check.getTexts().end()) continue;
    const bool isStandIn = document.findText(file.getPath()) != nullptr;
    const auto known = stored.insert({file.getPath(), {file.getText(), isStandIn}}).first;
    changed[file.getPath()] = text->second;
    if (known->second.text != text->second) continue;
    changed.erase(file.getPath());
    if (!known->second.isStandIn) check.getCandidate().dropText(file.getPath());
    stored.erase(known);
  }
  document.swap(check.getCandidate());
  try {
    auto newTree = std::make_unique<SourceTree>(document);
    events = std::make_unique<TreeEvents>(*newTree);
    tree = std::move(newTree);
  } catch (...) {
    document.swap(check.getCandidate());
    throw;
  }
  changedTexts.swap(changed);
  storedTexts.swap(stored);
}

// --- Files ---------------------------------------------------------------------------------------

bool SourceEditor::save() {
  problem.clear();
  while (!changedTexts.empty()) {
    const auto first = changedTexts.begin();
    if (!saveFile(first->first, first->second)) return false;
    document.dropText(first->first);
    storedTexts.erase(first->first);
    changedTexts.erase(first);
  }
  return true;
}

bool SourceEditor::saveFile(const std::string& path, const std::string& text) {
  const Stored& stored = storedTexts.at(path);
  if (!stored.isStandIn && !holdsBytes(path, stored.text)) {
    return refuse("'" + path + "' has changed since it was read");
  }
  FileReplacement file(path);
  return file.write(text) || refuse(file.getProblem());
}

}  // namespace Quarry
