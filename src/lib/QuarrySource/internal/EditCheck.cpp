#include "EditCheck.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "EditReasons.h"

namespace Quarry {

namespace {

/// Without any limit, files that include each other in a circle are read without end, and a string
/// that is not closed can turn a comment into an include.
void findCircles(SourceDocument& document) {
  ParserLimits limits = document.getLimits();
  if (!limits.areSet()) limits.includeDepth = ParserLimits::UNLIMITED - 1;
  document.setLimits(limits);
}

/// Applies changes in the order of the text.
/// @return false when two of them are about the same bytes
bool apply(std::vector<const FileChange*> changes, std::string& text) {
  std::stable_sort(changes.begin(), changes.end(),
                   [](const FileChange* a, const FileChange* b) { return a->begin < b->begin; });
  std::string made;
  unsigned long done = 0;
  for (const FileChange* change : changes) {
    if (change->begin < done) return false;
    made.append(text, done, change->begin - done);
    made += change->text;
    done = change->end;
  }
  made.append(text, done);
  text = std::move(made);
  return true;
}

}  // namespace

bool EditCheck::run() {
  std::string first;
  for (const FileChanges& changes : edit.ways) {
    if (tryWay(changes)) return true;
    if (first.empty()) first = problem;
  }
  return refuse(first);
}

bool EditCheck::refuse(const std::string& reason) {
  problem = reason;
  return false;
}

bool EditCheck::tryWay(const FileChanges& changes) {
  candidate.copySettings(document);
  if (!applyChanges(changes) || !checkMarkers()) return false;
  findCircles(candidate);
  candidate.readAgain();
  candidate.setLimits(document.getLimits());
  if (!checkFiles()) return false;
  if (checkOpenings() && checkDiagnostics() && checkEvents()) return true;
  const std::string reason = EditReasons(document, edit).explain(changes);
  return reason.empty() ? false : refuse(reason);
}

bool EditCheck::applyChanges(const FileChanges& changes) {
  ChangesByPath changesByPath;
  for (const FileChange& change : changes)
    changesByPath[document.getFileOf(change.opening).getPath()].push_back(&change);
  texts.clear();
  const std::string shared = findSharedFile(document, changesByPath);
  if (!shared.empty()) return refuse(shared);
  for (const auto& [path, ofFile] : changesByPath) {
    const SourceFile& file = document.getFileOf(ofFile.front()->opening);
    const std::string reason = findStorageProblem(document, file);
    if (!reason.empty()) return refuse(reason);
    std::string text = file.getText();
    if (!apply(ofFile, text)) return refuse(EditReasons(document, edit).explain(changes));
    candidate.setText(path, text);
    texts[path] = std::move(text);
  }
  return true;
}

/// Nothing is read that a new directive names.
bool EditCheck::checkMarkers() {
  for (unsigned long i = 0; i < document.getFileCount(); ++i) {
    const SourceFile& file = document.getFile(i);
    const auto edited = texts.find(file.getPath());
    if (edited == texts.end()) continue;
    const std::string marker = findNewMarker(file.getText(), edited->second);
    if (!marker.empty()) {
      return refuse("'" + marker + "' is a directive wherever it stands, also in a string");
    }
  }
  return true;
}

/// What is not edited has to be what it was when the document was read.
bool EditCheck::checkFiles() {
  std::map<std::string_view, const std::string*> known;
  for (unsigned long i = 0; i < document.getFileCount(); ++i)
    known[document.getFile(i).getPath()] = &document.getFile(i).getText();
  for (unsigned long i = 0; i < candidate.getFileCount(); ++i) {
    const SourceFile& file = candidate.getFile(i);
    const auto before = known.find(file.getPath());
    const bool isEdited = texts.count(file.getPath()) > 0;
    if (isEdited || before == known.end() || *before->second == file.getText()) continue;
    return refuse("'" + file.getPath() + "' has changed since it was read");
  }
  return true;
}

/// A quote that is not closed can turn a comment into an include also where the document has ended
/// and nothing else shows it.
bool EditCheck::checkOpenings() {
  const bool isMore = candidate.getOpeningCount() > document.getOpeningCount();
  return !isMore || refuse("it would make an include of a comment");
}

/// Every diagnostic has to be there before, and all in the same order.
bool EditCheck::checkDiagnostics() {
  const std::vector<SourceDiagnostic>& before = document.getDiagnostics();
  auto known = before.begin();
  for (const SourceDiagnostic& diagnostic : candidate.getDiagnostics()) {
    const std::string message = candidate.describe(diagnostic);
    known = std::find_if(known, before.end(), [&](const SourceDiagnostic& old) {
      return old.rule == diagnostic.rule && document.describe(old) == message;
    });
    if (known == before.end()) return refuse("it would draw the message: " + message);
    ++known;
  }
  const bool isRead = candidate.getVersion() == document.getVersion();
  return isRead || refuse("the format version would be another one");
}

/// Returns the event that is to be read at an index; null behind the last one.
const TreeEvent* EditCheck::getExpected(unsigned long index) const {
  const std::vector<TreeEvent>& before = events.getAll();
  if (index < edit.firstEvent) return &before[index];
  const unsigned long askedEnd = edit.firstEvent + edit.asked.size();
  if (index < askedEnd) return &edit.asked[index - edit.firstEvent];
  const unsigned long kept = edit.firstEvent + edit.eventCount + (index - askedEnd);
  return kept < before.size() ? &before[kept] : nullptr;
}

bool EditCheck::checkEvents() {
  const SourceTree newTree(candidate);
  const TreeEvents newEvents(newTree);
  for (unsigned long index = 0;; ++index) {
    const bool isEnd = index == newEvents.getAll().size();
    const TreeEvent* read = isEnd ? nullptr : &newEvents.getAll()[index];
    const TreeEvent* expected = getExpected(index);
    if (read == nullptr && expected == nullptr) return checkValues(newTree);
    if (read != nullptr && expected != nullptr && *read == *expected) continue;
    return refuse("it would be read with " + (read == nullptr ? "nothing" : describe(*read)) +
                  " in place of " + (expected == nullptr ? "nothing" : describe(*expected)));
  }
}

bool EditCheck::checkValues(const SourceTree& newTree) {
  for (const SourceEdit::NewValue& value : edit.newValues) {
    const SourceItem& item = newTree.getItem(value.item);
    ParserItem read("value", ParserItem::ITEM_PLAIN, 0, 0);
    newTree.appendTo(read, newTree.getValue(item, value.index));
    if (!value.literal.isFirstValueOf(read)) {
      return refuse("value " + std::to_string(value.index + 1) + " would be read as another one");
    }
  }
  return true;
}

}  // namespace Quarry
