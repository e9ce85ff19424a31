/// @file
/// A walk backwards through a vector.
#pragma once

#include <Plinth/Export.h>
#include <Plinth/Locator.h>

#include <iterator>
#include <vector>

namespace Plinth {

/// The locator that walks a vector from its last element to its first.
///
/// \code
///   #include <Plinth/VectorReverseLocator.h>
///   #include <iostream>
///   #include <vector>
///
///   int main() {
///     const int first = 1, second = 2;
///     const std::vector<const int*> numbers = {&first, &second};
///     using Backward = Plinth::VectorReverseLocator<const int*>;
///     Plinth::Locator<const int*> locator(new Backward::Driver(&numbers));
///     for (; locator.isValid(); locator.progress())
///       std::cout << *locator.getCurrent() << '\n';  // 2, then 1
///   }
/// \endcode
/// \tparam Vector the vector's type, which may have an allocator of its own
template <class T, class Vector = std::vector<T>>
struct PLINTH_EXPORT VectorReverseLocator {
  /// Views a vector owned elsewhere, which has to outlive it. The position is a place in the
  /// vector's storage, behind the current element, so the vector must neither gain nor lose
  /// elements meanwhile. A null element is a valid position like any other.
  class PLINTH_EXPORT Driver : public Locator<T>::Driver {
   public:
    /// At the end of `viewed`, which is not null: its last element is the current one.
    explicit Driver(const Vector* viewed) : elements(viewed), position(viewed->end()) {}

    Driver* getClone() const override { return new Driver(*this); }

    T getCurrent() const override { return isValid() ? *std::prev(position) : nullptr; }

    bool isValid() const override { return position != elements->begin(); }

    void progress() override {
      if (isValid()) --position;
    }

   private:
    const Vector* elements;
    typename Vector::const_iterator position;
  };
};

}  // namespace Plinth
