/// Tells whether something takes a time that grows with its size, and not with its square.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>

namespace TestSupport {

/// Returns the processor seconds of `use(subject)`, without those of `make(size)`, the subject.
template <class Make, class Use>
double measureSeconds(unsigned long size, Make make, Use use) {
  auto subject = make(size);
  const std::clock_t begin = std::clock();
  use(subject);
  return static_cast<double>(std::clock() - begin) / CLOCKS_PER_SEC;
}

/// Expects that sixteen times the size takes less than 64 times as long: the time of what is linear
/// grows sixteenfold, or somewhat more where memory is slower than the caches, and that of what is
/// quadratic 256-fold. The best of several runs counts, by turns, because other programs may run
/// beside this one. What takes no time that can be measured well counts as five milliseconds, far
/// below what the square of any number worth the test would take.
template <class Make, class Use>
void checkTakesLinearTime(unsigned long size, Make make, Use use) {
  constexpr int RUNS = 3;
  constexpr double SHORTEST = 0.005;
  double few = 1e9;
  double many = 1e9;
  for (int run = 0; run < RUNS; ++run) {
    few = std::min(few, measureSeconds(size, make, use));
    many = std::min(many, measureSeconds(16 * size, make, use));
  }
  EXPECT_LT(many, 64 * std::max(few, SHORTEST)) << few << " s for " << size;
}

}  // namespace TestSupport
