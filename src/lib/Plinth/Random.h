/// @file
/// Random numbers.
#pragma once

#include <Plinth/Export.h>

namespace Plinth {

/// Returns a random number; every `unsigned long` is equally likely.
///
/// \code
///   #include <Plinth/Random.h>
///   #include <iostream>
///
///   int main() { std::cout << "a die: " << Plinth::getRandomValue() % 6 + 1 << '\n'; }
/// \endcode
///
/// Can be called from several threads at once: each draws from a sequence of its own, seeded from
/// the system's source of randomness on its first call. Good for shuffling, not for secrets. Throws
/// what `std::random_device` throws when that source cannot be read; once a thread has drawn its
/// first number, its calls throw nothing.
PLINTH_EXPORT unsigned long getRandomValue();

}  // namespace Plinth
