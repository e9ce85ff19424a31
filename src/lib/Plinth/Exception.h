/// @file
/// What the libraries throw.
#pragma once

#include <Plinth/Export.h>

#include <exception>
#include <memory>
#include <string>

namespace Plinth {

/// The root of everything that the libraries throw on purpose: a message.
///
/// \code
///   #include <Plinth/Exception.h>
///   #include <iostream>
///
///   void open(const std::string& name) {
///     Plinth::Fatal fatal("can't open '" + name + "'");
///     fatal.locate("src/Archive", "open", 7);
///     throw fatal;
///   }
///
///   int main() {
///     try {
///       open("letters");
///     } catch (const Plinth::Error& error) {
///       std::cerr << error.getFile() << ':' << error.getLine() << ": " << error.what() << '\n';
///     }
///   }
/// \endcode
///
/// The kinds: an Exception is caught as a `std::exception`; an Error is an Exception with a place
/// in the source; Fatal and InternalError are Errors.
///
/// **Copies.** Copying and assigning never throw, because copies share their texts: an exception
/// in flight is copied by the language, and a failure there would end the program. There is no
/// separate move; an exception that was moved from keeps its message.
///
/// **Lifetime.** The references that the accessors return, and the characters of what(), are good
/// as long as the exception lives and is neither assigned to nor located anew.
///
/// **Threads.** An exception, and each of its copies, may be read by several threads at once.
class PLINTH_EXPORT Exception : public std::exception {
 public:
  /// An exception that says `message`. Throws `std::bad_alloc` when memory runs out.
  explicit Exception(const std::string& message);

  /// Shares the message of the other.
  Exception(const Exception&) noexcept = default;
  /// Does the same, instead of its own.
  Exception& operator=(const Exception&) noexcept = default;
  ~Exception() override;

  /// Returns the message, byte for byte.
  const std::string& getMessage() const noexcept;

  /// Returns the message as a C string, which ends at the first zero byte of the message.
  const char* what() const noexcept override;

 private:
  std::shared_ptr<const std::string> text;
};

/// An exception that can say where in the source it was raised.
class PLINTH_EXPORT Error : public Exception {
 public:
  /// An error that says `message` and has no place yet: an empty file, an empty function, line 0.
  explicit Error(const std::string& message);

  /// Shares the message and the place of the other.
  Error(const Error&) noexcept = default;
  /// Does the same, instead of its own.
  Error& operator=(const Error&) noexcept = default;
  ~Error() override;

  /// Sets the place and returns this error. Copies made before keep the place that they had.
  ///
  /// The result is an `Error&`, whatever the object is: `throw Fatal(message).locate(...)` would
  /// throw a plain Error. Locate first and throw the object itself.
  ///
  /// Throws `std::bad_alloc` when memory runs out; the former place then stays.
  Error& locate(const std::string& file, const std::string& function, const unsigned long& line);

  /// Returns the source file given to locate(), empty before.
  const std::string& getFile() const noexcept;

  /// Returns the function given to locate(), empty before.
  const std::string& getFunction() const noexcept;

  /// Returns the line given to locate(), 0 before.
  unsigned long getLine() const noexcept;

 private:
  struct Place;

  std::shared_ptr<const Place> place;
};

/// An error of the caller that leaves no sensible way to go on, such as an item name that no
/// document could hold.
class PLINTH_EXPORT Fatal : public Error {
 public:
  /// A fatal error that says `message` and has no place yet.
  explicit Fatal(const std::string& message);

  /// Shares the message and the place of the other.
  Fatal(const Fatal&) noexcept = default;
  /// Does the same, instead of its own.
  Fatal& operator=(const Fatal&) noexcept = default;
  ~Fatal() override;
};

/// A fault of the program itself: something that its author took for impossible.
class PLINTH_EXPORT InternalError : public Error {
 public:
  /// An internal error that says `message` and has no place yet.
  explicit InternalError(const std::string& message);

  /// Shares the message and the place of the other.
  InternalError(const InternalError&) noexcept = default;
  /// Does the same, instead of its own.
  InternalError& operator=(const InternalError&) noexcept = default;
  ~InternalError() override;
};

}  // namespace Plinth
