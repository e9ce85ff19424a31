#include <Quarry/ParserItems.h>

#include <Plinth/Expression.h>
#include <Plinth/MemberDatumPredicate.h>
#include <Plinth/MemberPredicate.h>
#include <Plinth/NotPredicate.h>
#include <Plinth/SubsetCollection.h>
#include <Plinth/VectorCollection.h>
#include <Quarry/ParserItem.h>

#include "internal/TreeParts.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

namespace Quarry {

namespace {

using Plinth::Expression;

using Kind = Plinth::Predicate<ParserItem*, bool>;
using Name = Plinth::Predicate<ParserItem*, Expression>;

using KindTest = bool (ParserItem::*)() const;
using NameTest = bool (ParserItem::*)(const Expression&) const;

using KindPredicate = Plinth::MemberPredicate<ParserItem*, bool>::Driver<KindTest>;
using NamePredicate = Plinth::MemberDatumPredicate<ParserItem*, Expression>::Driver<NameTest>;

template <class D>
using Not = Plinth::NotPredicate<ParserItem*>::Driver<D>;

/// Made once, and never destroyed: documents may outlive the process's statics.
const Kind::Driver& isKeyword() {
  static const Kind::Driver& predicate = *new KindPredicate(&ParserItem::isKeyWord);
  return predicate;
}

const Name::Driver& isMatching() {
  static const Name::Driver& predicate = *new NamePredicate(&ParserItem::isMatching, Expression());
  return predicate;
}

Kind isPlain() { return Kind(new Not<bool>(isKeyword().getClone())); }

Name matches(const Expression& expression) { return Name(isMatching().getClone(expression)); }

Kind matchesNot(const Expression& expression) {
  return Kind(new Not<Expression>(matches(expression).release()));
}

/// Returns the elements of `collection` that `predicate` accepts.
template <class D>
ParserItems filter(Plinth::Collection<ParserItem*> collection,
                   Plinth::Predicate<ParserItem*, D> predicate) {
  using Subset = typename Plinth::SubsetCollection<ParserItem*, D>::Driver;
  return ParserItems(new Subset(collection.release(), predicate.release()));
}

}  // namespace

// --- The list ------------------------------------------------------------------------------------

void detail::ItemList::reserve(std::size_t wanted) {
  constexpr std::size_t MOST = std::min<std::size_t>(UINT32_MAX, SIZE_MAX / PLACE_SIZE);
  if (wanted <= capacity) return;
  if (wanted > MOST) throw std::bad_alloc();
  auto* list = static_cast<ParserItem**>(SlabHeap::allocate(wanted * PLACE_SIZE));
  std::copy(begin(), end(), list);
  freePlaces();
  places = list;
  capacity = static_cast<std::uint32_t>(wanted);
}

void detail::ItemList::swap(ItemList& other) noexcept {
  std::swap(ownPlace, other.ownPlace);
  std::swap(places, other.places);
  if (places == &other.ownPlace) places = &ownPlace;
  if (other.places == &ownPlace) other.places = &other.ownPlace;
  std::swap(count, other.count);
  std::swap(capacity, other.capacity);
}

// --- The collections -----------------------------------------------------------------------------

ParserItems ParserItems::select(const detail::ItemList& items) {
  using View = Plinth::VectorCollection<ParserItem*, detail::ItemList>::Driver;
  return filter(Plinth::Collection<ParserItem*>(new View(&items)), isPlain());
}

ParserItems ParserItems::getMatching(const Expression& expression) const {
  return filter(*this, matches(expression));
}

ParserItems ParserItems::getNotMatching(const Expression& expression) const {
  return filter(*this, matchesNot(expression));
}

}  // namespace Quarry
