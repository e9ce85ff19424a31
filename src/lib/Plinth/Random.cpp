#include <Plinth/Random.h>

#include <array>
#include <limits>
#include <random>
#include <type_traits>

namespace Plinth {

namespace {

/// Draws as many bits as an `unsigned long` has.
using Engine = std::conditional_t<sizeof(unsigned long) == 8, std::mt19937_64, std::mt19937>;

static_assert(Engine::max() == std::numeric_limits<unsigned long>::max());

/// Seeds with 256 bits; two threads then practically never draw the same sequence.
Engine makeEngine() {
  std::random_device device;
  std::array<std::random_device::result_type, 8> words;
  for (auto& word : words)
    word = device();
  std::seed_seq seed(words.begin(), words.end());
  return Engine(seed);
}

}  // namespace

unsigned long getRandomValue() {
  static thread_local Engine engine = makeEngine();
  return engine();
}

}  // namespace Plinth
