// killed-refresh BASE PROFILE LOCKS STEP: one sync of a profile with everything real, killed at its STEPth
// step; 0: at none. Says each step on a line, and what came of it on the last one.

#include "model/Clock.h"
#include "platform/FileRefreshLock.h"
#include "platform/KeychainSecretStore.h"
#include "service/AccountSession.h"
#include "service/AccountSync.h"
#include "service/NetworkHttpSession.h"
#include "tests/end-to-end/SteppedParts.h"

#include <QCoreApplication>
#include <QCoro/QCoroTask>

namespace {

struct Name {
    std::string operator()(const roost::SyncOutcome::Updated&) const { return "updated"; }
    std::string operator()(const roost::SyncOutcome::Failed& outcome) const
    {
        return describe(outcome.reason);
    }
    std::string operator()(const roost::SyncOutcome::SignedOut&) const { return "signed out"; }
};

} // namespace

int main(int argc, char** argv)
{
    using namespace roost;

    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QUrl base{arguments.at(1)};
    test::Steps steps{arguments.at(4).toInt()};

    NetworkHttpSession network;
    KeychainSecretStore keyring{"world.brisken.roost.mac", KeychainSecretStore::Patience{}};
    FileRefreshLock files{arguments.at(3).toStdString()};
    test::SteppedHttpSession session{network, steps};
    test::SteppedStore secrets{keyring, steps};
    test::SteppedLock lock{files, steps};
    const OAuthClient oauth{base, session, secrets, systemClock()};
    const auto account =
        std::make_shared<AccountSession>(arguments.at(2).toStdString(), oauth, secrets, lock, systemClock());
    const AccountSync sync{WidgetAPI{base, session}};
    const SyncOutcome::Any outcome = QCoro::waitFor(sync.fetch(account, {}));
    std::puts(("outcome: " + std::visit(Name{}, outcome)).c_str());
    return 0;
}
