// That the guarded heap guards: each test program of scripts/test-guards begins with these tests.

#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace {

bool guardsBehind() {
  const char* side = std::getenv("QUARRY_GUARD");
  return side == nullptr || std::string_view(side) != "before";
}

/// Reads the byte outside of [begin, end), on the guarded side.
void readOutside(const char* begin, const char* end) {
  const volatile char* outside = guardsBehind() ? end : begin - 1;
  static_cast<void>(*outside);
}

}  // namespace

TEST(GuardedHeapDeathTest, AByteOutsideAPieceCannotBeRead) {
  for (const std::size_t size : {1U, 7U, 16U, 1000U, 4096U, 4097U, 100000U}) {
    const std::unique_ptr<char[]> piece(new char[size]);
    EXPECT_EXIT(readOutside(piece.get(), piece.get() + size), testing::KilledBySignal(SIGSEGV), "");
  }
}

TEST(GuardedHeapDeathTest, AByteOutsideATextCannotBeRead) {
  const std::string text(std::string_view("a text of more than fifteen bytes"));
  const char* begin = text.c_str();
  EXPECT_EXIT(readOutside(begin, begin + text.size() + 1), testing::KilledBySignal(SIGSEGV), "");
}
