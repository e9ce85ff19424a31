#include <Plinth/Exception.h>

namespace Plinth {

// The destructors are the key functions: defined here, they give each class one vtable and one
// typeinfo in the whole process, so that it is caught by its type in every library.

// --- Exception -----------------------------------------------------------------------------------

Exception::Exception(const std::string& message)
    : text(std::make_shared<const std::string>(message)) {}

Exception::~Exception() = default;

const std::string& Exception::getMessage() const noexcept { return *text; }

const char* Exception::what() const noexcept { return text->c_str(); }

// --- Error ---------------------------------------------------------------------------------------

struct Error::Place {
  std::string file;
  std::string function;
  unsigned long line = 0;
};

Error::Error(const std::string& message)
    : Exception(message), place(std::make_shared<const Place>()) {}

Error::~Error() = default;

Error& Error::locate(const std::string& file, const std::string& function,
                     const unsigned long& line) {
  place = std::make_shared<const Place>(Place{file, function, line});
  return *this;
}

const std::string& Error::getFile() const noexcept { return place->file; }

const std::string& Error::getFunction() const noexcept { return place->function; }

unsigned long Error::getLine() const noexcept { return place->line; }

// --- Fatal, InternalError ------------------------------------------------------------------------

Fatal::Fatal(const std::string& message) : Error(message) {}

Fatal::~Fatal() = default;

InternalError::InternalError(const std::string& message) : Error(message) {}

InternalError::~InternalError() = default;

}  // namespace Plinth
