#include "tests/soak/SoakMachine.h"
#include "tests/soak/SoakWatch.h"
#include "tests/soak/Troubles.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <deque>

namespace roost::test {
namespace {

using namespace std::chrono_literals;
using testing::IsEmpty;

/// From `variable` of the environment; nothing when there is no number.
std::optional<int> numberFrom(const char* variable)
{
    bool isNumber = false;
    const int number = qEnvironmentVariableIntValue(variable, &isNumber);
    return isNumber ? std::optional{number} : std::nullopt;
}

/// Deals every trouble once before any comes again.
class Deck {
public:
    explicit Deck(std::uint64_t seed) : dice_{seed} {}

    Dice& dice() { return dice_; }

    const Trouble& next()
    {
        if (left_.empty()) {
            for (const Trouble& trouble : troubles()) {
                const std::size_t place = dice_.below(left_.size() + 1);
                left_.insert(left_.begin() + static_cast<std::ptrdiff_t>(place), &trouble);
            }
        }
        const Trouble& trouble = *left_.front();
        left_.pop_front();
        return trouble;
    }

private:
    Dice dice_;
    std::deque<const Trouble*> left_;
};

void tell(const std::string& text) { std::fputs(text.c_str(), stderr); }

/// The lines that the app has logged, without their times, each once, with how often, the most frequent
/// first.
std::string census(const std::string& log)
{
    constexpr std::size_t timeLength = std::string_view{"2026-01-01 00:00:00.000 "}.size();
    std::map<std::string, int> times;
    for (std::size_t at = 0; at < log.size();) {
        const std::size_t end = std::min(log.find('\n', at), log.size());
        ++times[log.substr(std::min(at + timeLength, end), end - std::min(at + timeLength, end))];
        at = end + 1;
    }
    std::vector<std::pair<int, std::string>> lines;
    for (const auto& [line, count] : times) {
        lines.emplace_back(count, line);
    }
    std::ranges::sort(lines, std::greater{});
    std::string text;
    for (const auto& [count, line] : lines) {
        text += std::to_string(count) + " × " + line + "\n";
    }
    return text;
}

/// The real app among real processes: some troubles in every run of the tests, and for as many minutes as
/// $ROOST_SOAK_MINUTES says where that is set. What it takes of the machine is judged in long runs alone.
class RealSoak : public testing::Test {
protected:
    /// Everybody signs in, and then trouble comes upon trouble. The first that did not pass, and what there
    /// is to know about it; empty when all did.
    std::string live(SoakWatch& watch)
    {
        try {
            machine.startApp();
            for (const std::string& profile : machine.profiles()) {
                machine.signIn(profile);
            }
            machine.recover();
            watch.begin();
            constexpr std::size_t few = 3;
            for (std::size_t count = 0; minutes ? watch.elapsed() < *minutes * 1min : count < few; ++count) {
                pass(deck.next(), watch);
            }
        } catch (const std::exception& error) {
            return doing + ": " + error.what() + "\n" + census(machine.log()) + machine.sanitizerReports();
        }
        return {};
    }

    std::optional<int> minutes = numberFrom("ROOST_SOAK_MINUTES");
    Deck deck{static_cast<std::uint64_t>(numberFrom("ROOST_SOAK_SEED").value_or(1))};
    SoakMachine machine;

private:
    void pass(const Trouble& trouble, SoakWatch& watch)
    {
        const auto seconds = [](std::chrono::milliseconds time) {
            return std::chrono::duration<double>(time).count();
        };
        doing = trouble.name;
        tell(QString::asprintf("%7.1f s  %s", seconds(watch.elapsed()), doing.c_str()).toStdString());
        trouble.bring(machine, deck.dice());
        const auto recovery = machine.recover();
        SoakMachine::pass(minutes ? 4s : 0s);
        watch.lookInQuiet();
        tell(QString::asprintf("; well again after %.1f s; %s\n", seconds(recovery), watch.now().c_str())
                 .toStdString());
    }

    std::string doing = "the start";
};

TEST_F(RealSoak, EndsAsWholeAsItBegan)
{
    SoakWatch watch{machine};
    const std::string finding = live(watch);
    ASSERT_TRUE(finding.empty()) << finding;

    const QJsonObject service = machine.state();
    machine.app().signal(SIGTERM);
    EXPECT_EQ(machine.app().ended(2min), 0);
    EXPECT_EQ(machine.sanitizerReports(), "");
    EXPECT_EQ(watch.breaches(), "");
    EXPECT_EQ(service[QStringLiteral("refreshTokenReuses")].toInt(), 0);
    if (minutes) {
        EXPECT_THAT(watch.unmoved(), IsEmpty());
        EXPECT_EQ(watch.growth(), "");
        tell(watch.report());
        tell("The app has logged:\n" + census(machine.log()));
    }
}

} // namespace
} // namespace roost::test
