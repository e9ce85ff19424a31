// The main of every test program.
//
//   --application           runs the tests inside a QCoreApplication, which takes the locale from
//                           the environment, as it does in the programs that use the library
//   --expect-decimal-comma  fails unless that locale writes a comma for the decimal point

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <memory>
#include <set>
#include <string>

#include <gmock/gmock.h>
#include <QCoreApplication>

namespace {

bool isKnown(const std::string& option) {
  return option == "--application" || option == "--expect-decimal-comma";
}

bool hasDecimalComma() { return std::string(std::localeconv()->decimal_point) == ","; }

int fail(const std::string& reason) {
  std::fprintf(stderr, "%s\n", reason.c_str());
  return 2;
}

}  // namespace

int main(int argc, char** argv) {
  testing::InitGoogleMock(&argc, argv);

  const std::set<std::string> options(argv + 1, argv + argc);
  const auto unknown = std::find_if_not(options.begin(), options.end(), isKnown);
  if (unknown != options.end()) return fail("unknown option: " + *unknown);

  std::unique_ptr<QCoreApplication> application;
  if (options.count("--application") > 0) {
    application = std::make_unique<QCoreApplication>(argc, argv);
  }
  if (options.count("--expect-decimal-comma") > 0 && !hasDecimalComma()) {
    return fail("the locale of the environment did not take effect: no decimal comma");
  }
  return RUN_ALL_TESTS();
}
