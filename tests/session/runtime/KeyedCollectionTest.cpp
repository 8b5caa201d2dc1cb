#include "session/runtime/ErrorNumbers.h"
#include "session/runtime/KeyedCollection.h"
#include "support/DatabaseFixture.h"

#include <gtest/gtest.h>

#include <functional>

namespace tvrx {
namespace {

struct Item {
    int id;
};

using Collection = KeyedCollection<Item>;

Collection threeItems() {
    Collection items;
    items.Add(std::make_shared<Item>(Item{1}), "Rx1");
    items.Add(std::make_shared<Item>(Item{2}));
    items.Add(std::make_shared<Item>(Item{3}), "rx3");
    return items;
}

TEST(KeyedCollectionTest, ReachesItemsByPositionAndByKeyIgnoringCaseAndRemoveClosesTheGap) {
    Collection items = threeItems();
    EXPECT_EQ(items.Item(2)->id, 2);
    EXPECT_EQ(items.Item("RX3")->id, 3);
    EXPECT_EQ(items.keyAt(2), QString());
    int sum = 0;
    for (const auto& item : items) sum = sum * 10 + item->id;
    EXPECT_EQ(sum, 123);

    items.Remove("rx1");
    ASSERT_EQ(items.Count(), 2);
    EXPECT_EQ(items.Item(1)->id, 2);
    items.Remove(2);
    ASSERT_EQ(items.Count(), 1);
    EXPECT_FALSE(items.containsKey("Rx3"));
}

TEST(KeyedCollectionTest, FailsAsThePlatformDoes) {
    Collection items = threeItems();
    const struct {
        const char* what;
        std::function<void()> step;
        long number;
    } cases[] = {
        {"position 0", [&] { items.Item(0); }, err::SubscriptOutOfRange},
        {"position past the end", [&] { items.Item(4); }, err::SubscriptOutOfRange},
        {"unknown key", [&] { items.Item("Rx2"); }, err::InvalidProcedureCall},
        {"key given twice", [&] { items.Add(std::make_shared<Item>(Item{9}), "RX1"); },
         err::DuplicateKey},
        {"remove unknown key", [&] { items.Remove("nope"); }, err::InvalidProcedureCall},
    };
    for (const auto& c : cases)
        EXPECT_EQ(test::DatabaseFixture::caught(c.step).number, c.number) << c.what;
    EXPECT_EQ(items.Count(), 3);
}

}  // namespace
}  // namespace tvrx
