#include "tests/end-to-end/ArgumentWatch.h"
#include "tests/end-to-end/RealBrowser.h"
#include "tests/end-to-end/UserMachine.h"

#include <gmock/gmock.h>

namespace roost::test {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

/// A whole life of a profile with everything logged, after which every secret that passed is looked for
/// wherever it could have been left.
class Canary : public testing::Test {
protected:
    void SetUp() override
    {
        if (!RealBrowser::isInstalled()) {
            GTEST_SKIP() << "Chromium and chromedriver are not installed here.";
        }
        machine.environment.insert(u"QT_LOGGING_RULES"_s, u"*.debug=true"_s);
        // What the browser starts speaks to nobody: its opener is the desktop's own, overheard.
        machine.script("xdg-open", "exec /usr/bin/xdg-open \"$@\" >>'" + heard.string() + "' 2>&1");
        live();
    }

    void say(const Finished& finished, int code)
    {
        EXPECT_EQ(finished.code, code) << finished.error;
        said += finished.output + finished.error;
    }

    void live()
    {
        RealBrowser browser{machine.service.base(),
                            {"PATH=" + machine.folder().string() + ":" + qgetenv("PATH").toStdString(),
                             "QT_LOGGING_RULES=*.debug=true"}};
        const auto program = machine.start(u"sign-in"_s);
        browser.open(machine.addressForTheBrowser());
        browser.click("#allow");
        say(program->end(), 0);
        browser.close();
        say(machine.run(u"sync"_s), 0);
        say(machine.run(u"accounts"_s), 0);
        say(machine.run(u"sync"_s), 0);
        machine.service.expireAccessTokens();
        say(machine.run(u"sync"_s), 0);
        machine.service.revokeAll();
        say(machine.run(u"sync"_s), 3);
        said += bytesOf(heard);
    }

    /// The files of the home that hold `secret`.
    std::vector<std::string> filesWith(const QByteArray& secret) const
    {
        namespace fs = std::filesystem;
        std::vector<std::string> found;
        for (auto entry = fs::recursive_directory_iterator{machine.bus.home()};
             entry != fs::recursive_directory_iterator{}; ++entry) {
            if (entry->path() == machine.bus.dataHome() / "keyrings") {
                entry.disable_recursion_pending();
            } else if (entry->path().string().contains(secret.toStdString()) ||
                       bytesOf(entry->path()).contains(secret.toStdString())) {
                found.push_back(entry->path().string());
            }
        }
        return found;
    }

    void expectNeitherSaidNorFiled(const PassedSecrets::Set& secrets) const
    {
        for (const QByteArray& secret : secrets) {
            EXPECT_THAT(said, Not(HasSubstr(secret.toStdString())));
            EXPECT_THAT(filesWith(secret), IsEmpty());
        }
    }

    UserMachine machine;
    ArgumentWatch watch;
    std::filesystem::path heard = machine.folder() / "heard";
    std::string said;
};

TEST_F(Canary, FindsTheSecretsOfAWholeRunNowhereButInTheKeyring)
{
    const PassedSecrets& secrets = machine.secrets;
    // One of each from the sign-in and one of each from each refresh.
    ASSERT_THAT(secrets.tokens(), SizeIs(8));
    ASSERT_THAT(secrets.codes(), SizeIs(1));
    ASSERT_THAT(secrets.verifiers(), SizeIs(1));
    ASSERT_THAT(secrets.states(), SizeIs(1));
    for (const auto& kind : {secrets.tokens(), secrets.codes(), secrets.verifiers(), secrets.states()}) {
        expectNeitherSaidNorFiled(kind);
    }

    for (const auto& kind : {secrets.tokens(), secrets.verifiers()}) {
        for (const QByteArray& secret : kind) {
            EXPECT_THAT(watch.wordsWith(secret), IsEmpty());
        }
    }
    // For a moment the callback is an argument of what the browser starts, and the address of the page, which
    // holds the state, one of what starts the browser.
    const QByteArray code = *secrets.codes().begin();
    EXPECT_THAT(watch.wordsWith(code), Not(IsEmpty())) << "the watch sees what there is to be seen";
    for (const QByteArray& word : watch.wordsWith(code)) {
        EXPECT_TRUE(word.startsWith("briskenroost:")) << word.toStdString();
    }
    for (const QByteArray& word : watch.wordsWith(*secrets.states().begin())) {
        EXPECT_TRUE(word.startsWith("briskenroost:") ||
                    word.startsWith(machine.service.base() + "/oauth/authorize?"))
            << word.toStdString();
    }
    // The searches reach what they are to search.
    EXPECT_THAT(said, HasSubstr("world.brisken.roost.mac.auth: sign-in finished"));
    EXPECT_THAT(filesWith("harbour-light"), Not(IsEmpty()));
}

} // namespace
} // namespace roost::test
