/// @file
/// A test turned round.
#pragma once

#include <Plinth/Export.h>
#include <Plinth/Predicate.h>

namespace Plinth {

/// The predicate that accepts what another one does not.
///
/// \code
///   #include <Plinth/MemberPredicate.h>
///   #include <Plinth/NotPredicate.h>
///   #include <iostream>
///   #include <memory>
///
///   struct Layer {
///     bool isHidden() const { return true; }
///   };
///
///   int main() {
///     using IsHidden = Plinth::MemberPredicate<Layer*, bool>::Driver<bool (Layer::*)() const>;
///     auto isHidden = std::make_unique<IsHidden>(&Layer::isHidden);
///     using IsNot = Plinth::NotPredicate<Layer*>::Driver<bool>;
///     const Plinth::Predicate<Layer*, bool> isVisible(new IsNot(isHidden.release()));
///     Layer layer;
///     std::cout << isVisible.accept(&layer) << '\n';  // 0
///   }
/// \endcode
template <class T>
struct PLINTH_EXPORT NotPredicate {
  /// Owns the inner predicate, whose datum has the type `D`; it has no datum of its own.
  template <class D>
  class PLINTH_EXPORT Driver : public Predicate<T, bool>::Driver {
   public:
    using Predicate<T, bool>::Driver::getClone;

    /// Adopts `inner`. Without one every element is accepted.
    explicit Driver(typename Predicate<T, D>::Driver* inner) noexcept : predicate(inner) {}

    /// Clones the inner predicate.
    Driver* getClone() const override { return new Driver(*this); }

    bool accept(const T& element) const override { return !predicate.accept(element); }

   private:
    Predicate<T, D> predicate;
  };
};

}  // namespace Plinth
