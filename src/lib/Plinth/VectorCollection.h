/// @file
/// The elements of a vector.
#pragma once

#include <Plinth/Collection.h>
#include <Plinth/Export.h>
#include <Plinth/VectorLocator.h>
#include <Plinth/VectorReverseLocator.h>

#include <vector>

namespace Plinth {

/// The collection of all elements of a vector.
///
/// \code
///   #include <Plinth/VectorCollection.h>
///   #include <iostream>
///   #include <vector>
///
///   int main() {
///     int first = 1, second = 2;
///     std::vector<int*> numbers = {&first};
///     const Plinth::Collection<int*> all(new Plinth::VectorCollection<int*>::Driver(&numbers));
///     numbers.push_back(&second);
///     std::cout << all.getCount() << ' ' << *all.getLast() << '\n';  // 2 2
///   }
/// \endcode
/// \tparam Vector the vector's type, which may have an allocator of its own
template <class T, class Vector = std::vector<T>>
struct PLINTH_EXPORT VectorCollection {
  /// Views a vector owned elsewhere, which has to outlive it. Every question is answered from the
  /// vector as it is at that moment, without a walk.
  ///
  /// A null element is an element here: it is counted, it has its index, and each walk stops at it,
  /// so that the walk, getCount() and getAt() agree with the vector. A SubsetCollection of this one
  /// passes over it.
  class PLINTH_EXPORT Driver : public Collection<T>::Driver {
   public:
    /// Views `viewed`, which is not null.
    explicit Driver(const Vector* viewed) noexcept : elements(viewed) {}

    /// The clone views the same vector.
    Driver* getClone() const override { return new Driver(*this); }

    typename Locator<T>::Driver* getLocator() const override {
      return new typename VectorLocator<T, Vector>::Driver(elements);
    }

    typename Locator<T>::Driver* getReverseLocator() const override {
      return new typename VectorReverseLocator<T, Vector>::Driver(elements);
    }

    unsigned long getCount() const override { return elements->size(); }

    T getFirst() const override { return elements->empty() ? nullptr : elements->front(); }

    T getLast() const override { return elements->empty() ? nullptr : elements->back(); }

    T getAt(unsigned long index) const override {
      return index < elements->size() ? (*elements)[index] : nullptr;
    }

    bool isEmpty() const override { return elements->empty(); }

    bool hasCount(unsigned long count) const override { return getCount() == count; }

   private:
    const Vector* elements;
  };
};

}  // namespace Plinth
