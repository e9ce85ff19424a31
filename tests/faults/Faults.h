/// Lets allocations fail, one after the other, and tells what was not freed.
#pragma once

#include <gtest/gtest.h>

#include <functional>

namespace TestSupport {

/// One run of a scenario, in which one allocation may fail.
class Attempt {
 public:
  /// What fails at the chosen allocation.
  enum class Loss { ONE_ALLOCATION, ALL_FROM_THERE_ON };

  /// Whose allocations are counted.
  enum class Whose { OWN, OWN_AND_C_LIBRARYS };

  /// @param allocation the allocation that fails, from 1
  Attempt(unsigned long allocation, Loss extent, Whose counted);
  Attempt(const Attempt&) = delete;
  Attempt& operator=(const Attempt&) = delete;

  /// Runs an operation whose allocations may fail, in a thread of its own. What comes before and
  /// after it never fails.
  /// @return whether it came to its end; false when it threw std::bad_alloc. Everything else that
  ///         it throws fails the test.
  bool run(const std::function<void()>& operation);

  /// Tells whether an allocation has failed.
  bool hasFault() const { return isLost; }

  /// Counts an allocation of the running thread; tells whether it has to fail.
  static bool takesAllocation(Whose whose) noexcept;

 private:
  unsigned long left;  ///< allocations up to the one that fails
  const Loss loss;
  const Whose accounted;
  bool isLost = false;
};

/// Runs a scenario again and again: the first time its first allocation fails, the second time its
/// second one, and so on until it passes untouched; then the same with all allocations failing from
/// there on.
///
/// ```cpp
/// forEveryFault([](Attempt& attempt) {
///   ParserGroup root("root");
///   attempt.run([&root] { root.setText("a 1", 1.1); });
///   root.clear();
///   root.setText("a 1", 1.1);
///   EXPECT_EQ(writeLines(root), "\na 1");
/// });
/// ```
///
/// What is counted: every `operator new` of the process, also those that the standard library and
/// Qt call; the slabs and large blocks that the library takes for the parts of trees; `mmap` as the
/// library calls it. Left alone is what RE2 takes to compile a pattern, which it does not free when
/// memory runs out, and what Qt takes by `malloc` within its own library: a program that runs out
/// there is ended by Qt.
///
/// Each operation, and each scenario, has a thread of its own, which holds no memory for parts of
/// trees yet: the first part of each size needs a new slab, and at the thread's end every slab must
/// be back. With the address sanitizer each part is an allocation of its own.
///
/// What is not freed fails the test, as does a scenario without any allocation. What is made once
/// for the whole process, and kept, is no leak.
void forEveryFault(const std::function<void(Attempt&)>& scenario,
                   Attempt::Whose counted = Attempt::Whose::OWN);

/// Adds faults that a test has brought about by itself to what is reported in the end.
void recordFaults(unsigned long count);

/// Tells whether allocations of the C library can fail here: a sanitizer has an allocator of its
/// own.
bool reachesCLibrary();

/// As long as this lives, the source of slabs has none to hand out but what it maps anew.
class EmptySlabSource {
 public:
  EmptySlabSource();
  EmptySlabSource(const EmptySlabSource&) = delete;
  EmptySlabSource& operator=(const EmptySlabSource&) = delete;
  ~EmptySlabSource();

 private:
  struct Hoard;
  Hoard* hoard;
};

}  // namespace TestSupport
