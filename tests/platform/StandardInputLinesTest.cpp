#include "platform/StandardInputLines.h"

#include "tests/support/RunUntil.h"
#include "tests/support/ScratchFolder.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <array>
#include <thread>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;

/// What was read from one end of a pipe.
struct Reading {
    std::array<int, 2> ends{-1, -1};
    std::vector<std::string> heard;

    Reading() { EXPECT_EQ(::pipe(ends.data()), 0); }
    ~Reading()
    {
        ::close(ends[0]);
        close();
    }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    void write(const std::string& text) const
    {
        EXPECT_EQ(::write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
    }
    void close()
    {
        if (ends[1] >= 0) {
            ::close(std::exchange(ends[1], -1));
        }
    }

    StandardInputLines::Listener listener()
    {
        return {[this](std::string line) { heard.push_back("line " + line); },
                [this] { heard.emplace_back("too long"); }, [this] { heard.emplace_back("ended"); }};
    }

    bool waitFor(std::size_t count) const
    {
        return runUntil([&] { return heard.size() >= count; });
    }
};

TEST(StandardInputLines, GivesLinesAsTheyCome)
{
    Reading reading;
    const StandardInputLines lines(reading.listener(), reading.ends[0]);
    EXPECT_FALSE(runUntil([&] { return !reading.heard.empty(); }, 20ms)) << "nothing has come yet";
    reading.write("one\n\ntw");
    EXPECT_TRUE(reading.waitFor(2));
    reading.write("o\r\n");
    EXPECT_TRUE(reading.waitFor(3));
    EXPECT_THAT(reading.heard, ElementsAre("line one", "line ", "line two\r"));
}

TEST(StandardInputLines, NoticesTheEndOnce)
{
    Reading reading;
    const StandardInputLines lines(reading.listener(), reading.ends[0]);
    reading.write("one\nlast");
    reading.close();
    EXPECT_TRUE(reading.waitFor(3));
    EXPECT_FALSE(runUntil([&] { return reading.heard.size() > 3; }, 20ms));
    EXPECT_THAT(reading.heard, ElementsAre("line one", "line last", "ended"));
}

TEST(StandardInputLines, LeavesOutALineThatIsTooLong)
{
    Reading reading;
    const StandardInputLines lines(reading.listener(), reading.ends[0]);
    const std::string longest(StandardInputLines::longestLine, 'a');
    std::thread writer(
        [&] { reading.write(longest + "\n" + longest + "a\n" + longest + longest + "\nshort\n"); });
    EXPECT_TRUE(reading.waitFor(4));
    writer.join();
    EXPECT_THAT(reading.heard, ElementsAre("line " + longest, "too long", "too long", "line short"));
}

TEST(StandardInputLines, ReadsAFile)
{
    const ScratchFolder folder;
    putBytes(folder / "input", "one\ntwo\n");
    const int file = ::open((folder / "input").c_str(), O_RDONLY | O_CLOEXEC);
    Reading reading;
    const StandardInputLines lines(reading.listener(), file);
    EXPECT_TRUE(reading.waitFor(3));
    EXPECT_THAT(reading.heard, ElementsAre("line one", "line two", "ended"));
    ::close(file);
}

TEST(StandardInputLines, HaveEndedWhereThereIsNoInput)
{
    Reading reading;
    const int null = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
    const StandardInputLines empty(reading.listener(), null);
    EXPECT_TRUE(reading.waitFor(1));
    ::close(null);

    Reading closed;
    const StandardInputLines none(closed.listener(), -1);
    EXPECT_THAT(closed.heard, IsEmpty()) << "not before the event loop runs";
    EXPECT_TRUE(closed.waitFor(1));
    EXPECT_THAT(closed.heard, ElementsAre("ended"));
}

TEST(StandardInputLines, LeaveTheDescriptorAsItIs)
{
    Reading reading;
    const int flags = ::fcntl(reading.ends[0], F_GETFL);
    {
        const StandardInputLines lines(reading.listener(), reading.ends[0]);
        reading.write("one\n");
        EXPECT_TRUE(reading.waitFor(1));
    }
    EXPECT_EQ(::fcntl(reading.ends[0], F_GETFL), flags);
}

} // namespace
} // namespace roost::test
