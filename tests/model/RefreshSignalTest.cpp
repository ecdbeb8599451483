#include "model/RefreshSignal.h"

#include "tests/support/FailingFileSystem.h"
#include "tests/support/LogCatcher.h"
#include "tests/support/MemoryFileSystem.h"

#include <gmock/gmock.h>

#include <random>

namespace roost {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;
using Operation = test::FailingFileSystem::Operation;

const std::filesystem::path folder = "/data/group";
const std::filesystem::path marker = folder / "refresh-requested";
constexpr Date noon{seconds(1'718'000'000)};

class RefreshSignalTest : public testing::Test {
protected:
    bool request(Date at)
    {
        return RefreshSignal::request(store, at, [this](Date time) { posted.push_back(time); });
    }

    std::string written() const { return memory.contents(marker).value_or("nothing"); }

    /// What is read when the file holds `text`.
    std::optional<Date> read(std::string_view text)
    {
        memory.put(marker, text);
        return RefreshSignal::lastRequest(store);
    }

    test::MemoryFileSystem memory;
    test::FailingFileSystem files{memory};
    WidgetStore store{files, folder};
    std::vector<Date> posted;
};

TEST_F(RefreshSignalTest, HasItsName)
{
    EXPECT_STREQ(RefreshSignal::notification, "world.brisken.roost.refresh-requested");
}

TEST_F(RefreshSignalTest, IsNoneAtFirst)
{
    EXPECT_EQ(RefreshSignal::lastRequest(store), std::nullopt);
    ASSERT_FALSE(files.makeFolders(folder));
    EXPECT_EQ(RefreshSignal::lastRequest(store), std::nullopt);
}

TEST_F(RefreshSignalTest, MakesTheFolderAndWritesAndPostsTheTime)
{
    EXPECT_TRUE(request(noon + milliseconds(500)));
    EXPECT_EQ(written(), "1718000000.5");
    EXPECT_THAT(posted, ElementsAre(noon + milliseconds(500)));
    EXPECT_EQ(RefreshSignal::lastRequest(store), noon + milliseconds(500));
    EXPECT_THAT(memory.names(folder), ElementsAre("refresh-requested"));
}

TEST_F(RefreshSignalTest, IsWrittenBeforeItIsPosted)
{
    RefreshSignal::request(store, noon,
                           [this](Date at) { EXPECT_EQ(RefreshSignal::lastRequest(store), at); });
}

TEST_F(RefreshSignalTest, IsWrittenInPlainDecimalsAndNothingElse)
{
    const std::map<Date, std::string> texts{
        {noon, "1718000000"},
        {Date{seconds(2'000'000'000)}, "2000000000"},
        {noon + milliseconds(1), "1718000000.001"},
        {noon + milliseconds(250), "1718000000.25"},
        {Date{seconds(0)}, "0"},
        {Date{milliseconds(-1'500)}, "-1.5"},
        {Date{milliseconds(1)}, "0.001"},
        {Date{seconds(253'402'300'799)}, "253402300799"},
    };
    for (const auto& [date, text] : texts) {
        request(date);
        EXPECT_EQ(written(), text);
        EXPECT_EQ(RefreshSignal::lastRequest(store), date);
    }
    for (const Date date : {Date::min(), Date::max()}) {
        EXPECT_TRUE(request(date));
        EXPECT_EQ(written().find_first_not_of("-0123456789."), std::string::npos) << written();
    }
}

TEST_F(RefreshSignalTest, IsReadAsItWasWritten)
{
    std::mt19937_64 random{7};
    for (int i = 0; i < 2'000; ++i) {
        // From 1900 to 2200.
        const Date date{
            milliseconds(static_cast<std::int64_t>(random() % 9'467'000'000'000) - 2'208'988'800'000)};
        request(date);
        ASSERT_EQ(RefreshSignal::lastRequest(store), date) << written();
    }
}

TEST_F(RefreshSignalTest, IsTheLaterOfTwo)
{
    request(noon);
    request(noon + milliseconds(1));
    EXPECT_EQ(RefreshSignal::lastRequest(store), noon + milliseconds(1));
    EXPECT_THAT(posted, ElementsAre(noon, noon + milliseconds(1)));
    EXPECT_THAT(memory.names(folder), ElementsAre("refresh-requested"));
}

TEST_F(RefreshSignalTest, IsAnyNumber)
{
    EXPECT_EQ(read("1718000000.5"), noon + milliseconds(500));
    EXPECT_EQ(read("1718000000.0"), noon);
    EXPECT_EQ(read("1.718e+09"), noon);
    EXPECT_EQ(read("1e3"), Date{seconds(1000)});
    EXPECT_EQ(read("-1"), Date{seconds(-1)});
    EXPECT_EQ(read("1718000000.50049"), noon + milliseconds(500));
}

TEST_F(RefreshSignalTest, IsNoneWhereTheTextIsNoTime)
{
    for (const std::string_view text : {"",
                                        " ",
                                        "soon",
                                        "1718000000 s",
                                        " 1718000000",
                                        "1718000000 ",
                                        "1718000000\n",
                                        "\xEF\xBB\xBF"
                                        "1718000000",
                                        "1718000000,5",
                                        "1 718 000 000",
                                        "0x10",
                                        "+1",
                                        "--1",
                                        "1e",
                                        ".",
                                        "-",
                                        "inf",
                                        "-inf",
                                        "infinity",
                                        "INF",
                                        "nan",
                                        "NaN",
                                        "nan(1)",
                                        "1e400",
                                        "-1e400",
                                        "1e300",
                                        "-1e300",
                                        "9223372036854775.807",
                                        "\xD9\xA1"}) {
        EXPECT_EQ(read(text), std::nullopt) << text;
    }
    EXPECT_EQ(read(std::string("1718000000\0", 11)), std::nullopt);
    EXPECT_EQ(read(std::string(100'000, '1')), std::nullopt);
    EXPECT_EQ(read("1718000000." + std::string(100'000, '0')), std::nullopt);
}

TEST_F(RefreshSignalTest, IsNoneWhereTheFileCannotBeRead)
{
    request(noon);
    files.failEvery(Operation::read, std::make_error_code(std::errc::permission_denied));
    EXPECT_EQ(RefreshSignal::lastRequest(store), std::nullopt);
}

TEST_F(RefreshSignalTest, IsPostedAlsoWhenItCannotBeWritten)
{
    const auto full = std::make_error_code(std::errc::no_space_on_device);
    request(noon - seconds(1));
    for (const Operation operation :
         {Operation::makeFolders, Operation::openTemporary, Operation::write, Operation::rename}) {
        posted.clear();
        files.failEvery(operation, full);
        EXPECT_FALSE(request(noon));
        EXPECT_THAT(posted, ElementsAre(noon));
        files.recover();
        EXPECT_EQ(RefreshSignal::lastRequest(store), noon - seconds(1)) << "the last one stays";
        EXPECT_THAT(memory.names(folder), ElementsAre("refresh-requested"));
    }
}

} // namespace
} // namespace roost
