#include <gtest/gtest.h>
#include <QColor>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QStringList>
#include <QTemporaryDir>

#include <set>

namespace {

constexpr int NAME_WIDTH = 240;

/// Names of letters that reach neither far up nor far down, so that there is a blank line between
/// any two rows of text.
constexpr char GOOD[] = "scene 1\ncamera {\n  zoom 2\n  macro {\n    on yes\n  }\n}\nmax 3\n";
constexpr char BROKEN[] = "scene 1\ncamera {\n  zoom 2,,\n  macro {\n    on yes\n  }\n}\nmax 3\n";

/// Runs the program on a document, and returns what it shows.
class ScreenshotTest : public testing::Test {
 protected:
  QImage show(const char* text, const QStringList& options, const QString& name = "d.cfg") {
    QFile file(folder.filePath("d.cfg"));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly) && file.write(text) > 0);
    file.close();
    QProcess viewer;
    viewer.setWorkingDirectory(folder.path());
    viewer.start(VIEWER_PATH, options + QStringList{name, "--screenshot", "window.png"});
    EXPECT_TRUE(viewer.waitForFinished());
    EXPECT_EQ(viewer.exitCode(), 0) << viewer.readAllStandardError().toStdString();
    return QImage(folder.filePath("window.png"));
  }

 private:
  QTemporaryDir folder;
};

bool hasText(const QImage& picture, int line) {
  for (int column = 0; column < NAME_WIDTH; ++column) {
    if (qGray(picture.pixel(column, line)) < 64) return true;
  }
  return false;
}

/// Counts the rows of text at the left: the header, the names of items, and the findings.
int countRows(const QImage& picture) {
  int rows = 0;
  for (int line = 1; line < picture.height(); ++line) {
    if (hasText(picture, line) && !hasText(picture, line - 1)) ++rows;
  }
  return rows;
}

unsigned long countColors(const QImage& picture) {
  std::set<QRgb> colors;
  for (int line = 0; line < picture.height(); ++line) {
    for (int column = 0; column < picture.width(); ++column)
      colors.insert(picture.pixel(column, line));
  }
  return colors.size();
}

TEST_F(ScreenshotTest, ThePictureIsTheWindow) {
  const QImage picture = show(GOOD, {});
  EXPECT_EQ(picture.size(), QSize(800, 520));
  EXPECT_GT(countColors(picture), 16UL);
}

TEST_F(ScreenshotTest, GroupsAreClosedAtFirst) { EXPECT_EQ(countRows(show(GOOD, {})), 1 + 3); }

TEST_F(ScreenshotTest, AllItemsAreShownWhenGroupsAreOpen) {
  EXPECT_EQ(countRows(show(GOOD, {"--expand"})), 1 + 6);
}

TEST_F(ScreenshotTest, FindingsStandBelow) {
  EXPECT_EQ(countRows(show(BROKEN, {"--expand"})), 1 + 6 + 1);
}

TEST_F(ScreenshotTest, AMissingDocumentIsAFinding) {
  EXPECT_EQ(countRows(show(GOOD, {}, "missing.cfg")), 1 + 0 + 1);
}

}  // namespace
