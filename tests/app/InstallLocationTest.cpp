#include "app/InstallLocation.h"

#include <gtest/gtest.h>

namespace roost::test {

namespace {

using enum InstallLocation;

struct Case {
    const char* path;
    InstallLocation location;
};

class InstallLocationTest : public testing::TestWithParam<Case> {};

} // namespace

TEST_P(InstallLocationTest, IsTheFirstThatFits)
{
    EXPECT_EQ(classifyInstallLocation(GetParam().path), GetParam().location) << GetParam().path;
}

INSTANTIATE_TEST_SUITE_P(
    Paths, InstallLocationTest,
    testing::Values(Case{"/private/var/folders/x/AppTranslocation/1-2/d/Brisken Roost.app", translocated},
                    Case{"/Volumes/Disk/AppTranslocation/Brisken Roost.app", translocated},
                    Case{"/Applications/AppTranslocation/Brisken Roost.app", translocated},
                    Case{"/Users/me/AppTranslocation", elsewhere},
                    Case{"/Volumes/Brisken Roost/Brisken Roost.app", diskImage},
                    Case{"/Volumes/Applications/Brisken Roost.app", diskImage}, Case{"/Volumes", elsewhere},
                    Case{"/Applications/Brisken Roost.app", applications},
                    Case{"/Applications/Tools/Brisken Roost.app", applications},
                    Case{"/Applications", elsewhere}, Case{"/applications/Brisken Roost.app", elsewhere},
                    Case{"/Users/me/Applications/Brisken Roost.app", applications},
                    Case{"/Users/me/Applications", elsewhere},
                    Case{"/Users//Applications/Brisken Roost.app", elsewhere},
                    Case{"/Users/me/Desktop/Applications/Brisken Roost.app", elsewhere},
                    Case{"/data/Users/me/Applications/Brisken Roost.app", elsewhere},
                    Case{"/Users/me/Downloads/Brisken Roost.app", elsewhere},
                    Case{"/opt/brisken-roost/bin/brisken-roost", elsewhere},
                    Case{"/usr/bin/brisken-roost", elsewhere}, Case{"", elsewhere}));

} // namespace roost::test
