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

void warn(const std::string& pattern, const std::string& reason) {
  console.warning("Expression::Expression: invalid pattern '" + pattern + "': " + reason + "\n",
                  "");
}

}  // namespace

Expression::Expression(const std::string& pattern) {
  if (pattern.size() > MOST_BYTES) {
    warn(pattern, "longer than " + std::to_string(MOST_BYTES) + " bytes");
    return;
  }
  auto candidate = std::make_shared<const re2::RE2>(pattern, getOptions());
  if (!candidate->ok()) {
    warn(pattern, candidate->error());
  } else if (candidate->ProgramSize() > MOST_STEPS) {
    warn(pattern, "more than " + std::to_string(MOST_STEPS) + " steps");
  } else {
    compiled = std::move(candidate);
  }
}

bool Expression::isValid() const noexcept { return compiled != nullptr; }

bool Expression::match(const std::string& text) const {
  return compiled && re2::RE2::PartialMatch(text, *compiled);
}

}  // namespace Plinth
