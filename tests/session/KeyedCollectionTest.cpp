#include "session/ErrorNumbers.h"
#include "session/Failure.h"
#include "session/KeyedCollection.h"

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
    items.Add(std::make_shared<Item>(Item{1}), QStringLiteral("Rx1"));
    items.Add(std::make_shared<Item>(Item{2}));
    items.Add(std::make_shared<Item>(Item{3}), QStringLiteral("rx3"));
    return items;
}

long failureOf(const std::function<void()>& step) {
    try {
        step();
    } catch (const Failure& failure) {
        return failure.number();
    }
    return 0;
}

TEST(KeyedCollectionTest, ReachesItemsByPositionAndByKeyIgnoringCase) {
    const Collection items = threeItems();
    EXPECT_EQ(items.Count(), 3);
    EXPECT_EQ(items.Item(2)->id, 2);
    EXPECT_EQ(items.Item(QStringLiteral("RX3"))->id, 3);
    EXPECT_EQ(items.keyAt(2), QString());
    int sum = 0;
    for (const auto& item : items) sum = sum * 10 + item->id;
    EXPECT_EQ(sum, 123);
}

TEST(KeyedCollectionTest, FailsAsThePlatformDoes) {
    Collection items = threeItems();
    struct Case {
        const char* what;
        std::function<void()> step;
        long number;
    };
    const Case cases[] = {
        {"position 0", [&] { items.Item(0); }, err::SubscriptOutOfRange},
        {"position past the end", [&] { items.Item(4); }, err::SubscriptOutOfRange},
        {"unknown key", [&] { items.Item(QStringLiteral("Rx2")); }, err::InvalidProcedureCall},
        {"key given twice",
         [&] { items.Add(std::make_shared<Item>(Item{9}), QStringLiteral("RX1")); },
         err::DuplicateKey},
        {"remove unknown key", [&] { items.Remove(QStringLiteral("nope")); },
         err::InvalidProcedureCall},
    };
    for (const Case& c : cases) EXPECT_EQ(failureOf(c.step), c.number) << c.what;
    EXPECT_EQ(items.Count(), 3);
}

TEST(KeyedCollectionTest, RemoveClosesTheGap) {
    Collection items = threeItems();
    items.Remove(QStringLiteral("rx1"));
    ASSERT_EQ(items.Count(), 2);
    EXPECT_EQ(items.Item(1)->id, 2);
    items.Remove(2);
    ASSERT_EQ(items.Count(), 1);
    EXPECT_FALSE(items.containsKey(QStringLiteral("Rx3")));
}

}  // namespace
}  // namespace tvrx
