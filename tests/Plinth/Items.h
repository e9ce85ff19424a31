/// What the tests of collections, locators and predicates are written with.
#pragma once

#include <Plinth/Collection.h>
#include <Plinth/Expression.h>
#include <Plinth/Locator.h>
#include <Plinth/MemberDatumPredicate.h>
#include <Plinth/MemberPredicate.h>
#include <Plinth/NotPredicate.h>
#include <Plinth/Predicate.h>
#include <Plinth/SubsetCollection.h>
#include <Plinth/VectorCollection.h>
#include <Plinth/VectorLocator.h>

#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace TestSupport {

// --- Elements ------------------------------------------------------------------------------------

/// An element: a name of one letter, "-" for the null element.
struct Item {
  bool isMarked() const { return marked; }
  bool isMatching(const Plinth::Expression& pattern) const { return pattern.match(name); }

  std::string name;
  bool marked = false;
};

using Items = Plinth::Collection<Item*>;
using ItemLocator = Plinth::Locator<Item*>;
using ItemPredicate = Plinth::Predicate<Item*, bool>;
using ItemPattern = Plinth::Predicate<Item*, Plinth::Expression>;

using AllItems = Plinth::VectorCollection<Item*>::Driver;
using SomeItems = Plinth::SubsetCollection<Item*, bool>::Driver;
using MatchingItems = Plinth::SubsetCollection<Item*, Plinth::Expression>::Driver;
using FirstToLast = Plinth::VectorLocator<Item*>::Driver;

using IsMarked = Plinth::MemberPredicate<Item*, bool>::Driver<bool (Item::*)() const>;
using IsMatching = Plinth::MemberDatumPredicate<Item*, Plinth::Expression>::Driver<bool (Item::*)(
    const Plinth::Expression&) const>;
template <class D>
using Not = Plinth::NotPredicate<Item*>::Driver<D>;

/// Owns items and a vector of pointers to them, which is what collections view.
class Shelf {
 public:
  /// One item for each letter; an upper-case letter is a marked item, "-" a null element.
  explicit Shelf(const std::string& letters) {
    for (const char letter : letters)
      add(letter);
  }

  void add(char letter) {
    if (letter == '-') return elements.push_back(nullptr);
    owned.push_back(std::make_unique<Item>());
    owned.back()->name = letter;
    owned.back()->marked = letter >= 'A' && letter <= 'Z';
    elements.push_back(owned.back().get());
  }

  std::vector<Item*> elements;

 private:
  std::vector<std::unique_ptr<Item>> owned;
};

// --- Verbs ---------------------------------------------------------------------------------------

inline std::string nameOf(const Item* item) { return item ? item->name : "-"; }

/// Walks to the end and returns the names of the elements on the way.
inline std::string walk(ItemLocator locator) {
  std::string names;
  for (; locator.isValid(); locator.progress())
    names += nameOf(locator.getCurrent());
  return names;
}

/// Returns the number of the slot in which a class keeps a virtual operation: behind the two of the
/// destructor, the first one declared has slot 2. A pointer to a virtual member function begins
/// with the offset of its slot, plus one on most machines.
template <class Function>
std::size_t slotOf(Function function) {
  std::size_t offset = 0;
  static_assert(sizeof(function) >= sizeof(offset));
  std::memcpy(&offset, &function, sizeof(offset));
  return offset / sizeof(void*);
}

// --- Drivers that are watched --------------------------------------------------------------------

/// Shared by all clones of a driver, so that `use_count() - 1` drivers of it are alive.
using Token = std::shared_ptr<int>;

inline Token makeToken() { return std::make_shared<int>(0); }
inline long countDrivers(const Token& token) { return token.use_count() - 1; }

/// Has only what a collection has to have, and leaves everything else to the defaults. Counts the
/// locators that it makes in its token.
class PlainCollection : public Items::Driver {
 public:
  explicit PlainCollection(const std::vector<Item*>* viewed, Token shared = makeToken())
      : elements(viewed), token(std::move(shared)) {}

  Driver* getClone() const override { return new PlainCollection(*this); }

  /// Returns no locator when no vector is viewed.
  ItemLocator::Driver* getLocator() const override {
    ++*token;
    return elements ? new FirstToLast(elements) : nullptr;
  }

 private:
  const std::vector<Item*>* elements;
  Token token;
};

class PlainLocator : public ItemLocator::Driver {
 public:
  explicit PlainLocator(const std::vector<Item*>* viewed, Token shared = makeToken())
      : inner(new FirstToLast(viewed)), token(std::move(shared)) {}

  Driver* getClone() const override { return new PlainLocator(*this); }
  Item* getCurrent() const override { return inner.getCurrent(); }
  bool isValid() const override { return inner.isValid(); }

  /// Counts its calls in the token.
  void progress() override {
    ++*token;
    inner.progress();
  }

 private:
  ItemLocator inner;
  Token token;
};

/// Answers by a function and counts in its token how often it is asked.
template <class D>
class FunctionPredicate : public Plinth::Predicate<Item*, D>::Driver {
 public:
  using Test = std::function<bool(const Item*)>;
  using Plinth::Predicate<Item*, D>::Driver::getClone;

  explicit FunctionPredicate(Test asked, Token shared = makeToken())
      : test(std::move(asked)), token(std::move(shared)) {}

  FunctionPredicate* getClone() const override { return new FunctionPredicate(*this); }

  bool accept(Item* const& item) const override {
    ++*token;
    return test(item);
  }

 private:
  Test test;
  Token token;
};

inline bool acceptAll(const Item* /*item*/) { return true; }
inline bool acceptNone(const Item* /*item*/) { return false; }

}  // namespace TestSupport
