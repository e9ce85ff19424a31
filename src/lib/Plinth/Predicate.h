/// @file
/// A test of elements.
#pragma once

#include <Plinth/Export.h>

#include <memory>
#include <string>
#include <type_traits>

namespace Plinth {

/// A test of one element, by which a SubsetCollection chooses.
///
/// \code
///   #include <Plinth/MemberPredicate.h>
///   #include <iostream>
///
///   struct Layer {
///     bool isHidden() const { return hidden; }
///     bool hidden;
///   };
///
///   int main() {
///     using IsHidden = Plinth::MemberPredicate<Layer*, bool>::Driver<bool (Layer::*)() const>;
///     const Plinth::Predicate<Layer*, bool> isHidden(new IsHidden(&Layer::isHidden));
///     Layer land{false}, sea{true};
///     std::cout << isHidden.accept(&land) << isHidden.accept(&sea) << '\n';  // 01
///   }
/// \endcode
///
/// A predicate is a handle: the Driver that it owns does the work. The kinds are MemberPredicate,
/// MemberDatumPredicate and NotPredicate. `D` is the type of the datum that the test compares with,
/// `bool` for a test that needs none.
///
/// **Elements.** `T` is a pointer type, and null stands for "none". No predicate accepts null, and
/// no driver is asked about it: the handle says no beforehand. All kinds that hold a predicate hold
/// its handle, so elements emptied in a vector are passed over by every selection, by that of a
/// NotPredicate too, which would otherwise accept what its inner predicate does not.
///
/// **Copies.** Copying clones the driver; moving costs a pointer and leaves an empty predicate. An
/// empty predicate accepts nothing.
///
/// **Threads.** A predicate may be asked by several threads at once if its test allows that.
template <class T, class D>
class PLINTH_EXPORT Predicate {
  static_assert(std::is_pointer_v<T>, "null stands for none, so elements are pointers");

 public:
  class Driver;

  // --- Make --------------------------------------------------------------------------------------

  /// An empty predicate.
  Predicate() noexcept = default;

  /// A predicate that owns `adopted`; an empty one when that is null.
  explicit Predicate(Driver* adopted) noexcept : driver(adopted) {}

  /// Clones the driver of `other`.
  Predicate(const Predicate& other) : driver(other.driver ? other.driver->getClone() : nullptr) {}

  /// Takes over the driver of `other`, which is then empty.
  Predicate(Predicate&& other) noexcept = default;

  /// Takes the place of `other`; when that cannot be copied, this predicate stays as it was.
  Predicate& operator=(const Predicate& other) {
    driver.reset(other.driver ? other.driver->getClone() : nullptr);
    return *this;
  }

  /// Takes over the driver of `other`, which is then empty. What this one had is gone.
  Predicate& operator=(Predicate&& other) noexcept = default;

  ~Predicate() = default;

  /// Hands the driver over to the caller and leaves an empty predicate; null when it was empty.
  Driver* release() noexcept { return driver.release(); }

  // --- Test --------------------------------------------------------------------------------------

  /// Returns whether `element` passes the test; false for null, and when the predicate is empty.
  bool accept(const T& element) const { return driver && element && driver->accept(element); }

  // --- Text --------------------------------------------------------------------------------------

  /// Returns a short text for messages, "Predicate" unless the driver has one of its own;
  /// "Predicate (empty)" when the predicate is empty.
  std::string getLabel() const { return driver ? driver->_getLabel() : "Predicate (empty)"; }

 private:
  std::unique_ptr<Driver> driver;
};

/// What every kind of predicate provides. The order of the virtual operations is part of the binary
/// interface.
template <class T, class D>
class PLINTH_EXPORT Predicate<T, D>::Driver {
 public:
  Driver& operator=(const Driver&) = delete;
  virtual ~Driver() = default;

  /// Returns a driver, owned by the caller, that accepts the same elements.
  virtual Driver* getClone() const = 0;

  /// Returns a driver, owned by the caller, that compares with `datum` instead. A kind without a
  /// datum ignores it and returns getClone().
  virtual Driver* getClone(const D& /*datum*/) const { return getClone(); }

  /// Returns a short text for messages.
  virtual std::string _getLabel() const { return "Predicate"; }

  /// Returns whether `element`, which is not null, passes the test.
  virtual bool accept(const T& element) const = 0;

 protected:
  Driver() = default;
  /// For getClone().
  Driver(const Driver&) = default;
};

}  // namespace Plinth
