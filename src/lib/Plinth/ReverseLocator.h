/// @file
/// A walk backwards through what can only be walked forwards.
#pragma once

#include <Plinth/Export.h>
#include <Plinth/Locator.h>

#include <forward_list>

namespace Plinth {

/// The locator that walks backwards through a collection that can itself only be walked forwards.
///
/// \code
///   #include <Plinth/ReverseLocator.h>
///   #include <iostream>
///   #include <memory>
///
///   int main() {
///     const int first = 1, second = 2;
///     auto driver = std::make_unique<Plinth::ReverseLocator<const int*>::Driver>();
///     driver->addFront(&first);
///     driver->addFront(&second);
///     Plinth::Locator<const int*> locator(driver.release());
///     for (; locator.isValid(); locator.progress())
///       std::cout << *locator.getCurrent() << '\n';  // 2, then 1
///   }
/// \endcode
template <class T>
struct PLINTH_EXPORT ReverseLocator {
  /// Owns a list of the elements still to be visited, the current one in front. The elements
  /// themselves belong to others and have to outlive it; it no longer needs the collection.
  class PLINTH_EXPORT Driver : public Locator<T>::Driver {
   public:
    /// Without elements: not valid.
    Driver() = default;

    /// Makes `element` the current one; the former current one comes next.
    void addFront(const T& element) { elements.push_front(element); }

    /// Copies the list.
    Driver* getClone() const override { return new Driver(*this); }

    T getCurrent() const override { return elements.empty() ? nullptr : elements.front(); }

    bool isValid() const override { return !elements.empty(); }

    void progress() override {
      if (!elements.empty()) elements.pop_front();
    }

   private:
    std::forward_list<T> elements;
  };
};

}  // namespace Plinth
