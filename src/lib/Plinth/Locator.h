/// @file
/// A walk through elements.
#pragma once

#include <Plinth/Export.h>

#include <memory>
#include <string>
#include <type_traits>

namespace Plinth {

/// A cursor that walks the elements of a collection once, in one direction.
///
/// \code
///   #include <Plinth/VectorCollection.h>
///   #include <iostream>
///   #include <string>
///   #include <vector>
///
///   int main() {
///     std::string sea = "sea", land = "land";
///     const std::vector<std::string*> layers = {&sea, &land};
///     using Layers = Plinth::VectorCollection<std::string*>;
///     const Plinth::Collection<std::string*> collection(new Layers::Driver(&layers));
///     Plinth::Locator<std::string*> locator = collection.getReverseLocator();
///     for (; locator.isValid(); locator.progress())
///       std::cout << *locator.getCurrent() << '\n';  // land, then sea
///   }
/// \endcode
///
/// A locator is a handle: the Driver that it owns does the work. There is one kind of driver for
/// each way of walking: VectorLocator, VectorReverseLocator, ReverseLocator, RandomLocator and
/// SubsetLocator.
///
/// **Elements.** `T` is a pointer type, and null stands for "none". A vector may have null
/// elements, so isValid() alone tells whether the walk has ended, not getCurrent().
///
/// **Copies.** A copy stands at the same element and walks on by itself. Moving a locator costs a
/// pointer and leaves an empty one. An empty locator is not valid.
///
/// **Lifetime.** A locator may outlive the collection that made it, but not the elements, nor what
/// the collection viewed: a vector has to live, and must neither gain nor lose elements, while a
/// locator walks it. Setting an element, to null too, is allowed.
///
/// **Threads.** A locator is used by one thread at a time. Several may walk the same elements in as
/// many threads, as long as nobody changes them.
template <class T>
class PLINTH_EXPORT Locator {
  static_assert(std::is_pointer_v<T>, "null stands for none, so elements are pointers");

 public:
  class Driver;

  // --- Make --------------------------------------------------------------------------------------

  /// An empty locator.
  Locator() noexcept = default;

  /// A locator that owns `adopted`; an empty one when that is null.
  explicit Locator(Driver* adopted) noexcept : driver(adopted) {}

  /// Clones the driver of `other`.
  Locator(const Locator& other) : driver(other.driver ? other.driver->getClone() : nullptr) {}

  /// Takes over the driver of `other`, which is then empty.
  Locator(Locator&& other) noexcept = default;

  /// Takes the place of `other`; when that cannot be copied, this locator stays as it was.
  Locator& operator=(const Locator& other) {
    driver.reset(other.driver ? other.driver->getClone() : nullptr);
    return *this;
  }

  /// Takes over the driver of `other`, which is then empty. What this one had is gone.
  Locator& operator=(Locator&& other) noexcept = default;

  ~Locator() = default;

  /// Hands the driver over to the caller and leaves an empty locator; null when it was empty.
  Driver* release() noexcept { return driver.release(); }

  // --- Walk --------------------------------------------------------------------------------------

  /// Returns whether the locator stands at an element; false when it is empty.
  bool isValid() const { return driver && driver->isValid(); }

  /// Returns the element at which the locator stands, null when it is not valid.
  T getCurrent() const { return driver ? driver->getCurrent() : nullptr; }

  /// Goes on to the next element. Nothing happens when the locator is not valid.
  void progress() {
    if (driver) driver->progress();
  }

  // --- Text --------------------------------------------------------------------------------------

  /// Returns a short text for messages, "Locator (valid)" or "Locator (invalid)" unless the driver
  /// has one of its own.
  std::string getLabel() const { return driver ? driver->_getLabel() : "Locator (invalid)"; }

 private:
  std::unique_ptr<Driver> driver;
};

/// What every kind of locator provides. The order of the virtual operations is part of the binary
/// interface.
template <class T>
class PLINTH_EXPORT Locator<T>::Driver {
 public:
  Driver& operator=(const Driver&) = delete;
  virtual ~Driver() = default;

  /// Returns a driver, owned by the caller, that stands at the same element and walks on by itself.
  virtual Driver* getClone() const = 0;

  /// Returns the element at which the locator stands, null when it is not valid.
  virtual T getCurrent() const = 0;

  /// Returns a short text for messages.
  virtual std::string _getLabel() const {
    return isValid() ? "Locator (valid)" : "Locator (invalid)";
  }

  /// Returns whether the locator stands at an element.
  virtual bool isValid() const = 0;

  /// Goes on to the next element; does nothing when the locator is not valid.
  virtual void progress() = 0;

 protected:
  Driver() = default;
  /// For getClone().
  Driver(const Driver&) = default;
};

}  // namespace Plinth
