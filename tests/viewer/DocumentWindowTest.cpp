#include <DocumentWindow.h>

#include <gtest/gtest.h>

#include "ViewedDocument.h"

namespace {

TEST(DocumentWindowTest, AFindingLeadsToItsItem) {
  const ViewedDocument broken("camera {\n  fov\n  size 4\n}\n");
  DocumentWindow window(broken.tree);
  window.findChild<QListWidget*>()->setCurrentRow(0);
  const QModelIndex current = window.findChild<QTreeView*>()->currentIndex();
  EXPECT_EQ(current.data().toString().toStdString(), "fov");
}

TEST(DocumentWindowTest, FindingsAreToldWithTheirPlaces) {
  const ViewedDocument broken("camera {\n  fov\n  size 4\n}\n");
  const DocumentWindow window(broken.tree);
  EXPECT_EQ(window.findChild<QListWidget*>()->item(0)->text().toStdString(),
            "show.cfg:3:3: item 'size' has no value.");
}

TEST(DocumentWindowTest, WithoutFindingsThereIsNoListOfThem) {
  const ViewedDocument good("camera { fov 4 }\n");
  const DocumentWindow window(good.tree);
  EXPECT_TRUE(window.findChild<QListWidget*>()->isHidden());
}

}  // namespace
