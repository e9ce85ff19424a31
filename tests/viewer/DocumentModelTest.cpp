#include <DocumentModel.h>

#include <gtest/gtest.h>
#include <QAbstractItemModelTester>
#include <QIcon>

#include "ViewedDocument.h"

namespace {

constexpr char CAMERA[] =
    "title \"Harbor\"\n"
    "camera {\n"
    "  fov 39.60\n"
    "  target { position 1 -2.5 yes }\n"
    "}\n"
    "blur(4, yes)\n"
    "nothing <empty>\n"
    "#revision 0x0102FF02010000\n";

constexpr auto REPORT = QAbstractItemModelTester::FailureReportingMode::Fatal;

bool hasSign(const QModelIndex& index) {
  return !index.data(Qt::DecorationRole).value<QIcon>().isNull();
}

TEST(DocumentModelTest, ItKeepsTheRulesOfAllModels) {
  ViewedDocument camera(CAMERA);
  const QAbstractItemModelTester tester(&camera.model, REPORT);
  ASSERT_EQ(camera.model.rowCount(), 5);
}

TEST(DocumentModelTest, AnEmptyDocumentKeepsThemToo) {
  ViewedDocument empty("");
  const QAbstractItemModelTester tester(&empty.model, REPORT);
  ASSERT_EQ(empty.model.rowCount(), 0);
}

TEST(DocumentModelTest, ARowShowsNameTypeAndValue) {
  const ViewedDocument camera(CAMERA);
  EXPECT_EQ(camera.getText(0, DocumentModel::NAME), "title");
  EXPECT_EQ(camera.getText(0, DocumentModel::TYPE), "string");
  EXPECT_EQ(camera.getText(0, DocumentModel::VALUE), "\"Harbor\"");
}

TEST(DocumentModelTest, ColumnsHaveHeaders) {
  const ViewedDocument camera(CAMERA);
  ASSERT_EQ(camera.model.columnCount(), 3);
  EXPECT_EQ(camera.model.headerData(0, Qt::Horizontal).toString().toStdString(), "Name");
  EXPECT_EQ(camera.model.headerData(1, Qt::Horizontal).toString().toStdString(), "Type");
  EXPECT_EQ(camera.model.headerData(2, Qt::Horizontal).toString().toStdString(), "Value");
}

TEST(DocumentModelTest, TheItemsOfAGroupAreBelowIt) {
  const ViewedDocument camera(CAMERA);
  const QModelIndex group = camera.model.index(1, 0);
  ASSERT_EQ(camera.model.rowCount(group), 2);
  EXPECT_EQ(camera.getText(0, DocumentModel::NAME, group), "fov");
  EXPECT_EQ(camera.model.index(1, 2, group).parent(), group);
  EXPECT_EQ(camera.model.rowCount(camera.model.index(1, 1)), 0) << "only the first column has rows";
}

TEST(DocumentModelTest, ValuesKeepTheirSpelling) {
  const ViewedDocument camera(CAMERA);
  EXPECT_EQ(camera.getText(0, DocumentModel::VALUE, camera.model.index(1, 0)), "39.60");
}

TEST(DocumentModelTest, ValuesOfSeveralTypesAreNamedByAllOfThem) {
  const ViewedDocument camera(CAMERA);
  const QModelIndex target = camera.model.index(1, 0, camera.model.index(1, 0));
  EXPECT_EQ(camera.getText(0, DocumentModel::TYPE, target), "int, double, bool");
  EXPECT_EQ(camera.getText(0, DocumentModel::VALUE, target), "1 -2.5 yes");
}

TEST(DocumentModelTest, CallsShowTheirArguments) {
  const ViewedDocument camera(CAMERA);
  EXPECT_EQ(camera.getText(2, DocumentModel::TYPE), "call");
  EXPECT_EQ(camera.getText(2, DocumentModel::VALUE), "(4, yes)");
}

TEST(DocumentModelTest, KeywordsAndItemsWithoutValuesAreShown) {
  const ViewedDocument camera(CAMERA);
  EXPECT_EQ(camera.getText(3, DocumentModel::VALUE), "<empty>");
  EXPECT_EQ(camera.getText(4, DocumentModel::NAME), "#revision");
  EXPECT_EQ(camera.getText(4, DocumentModel::TYPE), "binary");
}

TEST(DocumentModelTest, TheTipOfARowIsItsPlace) {
  const ViewedDocument camera(CAMERA);
  const QModelIndex fov = camera.model.index(0, 0, camera.model.index(1, 0));
  EXPECT_EQ(fov.data(Qt::ToolTipRole).toString().toStdString(), "show.cfg:3:3");
}

TEST(DocumentModelTest, ADiagnosticMarksItsItemAndTheGroupsAroundIt) {
  const ViewedDocument broken("camera {\n  fov\n  size 4\n}\ntitle 1\n");
  const QModelIndex group = broken.model.index(0, 0);
  EXPECT_TRUE(hasSign(group));
  EXPECT_TRUE(hasSign(broken.model.index(0, 0, group)));
  EXPECT_FALSE(hasSign(broken.model.index(1, 0, group)));
  EXPECT_FALSE(hasSign(broken.model.index(1, 0)));
}

TEST(DocumentModelTest, ADiagnosticWithoutAnItemLeadsNowhere) {
  const ViewedDocument missing("title 1\n#include \"nowhere.cfg\"\n");
  const auto& diagnostics = missing.document->getDiagnostics();
  ASSERT_EQ(diagnostics.size(), 1UL);
  EXPECT_FALSE(missing.model.findIndex(diagnostics[0]).isValid());
}

}  // namespace
