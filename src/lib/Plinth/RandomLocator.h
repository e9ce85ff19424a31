/// @file
/// A walk in random order.
#pragma once

#include <Plinth/Export.h>
#include <Plinth/Locator.h>

#include <map>
#include <utility>

namespace Plinth {

/// The locator that visits each element of a collection once, in the order of random keys.
///
/// \code
///   #include <Plinth/Random.h>
///   #include <Plinth/RandomLocator.h>
///   #include <iostream>
///   #include <memory>
///
///   int main() {
///     const int head = 0, tail = 1;
///     auto driver = std::make_unique<Plinth::RandomLocator<const int*>::Driver>();
///     driver->add(Plinth::getRandomValue(), Plinth::getRandomValue(), &head);
///     driver->add(Plinth::getRandomValue(), Plinth::getRandomValue(), &tail);
///     const Plinth::Locator<const int*> locator(driver.release());
///     std::cout << (locator.getCurrent() == &head ? "heads" : "tails") << '\n';
///   }
/// \endcode
template <class T>
struct PLINTH_EXPORT RandomLocator {
  /// Owns the set of entries still to be visited, ordered by their keys; the smallest is current.
  /// The elements themselves belong to others and have to outlive it; it no longer needs the
  /// collection.
  class PLINTH_EXPORT Driver : public Locator<T>::Driver {
   public:
    /// Without elements: not valid.
    Driver() = default;

    /// Adds an element with the pair of numbers that were drawn for it. Elements that drew the same
    /// pair are all kept, in the order in which they were added.
    void add(unsigned long first, unsigned long second, const T& element) {
      entries.emplace(Key(first, second), element);
    }

    /// Copies the entries: the clone visits the rest in the same order.
    Driver* getClone() const override { return new Driver(*this); }

    T getCurrent() const override { return entries.empty() ? nullptr : entries.begin()->second; }

    bool isValid() const override { return !entries.empty(); }

    void progress() override {
      if (!entries.empty()) entries.erase(entries.begin());
    }

   private:
    using Key = std::pair<unsigned long, unsigned long>;

    std::multimap<Key, T> entries;
  };
};

}  // namespace Plinth
