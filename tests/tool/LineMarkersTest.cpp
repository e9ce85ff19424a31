#include <gtest/gtest.h>
#include <quarry/LineMarkers.h>

#include <random>
#include <stdexcept>

namespace ToolTest {

using Tool::addLineMarkers;
using Tool::hasLineMarkers;
using Tool::takeLineMarkers;

namespace {

void checkMarked(const std::string& text, const std::string& marked) {
  EXPECT_EQ(addLineMarkers(text), marked);
  EXPECT_EQ(takeLineMarkers(marked), text);
}

}  // namespace

TEST(LineMarkersTest, AnEmptyTextHasNoLine) { checkMarked("", ""); }

TEST(LineMarkersTest, ALineBreakHasADollarBeforeIt) { checkMarked("a 1\n", "a 1$\n"); }

TEST(LineMarkersTest, AnEmptyLineIsAMarker) { checkMarked("\n\n", "$\n$\n"); }

TEST(LineMarkersTest, ADollarBeforeALineBreakStays) { checkMarked("a$\n", "a$$\n"); }

TEST(LineMarkersTest, ACarriageReturnStaysBeforeTheMarker) { checkMarked("a\r\n", "a\r$\n"); }

TEST(LineMarkersTest, ATextWithoutALineBreakIsJoinedWithNothing) { checkMarked("a", "a\\\n"); }

TEST(LineMarkersTest, ALineOf8188BytesIsOnePiece) {
  const std::string line(8188, 'a');
  checkMarked(line + "\n", line + "$\n");
}

TEST(LineMarkersTest, ALongerLineIsJoined) {
  const std::string line(8188, 'a');
  checkMarked(line + "b\n", line + "\\\nb$\n");
}

TEST(LineMarkersTest, APieceThatIsTooLongLosesTwoBytes) {
  EXPECT_EQ(takeLineMarkers(std::string(8190, 'a') + "b$\n"), std::string(8188, 'a') + "b\n");
}

TEST(LineMarkersTest, APieceThatIsTooLongMayBreakAtADollar) {
  EXPECT_EQ(takeLineMarkers(std::string(8188, 'a') + "$xb$\n"), std::string(8188, 'a') + "\nb\n");
}

TEST(LineMarkersTest, ALineOfLessThanTwoBytesIsRefused) {
  EXPECT_THROW(takeLineMarkers("a$\n\n"), std::out_of_range);
}

TEST(LineMarkersTest, ADollarAnywhereIsAMarker) { EXPECT_TRUE(hasLineMarkers("a 1\nb 2$\n")); }

TEST(LineMarkersTest, ATextWithoutADollarHasNoMarkers) { EXPECT_FALSE(hasLineMarkers("a 1\n")); }

TEST(LineMarkersTest, ATextThatIsOneLineHasMarkersWhereItIsJoined) {
  EXPECT_TRUE(hasLineMarkers("a 1\\\n"));
  EXPECT_FALSE(hasLineMarkers("a 1"));
}

TEST(LineMarkersTest, EveryTextComesBack) {
  std::mt19937 random(1);
  const std::string bytes = "$\\ab\n\n\r\xFF";
  for (int i = 0; i < 300; ++i) {
    std::string text;
    const std::size_t lengths[] = {0, 1, 3, 8186, 8187, 8188, 8189, 8190, 8191, 16376, 16377};
    for (unsigned long line = random() % 4; line > 0; --line) {
      text.append(lengths[random() % 11], bytes[random() % bytes.size()]);
      text += bytes[random() % bytes.size()];
    }
    const std::string marked = addLineMarkers(text);
    EXPECT_TRUE(takeLineMarkers(marked) == text) << i;
    EXPECT_TRUE(hasLineMarkers(marked)) << i;
  }
}

}  // namespace ToolTest
