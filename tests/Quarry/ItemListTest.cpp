#include <Quarry/ParserItem.h>
#include <Quarry/ParserItems.h>
#include <Quarry/internal/TreeParts.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace {

using Quarry::ParserItem;
using Quarry::detail::ItemList;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;

class ItemListTest : public testing::Test {
 protected:
  ItemListTest() {
    for (int i = 0; i < 9; ++i)
      owned.push_back(std::make_unique<ParserItem>("a", ParserItem::ITEM_PLAIN, 0, 0));
  }

  ParserItem* item(std::size_t index) const { return owned[index].get(); }

  std::vector<ParserItem*> items(std::size_t count) const {
    std::vector<ParserItem*> first;
    for (std::size_t i = 0; i < count; ++i)
      first.push_back(item(i));
    return first;
  }

  static void add(const std::vector<ParserItem*>& added, ItemList& list) {
    for (ParserItem* each : added)
      list.push_back(each);
  }

  static std::vector<ParserItem*> itemsOf(const ItemList& list) {
    return {list.begin(), list.end()};
  }

 private:
  std::vector<std::unique_ptr<ParserItem>> owned;
};

}  // namespace

TEST_F(ItemListTest, ASingleItemNeedsNoMemory) {
  ItemList list;
  list.push_back(item(0));
  EXPECT_THAT(itemsOf(list), ElementsAre(item(0)));
  EXPECT_EQ(list.getListSize(), 0U);
}

TEST_F(ItemListTest, FurtherItemsFollowTheFirstOne) {
  ItemList list;
  add(items(9), list);
  EXPECT_THAT(itemsOf(list), ElementsAreArray(items(9)));
}

TEST_F(ItemListTest, TellsTheMemoryOfMoreItems) {
  ItemList list;
  add(items(2), list);
  EXPECT_EQ(list.getListSize(), 4 * sizeof(void*));
}

TEST_F(ItemListTest, TwoSingleItemsAreSwapped) {
  ItemList list;
  ItemList other;
  list.push_back(item(0));
  other.push_back(item(1));
  list.swap(other);
  EXPECT_THAT(itemsOf(list), ElementsAre(item(1)));
  EXPECT_THAT(itemsOf(other), ElementsAre(item(0)));
}

TEST_F(ItemListTest, ASingleItemIsSwappedWithMany) {
  ItemList list;
  ItemList other;
  list.push_back(item(8));
  add(items(8), other);
  list.swap(other);
  EXPECT_THAT(itemsOf(list), ElementsAreArray(items(8)));
  EXPECT_THAT(itemsOf(other), ElementsAre(item(8)));
}

TEST_F(ItemListTest, ManyItemsAreSwappedWithASingleOne) {
  ItemList list;
  ItemList other;
  add(items(8), list);
  other.push_back(item(8));
  list.swap(other);
  EXPECT_THAT(itemsOf(list), ElementsAre(item(8)));
  EXPECT_THAT(itemsOf(other), ElementsAreArray(items(8)));
}

TEST_F(ItemListTest, OneThatForgotItsItemsIsFilledAnew) {
  ItemList list;
  add(items(9), list);
  list.forget();
  EXPECT_THAT(itemsOf(list), IsEmpty());
  list.push_back(item(3));
  EXPECT_THAT(itemsOf(list), ElementsAre(item(3)));
}
