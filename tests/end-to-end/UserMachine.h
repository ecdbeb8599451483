#pragma once

#include "programs/roost-service/LocalService.h"
#include "tests/end-to-end/PassedSecrets.h"
#include "tests/end-to-end/ProgramRun.h"
#include "tests/support/PrivateBus.h"
#include "tests/support/PrivateKeyring.h"

#include <QProcessEnvironment>

#include <deque>
#include <memory>

namespace roost::test {

/// The machine of somebody who uses the program, and the service they use it with: a session bus and a
/// keyring of their own, an empty home, a desktop whose browser hands what it is to open to the test. Main
/// thread.
class UserMachine {
public:
    UserMachine();

    PrivateBus bus;
    PrivateKeyring keyring{bus};
    /// Whoever has signed in to the service.
    PassedSecrets secrets;
    /// Asks its users for consent.
    local::LocalService service;

    /// What programs are started with: that of a desktop session.
    QProcessEnvironment environment;
    /// The same without a display.
    QProcessEnvironment withoutDisplay() const;

    /// The program with a command about the profiles of the service, a word or some, started; and the same,
    /// ended.
    std::unique_ptr<ProgramRun> start(const QString& command) const { return start(command, environment); }
    std::unique_ptr<ProgramRun> start(const QString& command, const QProcessEnvironment& with) const;
    Finished run(const QString& command) const { return start(command)->end(); }

    /// Signs that profile in by the command, without a display: the user pastes what the browser ends at.
    void signIn(const std::string& profile);

    /// `status --format json` of the only profile.
    QJsonObject status() const;

    /// The next address that the desktop's browser was started with. Throws after the guard time.
    std::string addressForTheBrowser() const;

    /// How many refresh tokens of the profile the keyring has, as another program sees it.
    qsizetype keptTokens(const std::string& profile) const;
    /// How many items of the program it has at all.
    qsizetype keptItems() const;

    /// Puts an executable shell script into a folder of the test, outside the home, and gives its path.
    std::filesystem::path script(const std::string& name, const std::string& text) const;
    /// That folder.
    const std::filesystem::path& folder() const { return folder_.path(); }

private:
    ScratchFolder folder_;
    std::deque<ScopedVariable> desktop_;
};

} // namespace roost::test
