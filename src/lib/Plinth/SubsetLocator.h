/// @file
/// A walk through the elements that pass a test.
#pragma once

#include <Plinth/Export.h>
#include <Plinth/Locator.h>
#include <Plinth/Predicate.h>

namespace Plinth {

/// The locator that stops only at the elements that a predicate accepts.
///
/// \code
///   #include <Plinth/MemberPredicate.h>
///   #include <Plinth/SubsetLocator.h>
///   #include <Plinth/VectorLocator.h>
///   #include <iostream>
///   #include <memory>
///   #include <vector>
///
///   struct Layer {
///     bool isHidden() const { return hidden; }
///     bool hidden;
///   };
///
///   int main() {
///     Layer land{false}, sea{true};
///     const std::vector<Layer*> layers = {&land, &sea};
///     auto all = std::make_unique<Plinth::VectorLocator<Layer*>::Driver>(&layers);
///     using IsHidden = Plinth::MemberPredicate<Layer*, bool>::Driver<bool (Layer::*)() const>;
///     auto isHidden = std::make_unique<IsHidden>(&Layer::isHidden);
///     using Subset = Plinth::SubsetLocator<Layer*, bool>;
///     Plinth::Locator<Layer*> hidden(new Subset::Driver(all.release(), isHidden.release()));
///     std::cout << (hidden.getCurrent() == &sea) << '\n';  // 1
///   }
/// \endcode
template <class T, class D>
struct PLINTH_EXPORT SubsetLocator {
  /// Owns the inner locator and the predicate. An element is tested once, when the walk comes to
  /// it; what becomes of it while the locator stands there changes nothing.
  ///
  /// Null elements are passed over, as no Predicate accepts them.
  class PLINTH_EXPORT Driver : public Locator<T>::Driver {
   public:
    /// Adopts both, and goes on from the position of `adoptedLocator` to the first element that is
    /// accepted. Without a locator it is not valid; without a predicate it runs to the end.
    ///
    /// Both are destroyed when the predicate throws.
    Driver(typename Locator<T>::Driver* adoptedLocator,
           typename Predicate<T, D>::Driver* adoptedPredicate)
        : locator(adoptedLocator), predicate(adoptedPredicate) {
      skipRejected();
    }

    /// Clones both.
    Driver* getClone() const override { return new Driver(*this); }

    T getCurrent() const override { return locator.getCurrent(); }

    bool isValid() const override { return locator.isValid(); }

    void progress() override {
      locator.progress();
      skipRejected();
    }

   private:
    void skipRejected() {
      while (locator.isValid() && !predicate.accept(locator.getCurrent()))
        locator.progress();
    }

    Locator<T> locator;
    Predicate<T, D> predicate;
  };
};

}  // namespace Plinth
