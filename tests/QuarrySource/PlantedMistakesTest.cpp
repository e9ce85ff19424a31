// Every diagnostic points at the word that it speaks of: mistakes are planted at places that are
// counted while the files are written.

#include "PlantedMistakes.h"

#include <gmock/gmock.h>

#include <set>

#include "ShownDocument.h"

using testing::ElementsAreArray;
using TestSupport::MistakePlanter;
using TestSupport::PlantedDocument;
using TestSupport::PlantedFile;
using TestSupport::showDiagnostics;

namespace {

std::vector<std::string> findMistakes(const PlantedDocument& planted) {
  Quarry::SourceDocument document;
  for (const auto& [name, file] : planted.getFiles())
    document.setText(name, file.getText());
  document.read("top");
  return showDiagnostics(document);
}

void checkFindsAll(const PlantedDocument& planted) {
  EXPECT_THAT(findMistakes(planted), ElementsAreArray(planted.getExpected("top")));
}

/// Writes a file in which mistakes stand as [rule|word] and includes as [include|name].
void writeMarked(PlantedFile& file, const std::string& marked) {
  std::size_t done = 0;
  for (std::size_t bar = marked.find('|'); bar != std::string::npos; bar = marked.find('|', done)) {
    const std::size_t begin = marked.rfind('[', bar);
    const std::size_t end = marked.find(']', bar);
    const std::string rule = marked.substr(begin + 1, bar - begin - 1);
    const std::string word = marked.substr(bar + 1, end - bar - 1);
    file.write(marked.substr(done, begin - done));
    if (rule == "include") {
      file.writeInclude(word);
    } else {
      file.writeMistake(rule, word);
    }
    done = end + 1;
  }
  file.write(marked.substr(done));
}

/// @param files marked; the first one is the top file
void checkFindsMarked(const TestSupport::MemoryFiles& files) {
  PlantedDocument planted;
  for (const auto& [name, marked] : files)
    writeMarked(planted[name], marked);
  EXPECT_FALSE(planted.getExpected("top").empty());
  checkFindsAll(planted);
}

}  // namespace

// --- Written by a planter ------------------------------------------------------------------------

TEST(PlantedMistakesTest, AllAreFoundWhereTheyArePlanted) {
  constexpr unsigned long DOCUMENTS = 600;
  unsigned long mistakes = 0;
  unsigned long deepest = 0;
  std::set<std::string> rules;
  for (unsigned long seed = 1; seed <= DOCUMENTS; ++seed) {
    const PlantedDocument planted = MistakePlanter(seed).makeDocument();
    const std::vector<std::string> expected = planted.getExpected("top");
    ASSERT_THAT(findMistakes(planted), ElementsAreArray(expected)) << "seed " << seed;
    mistakes += expected.size();
    for (const std::string& shown : expected) {
      const auto depth = static_cast<unsigned long>(std::count(shown.begin(), shown.end(), '<'));
      deepest = std::max(deepest, depth);
      rules.insert(shown.substr(0, shown.find(' ')));
    }
  }
  EXPECT_GT(mistakes, 5 * DOCUMENTS);
  EXPECT_EQ(deepest, 3U);
  EXPECT_EQ(rules.size(), 16U);
}

// --- Written by hand -----------------------------------------------------------------------------

TEST(PlantedMistakesTest, BehindABlockOfComments) {
  checkFindsMarked({{"top", "// Harbor\n//\n// camera and layers\n\ntitle [unknown-word|?!] 1\n"}});
}

TEST(PlantedMistakesTest, BehindAVersionLine) {
  checkFindsMarked({{"top", "#SerialVersion 1.1\n\n[value-without-item|1920] a 1\n"}});
}

TEST(PlantedMistakesTest, BehindAVersionLineAmidTheFile) {
  checkFindsMarked({{"top", "a 1\n#SerialVersion 1.1\nb [has-no-value|c] 2\n"}});
}

TEST(PlantedMistakesTest, OnALineThatACommentJoins) {
  checkFindsMarked(
      {{"top", "size 1920 // wide\n     , 1080 // high\n     [wrongly-placed|=] b 1\n"}});
}

TEST(PlantedMistakesTest, OnALineBehindAUrlInAString) {
  checkFindsMarked(
      {{"top", "home \"http://quarry/\" [unknown-word|?!] // http://\na 1 [unknown-word|%]\n"}});
}

TEST(PlantedMistakesTest, BehindTabs) {
  checkFindsMarked({{"top", "camera {\n\t\tfov\t39.6\t[arguments-closed-without-call|)]\n}\n"}});
}

TEST(PlantedMistakesTest, BehindCarriageReturns) {
  checkFindsMarked(
      {{"top", "a 1\r\n\r\nb 2 // two\r\n  [unknown-word|?!]\r\nc 3 [unknown-word|!]\r\n"}});
}

TEST(PlantedMistakesTest, BehindLettersOfTwoBytes) {
  checkFindsMarked({{"top", "title \"K\xC3\xA4ste\" [unknown-word|\xC3\xA4] a 1\n"}});
}

TEST(PlantedMistakesTest, WithoutBlanksAround) {
  checkFindsMarked({{"top", "a{[wrongly-placed|,]b=2[wrongly-placed|=]c(3,4)[unknown-word|?]}"}});
}

TEST(PlantedMistakesTest, BehindAnIncludeOnTheSameLine) {
  checkFindsMarked({{"top", "a 1 [include|part] [unknown-word|?!]\nb 2 [unknown-word|!]"},
                    {"part", "x 1\ny 2\n"}});
}

TEST(PlantedMistakesTest, BeforeAnIncludeOnTheSameLine) {
  checkFindsMarked({{"top", "\na 1 [unknown-word|?!] [include|part]"}, {"part", "x 1\n"}});
}

TEST(PlantedMistakesTest, InTheLastFileOfThreeIncludes) {
  checkFindsMarked({{"top", "// top\n[include|one] [unknown-word|?4]"},
                    {"one", "a 1\r\n  [include|two]\r\n[unknown-word|?3]"},
                    {"two", "#SerialVersion 1.0\n[include|three]\n\n [unknown-word|?2]"},
                    {"three", "// three\n// more\nx 1\n    [unknown-word|?1] y 2\n"}});
}

TEST(PlantedMistakesTest, InAFileThatIsIncludedInTwoGroups) {
  checkFindsMarked({{"top", "one { [include|part] }\ntwo { [include|part] [unknown-word|?] }\n"},
                    {"part", "// part\nx 1\n[wrongly-placed|=] y 2"}});
}

TEST(PlantedMistakesTest, InANameThatAnIncludeCompletes) {
  checkFindsMarked({{"top", "a 1 [unknown-word|?][include|part] b 2"}, {"part", "!!"}});
}

TEST(PlantedMistakesTest, InAnIncludedFileThatEndsInAComment) {
  checkFindsMarked({{"top", "[include|part]\na 1 [unknown-word|?!]"},
                    {"part", "x 1 [unknown-word|!] // the last line\n"}});
}

TEST(PlantedMistakesTest, AtTheVeryEnd) {
  checkFindsMarked({{"top", "a 1\nb 2 // b\n[has-no-value|end]"}});
}

TEST(PlantedMistakesTest, AtTheVeryBeginning) {
  checkFindsMarked({{"top", "[group-without-item|{] a 1"}});
}
