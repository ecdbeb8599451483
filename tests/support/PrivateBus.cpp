#include "tests/support/PrivateBus.h"

#include "tests/support/Poll.h"

#include <QDBusConnectionInterface>
#include <QDBusReply>

#include <csignal>
#include <stdexcept>

namespace roost::test {

namespace {

std::string configurationOf(const ScratchFolder& folder, PrivateBus::Activation activation,
                            PrivateBus::Users users)
{
    const std::string admitted = users == PrivateBus::Users::all ? "<allow user=\"*\"/>" : "";
    const std::string services =
        activation == PrivateBus::Activation::installed ? "<standard_session_servicedirs/>" : "";
    return "<busconfig><type>session</type><listen>unix:path=" + (folder / "bus").string() +
           "</listen><auth>EXTERNAL</auth>" + services + "<policy context=\"default\">" + admitted +
           "<allow send_destination=\"*\" eavesdrop=\"true\"/>"
           "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>";
}

void enter(std::deque<ScopedVariable>& environment, const ScratchFolder& folder)
{
    const auto folderFor = [&](const char* variable, const char* name) {
        const std::filesystem::path path = folder / name;
        std::filesystem::create_directory(path);
        std::filesystem::permissions(path, std::filesystem::perms::owner_all);
        environment.emplace_back(variable, QByteArray::fromStdString(path.string()));
    };
    environment.emplace_back("HOME", QByteArray::fromStdString(folder.path().string()));
    folderFor("XDG_CACHE_HOME", "cache");
    folderFor("XDG_CONFIG_HOME", "config");
    folderFor("XDG_DATA_HOME", "data");
    folderFor("XDG_RUNTIME_DIR", "run");
    folderFor("XDG_STATE_HOME", "state");
    environment.emplace_back("DBUS_SESSION_BUS_ADDRESS",
                             "unix:path=" + QByteArray::fromStdString((folder / "bus").string()));
    for (const char* absent : {"DISPLAY", "GNOME_KEYRING_CONTROL", "SSH_AUTH_SOCK", "WAYLAND_DISPLAY"}) {
        environment.emplace_back(absent, std::nullopt);
    }
}

std::vector<std::string> commandIn(const ScratchFolder& folder, std::deque<ScopedVariable>& environment,
                                   PrivateBus::Activation activation, PrivateBus::Users users)
{
    enter(environment, folder);
    if (users == PrivateBus::Users::all) {
        using std::filesystem::perms;
        std::filesystem::permissions(folder.path(),
                                     perms::owner_all | perms::group_exec | perms::others_exec);
    }
    const std::filesystem::path configuration = folder / "bus.conf";
    putBytes(configuration, configurationOf(folder, activation, users));
    return {"dbus-daemon", "--nofork", "--nopidfile", "--print-address=1",
            "--config-file=" + configuration.string()};
}

/// Qt keeps connections by name, for the whole process.
QString freshName()
{
    static int count = 0;
    return QStringLiteral("private bus %1").arg(++count);
}

} // namespace

PrivateBus::PrivateBus(Activation activation, Users users)
    : command_(commandIn(folder_, environment_, activation, users)),
      connection_(QString{})
{
    start();
}

void PrivateBus::startAgain()
{
    QDBusConnection::disconnectFromBus(connection_.name());
    start();
}

void PrivateBus::start()
{
    daemon_ = std::make_unique<GuardedProcess>(command_);
    address_ = QString::fromStdString(daemon_->line());
    connection_ = QDBusConnection::connectToBus(address_, freshName());
    if (!connection_.isConnected()) {
        throw std::runtime_error("no private bus: " + connection_.lastError().message().toStdString());
    }
}

PrivateBus::~PrivateBus() { QDBusConnection::disconnectFromBus(connection_.name()); }

void PrivateBus::awaitName(const QString& name, bool isThere) const
{
    poll("the name on the bus", [&] { return hasName(name) == isThere; });
}

bool PrivateBus::hasName(const QString& name) const
{
    return connection_.interface()->isServiceRegistered(name).value();
}

void PrivateBus::stopService(const QString& name) const
{
    const QDBusReply<uint> pid = connection_.interface()->servicePid(name);
    if (!pid.isValid() || pid.value() == 0) {
        throw std::runtime_error("nobody has " + name.toStdString());
    }
    ::kill(static_cast<pid_t>(pid.value()), SIGKILL);
    awaitName(name, false);
}

} // namespace roost::test
