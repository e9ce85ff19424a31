/// @file
/// A walk through a vector.
#pragma once

#include <Plinth/Export.h>
#include <Plinth/Locator.h>

#include <vector>

namespace Plinth {

/// The locator that walks a vector from its first element to its last.
///
/// \code
///   #include <Plinth/VectorLocator.h>
///   #include <iostream>
///   #include <vector>
///
///   int main() {
///     const int first = 1, second = 2;
///     const std::vector<const int*> numbers = {&first, &second};
///     using Forward = Plinth::VectorLocator<const int*>;
///     Plinth::Locator<const int*> locator(new Forward::Driver(&numbers));
///     for (; locator.isValid(); locator.progress())
///       std::cout << *locator.getCurrent() << '\n';  // 1, then 2
///   }
/// \endcode
/// \tparam Vector the vector's type, which may have an allocator of its own
template <class T, class Vector = std::vector<T>>
struct PLINTH_EXPORT VectorLocator {
  /// Views a vector owned elsewhere, which has to outlive it. The position is a place in the
  /// vector's storage, so the vector must neither gain nor lose elements meanwhile. A null element
  /// is a valid position like any other.
  class PLINTH_EXPORT Driver : public Locator<T>::Driver {
   public:
    /// At the first element of `viewed`, which is not null.
    explicit Driver(const Vector* viewed) : elements(viewed), position(viewed->begin()) {}

    Driver* getClone() const override { return new Driver(*this); }

    T getCurrent() const override { return isValid() ? *position : nullptr; }

    bool isValid() const override { return position != elements->end(); }

    void progress() override {
      if (isValid()) ++position;
    }

   private:
    const Vector* elements;
    typename Vector::const_iterator position;
  };
};

}  // namespace Plinth
