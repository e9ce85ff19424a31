#include <Plinth/Expression.h>

#include <Plinth/Console.h>

#include <re2/re2.h>

#include <utility>

namespace Plinth {

namespace {

/// Bytes instead of UTF-8, and no messages of RE2's own: they would pass the console by.
re2::RE2::Options getOptions() {
  re2::RE2::Options options(re2::RE2::Latin1);
  options.set_log_errors(false);
  return options;
}

}  // namespace

Expression::Expression(const std::string& pattern) {
  auto candidate = std::make_shared<const re2::RE2>(pattern, getOptions());
  if (candidate->ok()) {
    compiled = std::move(candidate);
  } else {
    console.warning(
        "Expression::Expression: invalid pattern '" + pattern + "': " + candidate->error() + "\n",
        "");
  }
}

bool Expression::isValid() const noexcept { return compiled != nullptr; }

bool Expression::match(const std::string& text) const {
  return compiled && re2::RE2::PartialMatch(text, *compiled);
}

}  // namespace Plinth
