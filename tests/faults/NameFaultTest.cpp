// Memory that runs out while a document is given a name.

#include <Quarry/ParserFile.h>
#include <gtest/gtest.h>

#include <string>

#include "Faults.h"

TEST(NameFaultTest, NameAndFolderAreSetTogetherOrNotAtAll) {
  const std::string folder = "another_folder_with_a_long_name";
  TestSupport::forEveryFault([&](TestSupport::Attempt& attempt) {
    Quarry::ParserFile file("a_folder/x.cfg");
    const bool isComplete = attempt.run([&] { file.setFilename(folder + "/y.cfg"); });
    EXPECT_EQ(file.getFilename(), isComplete ? folder + "/y.cfg" : "a_folder/x.cfg");
    EXPECT_EQ(file.getDirectory(), isComplete ? folder : "a_folder");
  });
}
