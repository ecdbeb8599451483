#include "present/RoostWidgetKind.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

namespace roost {
namespace {

TEST(RoostWidgetKindTest, HasANameForEachKindInOrder)
{
    std::vector<std::string> names;
    for (const RoostWidgetKind kind : allWidgetKinds) {
        names.emplace_back(rawText(kind));
        EXPECT_EQ(widgetKind(rawText(kind)), kind);
    }
    EXPECT_THAT(names, testing::ElementsAre("views", "networks", "queue", "dashboard", "followers"));
}

TEST(RoostWidgetKindTest, KnowsNoOtherNames)
{
    for (const char* name : {"Views", "VIEWS", "view", "views ", "", "0"}) {
        EXPECT_EQ(widgetKind(name), std::nullopt) << name;
    }
}

} // namespace
} // namespace roost
