/// @file
/// A test by a member function.
#pragma once

#include <Plinth/Export.h>
#include <Plinth/Predicate.h>

namespace Plinth {

/// The predicate that asks the element itself, by a member function without arguments.
///
/// \code
///   #include <Plinth/MemberPredicate.h>
///   #include <iostream>
///
///   struct Layer {
///     bool isHidden() const { return true; }
///   };
///
///   int main() {
///     using IsHidden = Plinth::MemberPredicate<Layer*, bool>::Driver<bool (Layer::*)() const>;
///     const Plinth::Predicate<Layer*, bool> isHidden(new IsHidden(&Layer::isHidden));
///     Layer layer;
///     std::cout << isHidden.accept(&layer) << '\n';  // 1
///   }
/// \endcode
template <class T, class D>
struct PLINTH_EXPORT MemberPredicate {
  /// `M` is the type of the member function's pointer.
  template <class M>
  class PLINTH_EXPORT Driver : public Predicate<T, D>::Driver {
   public:
    using Predicate<T, D>::Driver::getClone;

    /// Asks elements by `asked`, which is not null.
    explicit Driver(M asked) noexcept : member(asked) {}

    Driver* getClone() const override { return new Driver(*this); }

    bool accept(const T& element) const override { return (element->*member)(); }

   private:
    M member;
  };
};

}  // namespace Plinth
