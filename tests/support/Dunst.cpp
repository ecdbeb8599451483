#include "tests/support/Dunst.h"

#include <QDBusMessage>
#include <QDBusVariant>

#include <algorithm>
#include <stdexcept>

namespace roost::test {

namespace {

const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString interface = QStringLiteral("org.dunstproject.cmd0");

std::string configurationIn(const std::filesystem::path& folder)
{
    const std::filesystem::path file = folder / "dunstrc";
    putBytes(file, "[global]\n markup = full\n origin = top-left\n offset = 0x0\n width = 400\n"
                   " notification_limit = 10\n mouse_left_click = do_action, close_current\n"
                   "[urgency_normal]\n timeout = 0\n");
    return file.string();
}

QVariantList answerOf(const QDBusMessage& answer)
{
    if (answer.type() != QDBusMessage::ReplyMessage) {
        throw std::runtime_error("dunst refuses: " + answer.errorMessage().toStdString());
    }
    return answer.arguments();
}

} // namespace

Dunst::Dunst(const PrivateBus& bus, const PrivateDisplay& display)
    : bus_(bus),
      display_(display),
      process_({"dunst", "-config", configurationIn(bus.home()), "-print"})
{
    bus.awaitName(service, true);
}

std::vector<std::string> Dunst::shown()
{
    std::vector<std::string> lines;
    for (std::string line = process_.line(); !line.empty() && line != "}"; line = process_.line()) {
        lines.push_back(line.substr(std::min(line.find_first_not_of('\t'), line.size())));
    }
    return lines;
}

uint Dunst::count() const
{
    return property(QStringLiteral("displayedLength")) + property(QStringLiteral("waitingLength"));
}

void Dunst::closeAll() const
{
    answerOf(bus_.connection().call(
        QDBusMessage::createMethodCall(service, path, interface, QStringLiteral("NotificationCloseAll"))));
}

uint Dunst::property(const QString& name) const
{
    QDBusMessage call = QDBusMessage::createMethodCall(
        service, path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    call.setArguments({interface, name});
    return answerOf(bus_.connection().call(call)).value(0).value<QDBusVariant>().variant().toUInt();
}

std::string saidOf(const std::string& property, const std::vector<std::string>& lines)
{
    const auto found = std::ranges::find_if(
        lines, [&](const std::string& line) { return line.starts_with(property + ": "); });
    if (found == lines.end()) {
        return {};
    }
    std::string value = found->substr(property.size() + 2);
    const bool isQuoted = value.size() > 1 && value.starts_with('\'') && value.ends_with('\'');
    return isQuoted ? value.substr(1, value.size() - 2) : value;
}

} // namespace roost::test
