/// @file
/// The elements that pass a test.
#pragma once

#include <Plinth/Collection.h>
#include <Plinth/Export.h>
#include <Plinth/Predicate.h>
#include <Plinth/SubsetLocator.h>

namespace Plinth {

/// The collection of those elements of another one that a predicate accepts.
///
/// \code
///   #include <Plinth/MemberPredicate.h>
///   #include <Plinth/SubsetCollection.h>
///   #include <Plinth/VectorCollection.h>
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
///     auto all = std::make_unique<Plinth::VectorCollection<Layer*>::Driver>(&layers);
///     using IsHidden = Plinth::MemberPredicate<Layer*, bool>::Driver<bool (Layer::*)() const>;
///     auto isHidden = std::make_unique<IsHidden>(&Layer::isHidden);
///     using Subset = Plinth::SubsetCollection<Layer*, bool>;
///     const Plinth::Collection<Layer*> hidden(
///         new Subset::Driver(all.release(), isHidden.release()));
///     std::cout << hidden.getCount() << '\n';  // 1
///     land.hidden = true;
///     std::cout << hidden.getCount() << '\n';  // 2
///   }
/// \endcode
template <class T, class D>
struct PLINTH_EXPORT SubsetCollection {
  /// Owns the inner collection and the predicate. Nothing is remembered: each walk tests the
  /// elements anew, and counting and indexing are walks that follow the subset.
  ///
  /// Null elements are passed over, as no Predicate accepts them.
  class PLINTH_EXPORT Driver : public Collection<T>::Driver {
   public:
    /// Adopts both. Without a collection, and without a predicate, the subset has no elements.
    Driver(typename Collection<T>::Driver* adoptedCollection,
           typename Predicate<T, D>::Driver* adoptedPredicate) noexcept
        : collection(adoptedCollection), predicate(adoptedPredicate) {}

    /// Clones both.
    Driver* getClone() const override { return new Driver(*this); }

    typename Locator<T>::Driver* getLocator() const override {
      return makeSubset(collection.getLocator());
    }

    typename Locator<T>::Driver* getReverseLocator() const override {
      return makeSubset(collection.getReverseLocator());
    }

   private:
    typename Locator<T>::Driver* makeSubset(Locator<T> locator) const {
      Predicate<T, D> clone(predicate);
      return new typename SubsetLocator<T, D>::Driver(locator.release(), clone.release());
    }

    Collection<T> collection;
    Predicate<T, D> predicate;
  };
};

}  // namespace Plinth
