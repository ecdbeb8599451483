#include "app/AppSettings.h"

#include "tests/support/MemorySettings.h"

#include <gmock/gmock.h>

namespace roost {
namespace {

using testing::IsEmpty;

class AppSettingsTest : public testing::Test {
protected:
    test::MemorySettings settings;
};

TEST_F(AppSettingsTest, HaveEveryNotificationOnUntilTheUserChooses)
{
    for (const char* key : {"notify.milestones", "notify.bestPost", "notify.postWentOut", "notify.postFailed",
                            "notify.followers"}) {
        EXPECT_FALSE(settings.boolean(key)) << key;
        AppSettings::registerDefaults(settings);
        EXPECT_TRUE(settings.boolean(key)) << key;
        settings.setBoolean(key, false);
        AppSettings::registerDefaults(settings);
        EXPECT_FALSE(settings.boolean(key)) << key;
        settings = {};
    }
}

TEST_F(AppSettingsTest, HaveNotAppliedTheLoginDefaultAtFirst)
{
    AppSettings::registerDefaults(settings);
    EXPECT_FALSE(settings.boolean("didApplyLaunchAtLoginDefault"));
    EXPECT_EQ(AppSettings::didApplyLaunchAtLoginDefault, "didApplyLaunchAtLoginDefault");
}

TEST_F(AppSettingsTest, HaveNoProfileSelectedAtFirst)
{
    AppSettings::registerDefaults(settings);
    EXPECT_EQ(settings.text(AppSettings::selectedProfileId), std::nullopt);
    EXPECT_EQ(AppSettings::selectedProfileId, "selectedProfileId");
}

TEST_F(AppSettingsTest, StoreNothingByThemselves)
{
    AppSettings::registerDefaults(settings);
    EXPECT_THAT(settings.file, IsEmpty());
}

} // namespace
} // namespace roost
