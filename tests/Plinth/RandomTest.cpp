#include <Plinth/Random.h>

#include <gtest/gtest.h>

#include <cstddef>
#include <limits>
#include <set>
#include <thread>
#include <vector>

using Plinth::getRandomValue;

namespace {

std::vector<unsigned long> draw(std::size_t count) {
  std::vector<unsigned long> values(count);
  for (unsigned long& value : values)
    value = getRandomValue();
  return values;
}

/// Draws in `threadCount` threads at once and returns every value that was drawn.
std::set<unsigned long> drawInThreads(std::size_t threadCount, std::size_t count) {
  std::vector<std::vector<unsigned long>> drawn(threadCount);
  std::vector<std::thread> threads;
  threads.reserve(threadCount);
  for (auto& values : drawn)
    threads.emplace_back([&values, count] { values = draw(count); });
  for (std::thread& thread : threads)
    thread.join();
  std::set<unsigned long> all;
  for (const auto& values : drawn)
    all.insert(values.begin(), values.end());
  return all;
}

}  // namespace

// That 64-bit numbers fall out otherwise by chance is less likely than a broken machine; 32-bit
// numbers do once in ten thousand runs.

TEST(RandomTest, DoesNotRepeatItself) {
  const std::vector<unsigned long> values = draw(1000);
  EXPECT_EQ(std::set<unsigned long>(values.begin(), values.end()).size(), 1000U);
}

TEST(RandomTest, EveryBitIsSometimesSet) {
  unsigned long set = 0;
  for (const unsigned long value : draw(1000))
    set |= value;
  EXPECT_EQ(set, std::numeric_limits<unsigned long>::max());
}

TEST(RandomTest, EveryBitIsSometimesClear) {
  unsigned long alwaysSet = std::numeric_limits<unsigned long>::max();
  for (const unsigned long value : draw(1000))
    alwaysSet &= value;
  EXPECT_EQ(alwaysSet, 0U);
}

TEST(RandomTest, TheRemaindersAreSpreadEvenly) {
  std::vector<int> counts(10);
  for (const unsigned long value : draw(100000))
    ++counts[value % 10];
  for (const int count : counts)
    EXPECT_NEAR(count, 10000, 1000);  // ten standard deviations
}

TEST(RandomTest, ThreadsThatDrawAtOnceDrawDifferentNumbers) {
  EXPECT_EQ(drawInThreads(8, 100).size(), 800U);
}

TEST(RandomTest, ANewThreadDoesNotStartAnEarlierOnesSequenceAgain) {
  std::set<unsigned long> values;
  for (int i = 0; i < 20; ++i)
    values.merge(drawInThreads(1, 1));
  EXPECT_EQ(values.size(), 20U);
}
