/// @file
/// Elements that can be counted and walked.
#pragma once

#include <Plinth/Export.h>
#include <Plinth/Label.h>
#include <Plinth/Locator.h>
#include <Plinth/Random.h>
#include <Plinth/RandomLocator.h>
#include <Plinth/ReverseLocator.h>

#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>

namespace Plinth {

/// A view of elements that can be counted and walked forwards, backwards and at random.
///
/// \code
///   #include <Plinth/VectorCollection.h>
///   #include <iostream>
///   #include <string>
///   #include <vector>
///
///   int main() {
///     std::string sea = "sea", land = "land";
///     std::vector<std::string*> layers = {&sea};
///     using Layers = Plinth::VectorCollection<std::string*>;
///     const Plinth::Collection<std::string*> collection(new Layers::Driver(&layers));
///     layers.push_back(&land);
///     for (const std::string* layer : collection)
///       std::cout << *layer << '\n';  // sea, then land
///   }
/// \endcode
///
/// A collection is a handle: the Driver that it owns does the work. The kinds are VectorCollection,
/// which views a vector, and SubsetCollection, which views what a predicate accepts of another
/// collection.
///
/// **Live.** A collection holds no elements, it looks at them anew for each question and each walk:
/// what was added to the vector since appears, what no longer passes the test is gone.
///
/// **Walks.** Each walk is independent of the collection, which may change or end meanwhile.
///
/// **Elements.** `T` is a pointer type, and null stands for "none". A vector may have null
/// elements; see VectorCollection and Predicate for who shows them and who passes over them.
///
/// **Copies.** Copying clones the driver with every collection and predicate in it, but never the
/// vector: the copy views the same elements. Moving costs a pointer and leaves an empty collection.
/// An empty collection has no elements.
///
/// **Lifetime.** A collection must not outlive the vector that it views. While a locator or an
/// iterator walks a vector, that must neither gain nor lose elements.
///
/// **Cost.** A walk is linear in the elements that it passes; a random one sorts them first. A
/// VectorCollection answers every question at once, all others walk to find the answer.
///
/// **Threads.** A collection may be used by several threads at once as long as nobody changes the
/// elements, if the predicates in it allow that.
template <class T>
class PLINTH_EXPORT Collection {
  static_assert(std::is_pointer_v<T>, "null stands for none, so elements are pointers");

 public:
  class Driver;
  class Iterator;

  // --- Make --------------------------------------------------------------------------------------

  /// An empty collection.
  Collection() noexcept = default;

  /// A collection that owns `adopted`; an empty one when that is null.
  explicit Collection(Driver* adopted) noexcept : driver(adopted) {}

  /// Clones the driver of `other`.
  Collection(const Collection& other) : driver(other.driver ? other.driver->getClone() : nullptr) {}

  /// Takes over the driver of `other`, which is then empty.
  Collection(Collection&& other) noexcept = default;

  /// Takes the place of `other`; when that cannot be copied, this collection stays as it was.
  Collection& operator=(const Collection& other) {
    driver.reset(other.driver ? other.driver->getClone() : nullptr);
    return *this;
  }

  /// Takes over the driver of `other`, which is then empty. What this one had is gone.
  Collection& operator=(Collection&& other) noexcept = default;

  ~Collection() = default;

  /// Hands the driver over to the caller and leaves an empty collection; null when it was empty.
  Driver* release() noexcept { return driver.release(); }

  // --- Walk --------------------------------------------------------------------------------------

  /// Returns a locator at the first element; an invalid one when there is none.
  Locator<T> getLocator() const { return Locator<T>(driver ? driver->getLocator() : nullptr); }

  /// Returns a locator at the last element that walks to the first one.
  Locator<T> getReverseLocator() const {
    return Locator<T>(driver ? driver->getReverseLocator() : nullptr);
  }

  /// Returns a locator that visits each element once, in an order drawn for this walk.
  Locator<T> getRandomLocator() const {
    return Locator<T>(driver ? driver->getRandomLocator() : nullptr);
  }

  /// Returns an iterator at the first element, so that a range-based `for` walks the collection.
  Iterator begin() const { return Iterator(getLocator()); }

  /// Returns the iterator at which every walk ends.
  Iterator end() const { return Iterator(); }

  // --- Look --------------------------------------------------------------------------------------

  /// Returns the number of elements.
  unsigned long getCount() const { return driver ? driver->getCount() : 0; }

  /// Returns the first element, null when there is none.
  T getFirst() const { return driver ? driver->getFirst() : nullptr; }

  /// Returns the last element, null when there is none.
  T getLast() const { return driver ? driver->getLast() : nullptr; }

  /// Returns the element `index`, from 0 on; null when there are not so many.
  T getAt(unsigned long index) const { return driver ? driver->getAt(index) : nullptr; }

  /// Returns whether there are no elements.
  bool isEmpty() const { return !driver || driver->isEmpty(); }

  /// Returns whether there are exactly `count` elements, without a walk beyond these.
  bool hasCount(unsigned long count) const { return driver ? driver->hasCount(count) : count == 0; }

  // --- Text --------------------------------------------------------------------------------------

  /// Returns a short text for messages: "Collection (3)" for three elements, unless the driver has
  /// one of its own.
  std::string getLabel() const { return driver ? driver->_getLabel() : "Collection (0)"; }

 private:
  std::unique_ptr<Driver> driver;
};

/// What every kind of collection provides. Only getClone() and getLocator() have to be written, the
/// defaults of all others walk. The order of the virtual operations is part of the binary
/// interface.
template <class T>
class PLINTH_EXPORT Collection<T>::Driver {
 public:
  Driver& operator=(const Driver&) = delete;
  virtual ~Driver() = default;

  /// Returns a driver, owned by the caller, that views the same elements.
  virtual Driver* getClone() const = 0;

  /// Returns a locator, owned by the caller, at the first element; null is as good as an invalid
  /// one.
  virtual typename Locator<T>::Driver* getLocator() const = 0;

  /// Returns a locator, owned by the caller, at the last element. By default a ReverseLocator with
  /// the elements that there are now.
  virtual typename Locator<T>::Driver* getReverseLocator() const {
    auto reverse = std::make_unique<typename ReverseLocator<T>::Driver>();
    for (Locator<T> locator(getLocator()); locator.isValid(); locator.progress())
      reverse->addFront(locator.getCurrent());
    return reverse.release();
  }

  /// Returns a locator, owned by the caller, that visits each element once in a random order. By
  /// default a RandomLocator with the elements that there are now.
  virtual typename Locator<T>::Driver* getRandomLocator() const {
    auto random = std::make_unique<typename RandomLocator<T>::Driver>();
    for (Locator<T> locator(getLocator()); locator.isValid(); locator.progress())
      random->add(getRandomValue(), getRandomValue(), locator.getCurrent());
    return random.release();
  }

  /// Returns the number of elements.
  virtual unsigned long getCount() const {
    unsigned long count = 0;
    for (Locator<T> locator(getLocator()); locator.isValid(); locator.progress())
      ++count;
    return count;
  }

  /// Returns the first element, null when there is none.
  virtual T getFirst() const { return Locator<T>(getLocator()).getCurrent(); }

  /// Returns the last element, null when there is none. By default the first one backwards.
  virtual T getLast() const { return Locator<T>(getReverseLocator()).getCurrent(); }

  /// Returns the element `index`, null when there are not so many.
  virtual T getAt(unsigned long index) const {
    Locator<T> locator(getLocator());
    for (; index > 0 && locator.isValid(); --index)
      locator.progress();
    return locator.getCurrent();
  }

  /// Returns a short text for messages.
  virtual std::string _getLabel() const {
    return "Collection (" + Plinth::getLabel(getCount()) + ')';
  }

  /// Returns whether there are no elements.
  virtual bool isEmpty() const { return !Locator<T>(getLocator()).isValid(); }

  /// Returns whether there are exactly `count` elements. By default isEmpty() for none.
  virtual bool hasCount(unsigned long count) const {
    if (count == 0) return isEmpty();
    Locator<T> locator(getLocator());
    for (; count > 0 && locator.isValid(); --count)
      locator.progress();
    return count == 0 && !locator.isValid();
  }

 protected:
  Driver() = default;
  /// For getClone().
  Driver(const Driver&) = default;
};

/// An input iterator over a collection: a locator that a range-based `for` and the algorithms of
/// the standard library understand. What is said of the lifetime of a Locator holds for it too.
///
/// Iterators of one collection are equal when they have gone the same number of steps, and when
/// both are at the end, where all walks meet.
template <class T>
class PLINTH_EXPORT Collection<T>::Iterator {
 public:
  using iterator_category = std::input_iterator_tag;  ///< an element is read once
  using value_type = T;                               ///< an element
  using difference_type = std::ptrdiff_t;             ///< what the standard library asks for
  using pointer = void;                               ///< none: elements are pointers themselves
  using reference = T;                                ///< an element, not a reference to it

  /// An iterator at the end.
  Iterator() noexcept = default;

  /// An iterator at the current element of `start`; at the end when that is not valid.
  explicit Iterator(Locator<T> start) noexcept : locator(std::move(start)) {}

  /// Returns the element at which the iterator stands, null at the end.
  T operator*() const { return locator.getCurrent(); }

  /// Goes on to the next element; nothing happens at the end.
  Iterator& operator++() {
    locator.progress();
    ++steps;
    return *this;
  }

  /// Goes on to the next element and returns where the iterator stood. Clones the locator, which
  /// `++iterator` does not.
  Iterator operator++(int) {
    Iterator before(*this);
    ++*this;
    return before;
  }

  /// Returns whether both have gone the same number of steps, or are at the end.
  friend bool operator==(const Iterator& left, const Iterator& right) {
    const bool isValid = left.locator.isValid();
    return isValid == right.locator.isValid() && (!isValid || left.steps == right.steps);
  }

  /// Returns whether they are not equal.
  friend bool operator!=(const Iterator& left, const Iterator& right) { return !(left == right); }

 private:
  Locator<T> locator;
  unsigned long steps = 0;
};

}  // namespace Plinth
