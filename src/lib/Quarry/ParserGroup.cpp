#include <Quarry/ParserGroup.h>

#include <Plinth/Exception.h>
#include <Plinth/Expression.h>
#include <Quarry/ParserWord.h>

#include "internal/BinaryReader.h"
#include "internal/BinaryWriter.h"
#include "internal/Messages.h"
#include "internal/NameIndex.h"
#include "internal/OutputBuffer.h"
#include "internal/ParserWordStream.h"
#include "internal/RegionCheck.h"
#include "internal/SlabRegion.h"
#include "internal/TextReader.h"
#include "internal/TextWriter.h"
#include "internal/TreeCopier.h"
#include "internal/TreeParts.h"
#include "internal/TreeRemover.h"

#include <algorithm>
#include <cassert>
#include <numeric>

namespace Quarry {

namespace {

/// Names are checked as words of this format version.
constexpr double NAME_VERSION = 1.1;

/// Where programs have been told that a name was refused, since the first version.
constexpr char NAME_CHECK_FILE[] = "src/lib/Quarry/ParserGroup";
constexpr char NAME_CHECK_FUNCTION[] = "addItem";
constexpr unsigned long NAME_CHECK_LINE = 237;

ParserItem::Type typeForName(const std::string& name) {
  const ParserWord word(name, true, NAME_VERSION);
  if (word.isIdentifier()) return ParserItem::ITEM_PLAIN;
  if (word.isKeyword()) return ParserItem::ITEM_KEYWORD;
  Plinth::Fatal fatal(Messages::invalidItemName(name));
  fatal.locate(NAME_CHECK_FILE, NAME_CHECK_FUNCTION, NAME_CHECK_LINE);
  throw fatal;
}

}  // namespace

// --- Make ----------------------------------------------------------------------------------------

ParserGroup::ParserGroup(const std::string& groupName) : plainCount(0), comparisons(0) {
  if (!groupName.empty()) makeDetails().name = groupName;
}

/// Delegates, so that the items copied so far are freed when one cannot be copied.
ParserGroup::ParserGroup(const ParserGroup& other) : ParserGroup(other.getName()) {
  TreeCopier::copyItems(other, *this);
}

ParserGroup::~ParserGroup() {
  freeRegion();
  if (!items.empty()) TreeRemover::removeItems(items);
}

void* ParserGroup::operator new(std::size_t size) { return SlabHeap::allocate(size); }

void* ParserGroup::operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return SlabHeap::allocateOrNull(size);
}

void ParserGroup::operator delete(void* memory, std::size_t size) noexcept {
  SlabHeap::free(memory, size);
}

void ParserGroup::operator delete(void* memory, const std::nothrow_t&) noexcept {
  SlabHeap::free(memory, sizeof(ParserGroup));
}

// --- Look ----------------------------------------------------------------------------------------

const std::string& ParserGroup::getName() const {
  static const std::string& none = *new std::string;  // outlives every document
  if (details == nullptr) return none;
  return details->name;
}

/// The answer is always the one of a scan. Where a large group is scanned again and again, an index
/// is made of the items that it has then; what was added since is scanned.
ParserItem* ParserGroup::getItem(const std::string& wanted) const {
  const NameIndex* names = getNames();
  if (names == nullptr) return findByScan(wanted, 0);
  if (names->isStale()) {
    forgetNames();
    return findByScan(wanted, 0);
  }
  ParserItem* item = names->find(wanted);
  return item != nullptr ? item : findByScan(wanted, names->getCount());
}

/// Returns the first of the plain items from `index` on that is called `wanted`, or null.
ParserItem* ParserGroup::findByScan(const std::string& wanted, unsigned long index) const {
  constexpr unsigned long LARGE = 32;
  constexpr unsigned long SCANS = 4;
  if (plainCount >= LARGE && comparisons > SCANS * plainCount) {
    makeNames();
    if (const NameIndex* names = getNames()) return names->find(wanted);
  }
  const unsigned long found =
      getPositions() != nullptr ? scanPositions(wanted, index) : scanItems(wanted, index);
  comparisons += static_cast<std::uint32_t>(found - index);
  return found < plainCount ? plainAt(found) : nullptr;
}

/// Returns the index of that item, or plainCount, where the list begins with the plain items.
unsigned long ParserGroup::scanItems(std::string_view wanted, unsigned long index) const {
  const ParserItem::Name key = ParserItem::Name::makeKey(wanted);
  const auto isWanted = [wanted, &key](const ParserItem* item) {
    return item != nullptr && item->name.is(wanted, key);
  };
  const auto begin = items.begin();
  const auto end = begin + plainCount;
  return static_cast<unsigned long>(std::find_if(begin + index, end, isWanted) - begin);
}

/// The same, where it does not.
unsigned long ParserGroup::scanPositions(std::string_view wanted, unsigned long index) const {
  const ParserItem::Name key = ParserItem::Name::makeKey(wanted);
  for (; index < plainCount; ++index) {
    const ParserItem* item = plainAt(index);
    if (item != nullptr && item->name.is(wanted, key)) break;
  }
  return index;
}

ParserGroup* ParserGroup::getGroup(const std::string& wanted) const {
  const ParserItem* item = getItem(wanted);
  return item != nullptr ? item->getGroup(0) : nullptr;
}

ParserItem* ParserGroup::getKeyword(const std::string& wanted) const {
  const Positions* positions = getPositions();
  if (positions == nullptr) return nullptr;
  for (const unsigned long position : positions->keywords) {
    ParserItem* item = items[position];
    if (item->name.get() == wanted) return item;
  }
  return nullptr;
}

std::vector<ParserItem*> ParserGroup::getEntries(const std::string& wanted) const {
  std::vector<ParserItem*> entries;
  for (unsigned long i = 0; i < plainCount; ++i) {
    ParserItem* item = plainAt(i);
    if (item != nullptr && item->name.get() == wanted) entries.push_back(item);
  }
  return entries;
}

ParserItems ParserGroup::getItems(const std::string& pattern) const {
  const ParserItems all = ParserItems::select(items);
  return pattern.empty() ? all : all.getMatching(Plinth::Expression(pattern));
}

// --- The region ----------------------------------------------------------------------------------

/// Returns memory for items that are read from so many bytes; null where there are items already,
/// and for so few that the last page would be a waste. Those of its slab that are not used never
/// get memory.
SlabRegion* ParserGroup::makeRegionFor(unsigned long bytes) {
  constexpr unsigned long MANY = 1UL << 10;
  noteChange();
  return items.empty() && bytes >= MANY ? makeRegion() : nullptr;
}

/// Returns memory for items that are copied; null where the others have ordinary memory, too.
SlabRegion* ParserGroup::makeRegionFor(const ParserGroup& copied) {
  const bool isMany = copied.details != nullptr && copied.details->region != nullptr;
  return isMany ? makeRegion() : nullptr;
}

/// A region that is used by whoever reads this group at the moment, and has told of something
/// before the first item, stays.
SlabRegion* ParserGroup::makeRegion() {
  Details& held = makeDetails();
  if (held.region != nullptr && held.region->isUsed()) return nullptr;
  held.region = SlabRegion::make();
  return held.region.get();
}

/// Frees all items at once where they lie in a region that is whole.
void ParserGroup::freeRegion() noexcept {
  if (details == nullptr || details->region == nullptr) return;
  if (details->region->isUsed()) return details->region->breakUp();
  assert(RegionCheck::holds(*this, *details->region));
  if (details->region->isWhole()) items.forget();
  details->region.reset();
}

/// Has the tree around this group be freed part by part.
void ParserGroup::leaveRegion() const noexcept {
  if (!isPart) return;
  isPart = false;
  if (SlabRegion* region = SlabRegion::of(this)) region->breakUp();
}

/// Has this tree, and the one around it, be freed part by part: one of the items changes, comes or
/// goes.
void ParserGroup::noteChange() const noexcept {
  leaveRegion();
  if (details != nullptr && details->region != nullptr) details->region->breakUp();
}

/// Frees what a part of a region does not have from there.
void ParserGroup::freeDetails(void* group) { static_cast<ParserGroup*>(group)->details.reset(); }

// --- The lists -----------------------------------------------------------------------------------

/// Enters the item that comes to stand at `position`, the end of `items`, in a list of positions.
void ParserGroup::enter(const ParserItem& item, unsigned long position) {
  const bool isPlain = item.type == ParserItem::ITEM_PLAIN;
  Positions& lists = makePositions();
  (isPlain ? lists.plain : lists.keywords).push_back(position);
  if (isPlain) ++plainCount;
}

/// Takes the item that was entered last out again.
void ParserGroup::leave(const ParserItem& item) noexcept {
  const bool isPlain = item.type == ParserItem::ITEM_PLAIN;
  Positions* lists = getPositions();
  if (lists != nullptr) (isPlain ? lists->plain : lists->keywords).pop_back();
  if (isPlain) --plainCount;
}

/// Returns what few groups have, which is made where there is none. A region is told before.
ParserGroup::Details& ParserGroup::makeDetails() const {
  if (details != nullptr) return *details;
  SlabRegion* region = isPart ? SlabRegion::of(this) : nullptr;
  if (region != nullptr) region->holdsMore(const_cast<ParserGroup*>(this), freeDetails);
  details = std::make_unique<Details>();
  return *details;
}

/// Returns the lists of positions, which are made where there are none.
ParserGroup::Positions& ParserGroup::makePositions() {
  if (Positions* lists = getPositions()) return *lists;
  auto made = std::make_unique<Positions>();
  made->plain.resize(plainCount);
  std::iota(made->plain.begin(), made->plain.end(), 0UL);
  Positions& lists = *made;
  makeDetails().positions = std::move(made);
  return lists;
}

/// An index of names is a help that can be done without.
void ParserGroup::makeNames() const noexcept {
  try {
    std::vector<ParserItem*> plain(plainCount);
    for (unsigned long i = 0; i < plainCount; ++i)
      plain[i] = plainAt(i);
    makeDetails().names = std::make_unique<NameIndex>(plain);
  } catch (const std::bad_alloc&) {
    forgetNames();
  }
  comparisons = 0;
}

void ParserGroup::forgetNames() const noexcept {
  if (details != nullptr) details->names.reset();
  comparisons = 0;
}

ParserItem* ParserGroup::append(std::unique_ptr<ParserItem> item) {
  append(item.get());
  return item.release();
}

void ParserGroup::removeLastItem() {
  ParserItem* last = items.back();
  leave(*last);
  items.pop_back();
  delete last;
}

// --- Change --------------------------------------------------------------------------------------

ParserItem* ParserGroup::addItem(const ParserItem& item) {
  ParserItem* adopted = const_cast<ParserItem*>(&item);  // the caller gives it away, see the header
  noteChange();
  append(adopted);
  return adopted;
}

ParserItem* ParserGroup::addItem(const std::string& newName, const unsigned long& line,
                                 const unsigned long& column) {
  noteChange();
  return append(std::make_unique<ParserItem>(newName, typeForName(newName), line, column));
}

ParserGroup* ParserGroup::addGroup(const std::string& newName, const bool& folding) {
  return addGroupItem(newName, nullptr, folding);
}

ParserGroup* ParserGroup::addGroup(ParserGroup* group, const bool& folding) {
  assert(group != nullptr);
  return addGroupItem(group->getName(), group, folding);
}

ParserGroup* ParserGroup::addGroupItem(const std::string& newName, ParserGroup* group,
                                       bool folding) {
  ParserItem* item = addItem(newName, 0, 0);
  item->setFolding(folding);
  try {
    return item->addGroup(group);
  } catch (...) {
    removeLastItem();
    throw;
  }
}

void ParserGroup::detachItem(const unsigned long& index) {
  assert(index < plainCount);
  noteChange();
  forgetNames();
  const Positions* positions = getPositions();
  items[positions != nullptr ? positions->plain[index] : index] = nullptr;
}

/// The name may be the one of an item that is removed: it is not used any more when they go.
void ParserGroup::removeItem(const std::string& doomed) {
  noteChange();
  detail::ItemList kept;
  detail::ItemList removed;
  for (ParserItem* item : items) {
    if (item != nullptr) (item->name.get() == doomed ? removed : kept).push_back(item);
  }
  std::unique_ptr<Positions> found = findPositions(kept);
  if (found != nullptr) makeDetails();
  plainCount = found != nullptr ? found->plain.size() : kept.size();
  if (details != nullptr) details->positions = std::move(found);
  items.swap(kept);
  forgetNames();
  TreeRemover::removeItems(removed);
}

/// Returns the positions of items of which none is null; null when all of them are plain.
std::unique_ptr<ParserGroup::Positions> ParserGroup::findPositions(const detail::ItemList& list) {
  const auto isPlain = [](const ParserItem* item) { return item->type == ParserItem::ITEM_PLAIN; };
  if (std::all_of(list.begin(), list.end(), isPlain)) return nullptr;
  auto found = std::make_unique<Positions>();
  for (unsigned long i = 0; i < list.size(); ++i)
    (isPlain(list[i]) ? found->plain : found->keywords).push_back(i);
  return found;
}

void ParserGroup::clear() {
  leaveRegion();
  freeRegion();
  plainCount = 0;
  if (details != nullptr) details->positions.reset();
  forgetNames();
  TreeRemover::removeItems(items);
}

// --- Text ----------------------------------------------------------------------------------------

void ParserGroup::getText(std::string& text, const bool& braces, const bool& multiline,
                          const unsigned long& indent) const {
  OutputBuffer written;
  TextWriter(written, multiline).writeGroup(*this, braces, indent);
  written.appendTo(text);
}

bool ParserGroup::setText(const std::string& text, const double& version) {
  ParserWordStream stream(text, version);
  return setText(stream);
}

bool ParserGroup::setText(ParserWordStream& stream) { return readText(stream, *this).endsWell; }

// --- Binary --------------------------------------------------------------------------------------

std::vector<char> ParserGroup::getBinary(const bool& withName) const {
  std::vector<char> buffer;
  if (withName) ParserValue::stringToBin(buffer, getName());
  BinaryWriter writer;
  writer.writeGroup(*this);
  writer.appendTo(buffer);
  return buffer;
}

bool ParserGroup::setBinary(const std::vector<char>& data, unsigned long& pos) {
  return BinaryReader(data, pos).readGroup(*this);
}

}  // namespace Quarry
