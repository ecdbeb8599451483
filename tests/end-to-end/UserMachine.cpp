#include "tests/end-to-end/UserMachine.h"

#include "service/NetworkHttpSession.h"
#include "tests/platform/PollUntil.h"
#include "tests/support/Await.h"
#include "tests/support/ConsentingBrowser.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <stdexcept>

namespace roost::test {

namespace {

using namespace Qt::StringLiterals;

/// The attributes of what the program keeps for the service at `base`, which is not its own.
QMap<QString, QString> keptFor(const QByteArray& base)
{
    return {{u"service"_s, u"world.brisken.roost.mac at "_s + QString::fromLatin1(base)}};
}

} // namespace

UserMachine::UserMachine()
    : service({.profiles = 3}, systemClock(), secrets.overheard(local::systemRandomBytes()))
{
    // What a desktop on which the tests run has to say about opening addresses.
    for (const char* variable : {"BROWSER", "DESKTOP_SESSION", "GNOME_DESKTOP_SESSION_ID", "KDE_FULL_SESSION",
                                 "XDG_CURRENT_DESKTOP", "XDG_DATA_DIRS", "XDG_CONFIG_DIRS"}) {
        desktop_.emplace_back(variable, std::nullopt);
    }
    environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, u":999"_s);
    keyring.startUnlocked();
    if (const auto started = service.start(); !started) {
        throw std::runtime_error(started.error().toStdString());
    }
    service.watch([this](const local::Request& request) { secrets.note(request); });

    const std::string address = (folder_ / "address").string();
    const std::filesystem::path browser = script(
        "browser", "printf '%s' \"$1\" >'" + address + ".new' && mv '" + address + ".new' '" + address + "'");
    std::filesystem::create_directory(bus.dataHome() / "applications");
    putBytes(bus.dataHome() / "applications" / "browser.desktop",
             "[Desktop Entry]\nType=Application\nName=Browser\nExec=" + browser.string() +
                 " %u\nMimeType=x-scheme-handler/http;\n");
    putBytes(bus.home() / "config" / "mimeapps.list",
             "[Default Applications]\nx-scheme-handler/http=browser.desktop\n");
}

QProcessEnvironment UserMachine::withoutDisplay() const
{
    QProcessEnvironment without = environment;
    without.remove(u"DISPLAY"_s);
    return without;
}

std::unique_ptr<ProgramRun> UserMachine::start(const QString& command, const QProcessEnvironment& with) const
{
    return std::make_unique<ProgramRun>(
        command.split(u' ') + QStringList{u"--base-url"_s, QString::fromLatin1(service.base())}, with);
}

void UserMachine::signIn(const std::string& profile)
{
    service.setConsent({local::Consent::Answer::allow, profile});
    const auto program = start(u"sign-in"_s, withoutDisplay());
    NetworkHttpSession network;
    ConsentingBrowser browser{network};
    program->enter(*await(browser.authenticate(*WebURL::parse(program->addressToOpen()), {}, {})));
    const Finished signedIn = program->end();
    if (signedIn.code != 0) {
        throw std::runtime_error("nobody signed in: " + signedIn.error);
    }
}

QJsonObject UserMachine::status() const
{
    const Finished finished = ProgramRun{{u"status"_s, u"--format"_s, u"json"_s}, environment}.end();
    return QJsonDocument::fromJson(QByteArray::fromStdString(finished.output))[u"accounts"_s][0].toObject();
}

std::string UserMachine::addressForTheBrowser() const
{
    const std::filesystem::path file = folder_ / "address";
    if (!pollUntil([&] { return std::filesystem::exists(file); }, browserGuard)) {
        throw std::runtime_error("the browser was not started");
    }
    std::string address = bytesOf(file);
    std::filesystem::remove(file);
    return address;
}

qsizetype UserMachine::keptTokens(const std::string& profile) const
{
    QMap<QString, QString> attributes = keptFor(service.base());
    attributes.insert(u"account"_s, u"refresh-token|"_s + QString::fromStdString(profile));
    return keyring.itemsWith(attributes).unlocked;
}

qsizetype UserMachine::keptItems() const { return keyring.itemsWith(keptFor(service.base())).unlocked; }

std::filesystem::path UserMachine::script(const std::string& name, const std::string& text) const
{
    const std::filesystem::path file = folder_ / name;
    putBytes(file, "#!/bin/sh\n" + text + "\n");
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
    return file;
}

} // namespace roost::test
