/// @file
/// A test by a member function with an argument.
#pragma once

#include <Plinth/Export.h>
#include <Plinth/Predicate.h>

namespace Plinth {

/// The predicate that asks the element itself, by a member function that takes a datum.
///
/// \code
///   #include <Plinth/Expression.h>
///   #include <Plinth/MemberDatumPredicate.h>
///   #include <iostream>
///   #include <string>
///
///   using Plinth::Expression;
///
///   struct Layer {
///     bool isMatching(const Expression& pattern) const { return pattern.match(name); }
///     std::string name;
///   };
///
///   int main() {
///     using Test = bool (Layer::*)(const Expression&) const;
///     using IsMatching = Plinth::MemberDatumPredicate<Layer*, Expression>::Driver<Test>;
///     const Plinth::Predicate<Layer*, Expression> isMatching(
///         new IsMatching(&Layer::isMatching, Expression("^sea")));
///     Layer layer{"sea floor"};
///     std::cout << isMatching.accept(&layer) << '\n';  // 1
///   }
/// \endcode
template <class T, class D>
struct PLINTH_EXPORT MemberDatumPredicate {
  /// `M` is the type of the member function's pointer. The driver has a copy of the datum.
  template <class M>
  class PLINTH_EXPORT Driver : public Predicate<T, D>::Driver {
   public:
    /// Asks elements by `asked`, which is not null, with `given` as its argument.
    Driver(M asked, const D& given) : member(asked), datum(given) {}

    Driver* getClone() const override { return new Driver(*this); }

    /// Returns a driver, owned by the caller, that asks with `other` instead.
    Driver* getClone(const D& other) const override { return new Driver(member, other); }

    bool accept(const T& element) const override { return (element->*member)(datum); }

   private:
    M member;
    D datum;
  };
};

}  // namespace Plinth
