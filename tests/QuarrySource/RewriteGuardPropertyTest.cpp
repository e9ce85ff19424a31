// The guard's promise, held against many trees that are really written and read. The environment
// variables QUARRY_REWRITE_TREES and QUARRY_REWRITE_SEED ask for others: see
// scripts/check-rewrite-guard.

#include <QuarrySource/RewriteGuard.h>

#include <Quarry/ParserFile.h>

#include "TreeGenerator.h"
#include "TreeModel.h"
#include "support/CountingConsole.h"
#include "support/Environment.h"

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <map>
#include <set>
#include <string>
#include <vector>

using Quarry::ParserFile;
using Quarry::ParserGroup;
using Quarry::RewriteGuard;
using Quarry::RewriteHazard;
using TestSupport::ItemModel;
using TestSupport::TreeGenerator;
using TestSupport::TreeMaker;

namespace {

constexpr unsigned long ORDINARY_TREES = 3000;

using Hazards = std::vector<RewriteHazard>;

std::string list(const Hazards& hazards) {
  std::string all;
  for (const RewriteHazard& hazard : hazards)
    all += std::string(" ") + Quarry::getHazardName(hazard.kind) + " at '" + hazard.path + "'";
  return all;
}

/// A file that is on no disk.
class MemoryFile {
 public:
  MemoryFile() : descriptor(memfd_create("document", 0)) {}
  MemoryFile(const MemoryFile&) = delete;
  MemoryFile& operator=(const MemoryFile&) = delete;
  ~MemoryFile() { close(descriptor); }

  std::string getPath() const { return "/proc/self/fd/" + std::to_string(descriptor); }

  std::string read() const {
    std::ifstream file(getPath(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  const int descriptor;
};

/// Writes and reads trees, and counts what it sees.
class RewriteGuardPropertyTest : public testing::Test {
 protected:
  void checkTree(const std::vector<ItemModel>& models) {
    ParserFile file;
    TreeMaker maker;
    maker.addItems(file.getRoot(), models);
    const std::vector<std::string> words = TestSupport::collectWords(file.getRoot());
    const unsigned long messages = console.getCount();
    const Hazards hazards = RewriteGuard::examine(file);
    ASSERT_EQ(console.getCount(), messages);
    ASSERT_EQ(TestSupport::collectWords(file.getRoot()), words);
    count(hazards);
    ASSERT_EQ(survives(file, models), hazards.empty()) << describe(models, hazards);
    ASSERT_EQ(kinds.count(RewriteHazard::UNEXPLAINED), 0U) << describe(models, hazards);
    const testing::ScopedTrace trace(__FILE__, __LINE__, "told:" + list(hazards));
    if (hazards.empty()) return;
    std::set<unsigned long> harmful;
    for (const RewriteHazard& hazard : hazards)
      harmful.insert(maker.getNumber(hazard.item));
    checkRest(models, harmful);
    if (doesHarmAlone(hazards.front().kind)) {
      checkAlone(models, harmful, maker.getNumber(hazards.front().item));
    }
  }

  /// Prints how often what was seen, for the script that adds it up.
  void print(unsigned long trees) const {
    std::cout << "rewrite-guard trees " << trees << "\nrewrite-guard harmed " << harmed << "\n";
    for (const auto& [kind, times] : kinds)
      std::cout << "rewrite-guard " << Quarry::getHazardName(kind) << " " << times << "\n";
  }

  TestSupport::CountingConsole console;
  unsigned long harmed = 0;  ///< trees
  std::map<RewriteHazard::Kind, unsigned long> kinds;

 private:
  bool survives(ParserFile& file, const std::vector<ItemModel>& models) {
    ParserGroup intact("root");
    TreeMaker().addItems(intact, models);
    EXPECT_TRUE(file.write(memory.getPath()));
    ParserFile again;
    const bool isRead = again.read(memory.getPath());
    return isRead && TestSupport::describeAll(again.getRoot()) == TestSupport::describeAll(intact);
  }

  void count(const Hazards& hazards) {
    if (!hazards.empty()) ++harmed;
    for (const RewriteHazard& hazard : hazards)
      ++kinds[hazard.kind];
  }

  std::string describe(const std::vector<ItemModel>& models, const Hazards& hazards) const {
    ParserFile file;
    TreeMaker().addItems(file.getRoot(), models);
    return TestSupport::describeAll(file.getRoot()) + "\n" + memory.read() +
           "\ntold:" + list(hazards);
  }

  /// Some do harm only by what follows them, and a directive none within a comment.
  static bool doesHarmAlone(RewriteHazard::Kind kind) {
    static const std::set<RewriteHazard::Kind> others = {
        RewriteHazard::FOLDED_GROUP,   RewriteHazard::NUMBER_COMMENT,
        RewriteHazard::NUMBER_QUOTE,   RewriteHazard::UNREADABLE_TEXT,
        RewriteHazard::VERSION_MARKER, RewriteHazard::INCLUDE_MARKER};
    return others.count(kind) == 0;
  }

  /// Without all that the guard tells, nothing is left that does harm.
  static void checkRest(const std::vector<ItemModel>& models,
                        const std::set<unsigned long>& harmful) {
    ParserGroup root("root");
    TreeMaker(harmful).addItems(root, models);
    const Hazards left = RewriteGuard::examine(root);
    ASSERT_TRUE(left.empty()) << "left:" << list(left);
  }

  /// Without all others that the guard tells, the first one still does harm.
  static void checkAlone(const std::vector<ItemModel>& models, std::set<unsigned long> harmful,
                         unsigned long first) {
    harmful.erase(first);
    ParserGroup root("root");
    TreeMaker(harmful).addItems(root, models);
    ASSERT_FALSE(RewriteGuard::examine(root).empty()) << "item " << first;
  }

  const MemoryFile memory;
};

/// And where it is not, it tells all that does harm, and always knows why.
TEST_F(RewriteGuardPropertyTest, IsSilentExactlyWhenATreeIsReadBackAsItWasWritten) {
  const unsigned long trees = TestSupport::getCount("QUARRY_REWRITE_TREES", ORDINARY_TREES);
  const unsigned long seed = TestSupport::getCount("QUARRY_REWRITE_SEED", 0, 0);
  for (unsigned long i = 0; i < trees; ++i) {
    SCOPED_TRACE("QUARRY_REWRITE_TREES=1 QUARRY_REWRITE_SEED=" + std::to_string(seed + i));
    checkTree(TreeGenerator(seed + i).makeItems());
    if (HasFatalFailure()) return;
  }
  if (std::getenv("QUARRY_REWRITE_TREES") != nullptr) print(trees);
}

}  // namespace
