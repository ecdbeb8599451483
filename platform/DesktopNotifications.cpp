#include "platform/DesktopNotifications.h"

#include "bus/BusCall.h"
#include "bus/RoostBus.h"

#include <algorithm>
#include <utility>

namespace roost {

namespace {

const QString service = QStringLiteral("org.freedesktop.Notifications");
const QString path = QStringLiteral("/org/freedesktop/Notifications");
const QString busService = QStringLiteral("org.freedesktop.DBus");

// Capabilities and hints beyond the standard, each one name for both.
const QString stackTag = QStringLiteral("x-dunst-stack-tag");
const QString append = QStringLiteral("x-canonical-append");

/// More than any server keeps; those with the lowest numbers, the oldest, are forgotten first.
constexpr std::size_t mostShown = 1'000;

QDBusMessage callOf(const QString& method, const QString& to)
{
    return QDBusMessage::createMethodCall(to, path, service, method);
}

std::chrono::milliseconds left(const QDeadlineTimer& deadline)
{
    return std::chrono::milliseconds{std::max<qint64>(deadline.remainingTime(), 1)};
}

/// `text` without what servers stumble over: on the bus a text ends at its first NUL, and one with markup is
/// read as XML, which has no control characters but these.
QString textOf(const std::string& text)
{
    QString clean = QString::fromStdString(text);
    clean.removeIf([](QChar c) {
        const bool isControl = c < QChar::Space && c != u'\t' && c != u'\n' && c != u'\r';
        return isControl || c.unicode() >= 0xfffe;
    });
    return clean;
}

/// Whether the bus says that it has nobody of that name; one bus says it so, another so.
bool saysNobodyIsThere(const QDBusMessage& answer)
{
    return answer.errorName() == QLatin1String("org.freedesktop.DBus.Error.ServiceUnknown") ||
           answer.errorName() == QLatin1String("org.freedesktop.DBus.Error.NameHasNoOwner");
}

} // namespace

DesktopNotifications::DesktopNotifications(QString addresses, std::function<QString()> openLabel)
    : addresses_{std::move(addresses)},
      openLabel_{std::move(openLabel)}
{
}

DesktopNotifications::~DesktopNotifications() { listen(Listening::ends); }

QCoro::Task<NotificationCenter::Authorization>
DesktopNotifications::authorization(std::chrono::milliseconds limit)
{
    auto reaching = reachServer(QDeadlineTimer{limit});
    co_return (co_await reaching) ? Authorization::authorized : Authorization::denied;
}

QCoro::Task<NotificationCenter::Authorization>
DesktopNotifications::requestAuthorization(std::chrono::milliseconds limit)
{
    return authorization(limit);
}

QCoro::Task<bool> DesktopNotifications::add(Request request, std::chrono::milliseconds limit)
{
    const QDeadlineTimer deadline{limit};
    for (bool isSecondTry = false;; isSecondTry = true) {
        auto reaching = reachServer(deadline);
        if (!co_await reaching) {
            co_return false;
        }
        const QString server = server_;
        auto calling = callOnBus(bus_->get(), notifyCall(request), left(deadline));
        const QDBusMessage answer = co_await calling;
        if (answer.type() == QDBusMessage::ReplyMessage) {
            // When another server has come since then, it does not know this one's numbers.
            if (server_ == server) {
                keep(answer.arguments().value(0).toUInt(), std::move(request));
            }
            co_return true;
        }
        // One that left while it told what it can do was not known yet when the bus told of its leaving.
        if (server_ == server && saysNobodyIsThere(answer)) {
            forgetServer();
        }
        // A server that has left may have a successor.
        if (isSecondTry || server_ == server) {
            co_return false;
        }
    }
}

QCoro::Task<bool> DesktopNotifications::reachServer(QDeadlineTimer deadline)
{
    if (!bus_ || !bus_->get().isConnected()) {
        auto opening = BusConnection::open(addresses_, left(deadline));
        std::shared_ptr<BusConnection> opened = co_await opening;
        // Another task may have been quicker.
        if (opened && (!bus_ || !bus_->get().isConnected())) {
            attach(std::move(opened));
        }
    }
    if (!bus_ || !bus_->get().isConnected()) {
        co_return false;
    }
    if (!capabilities_) {
        auto asking = callOnBus(bus_->get(), callOf(QStringLiteral("GetCapabilities"), service),
                                left(deadline), {}, Starting::service);
        const QDBusMessage answer = co_await asking;
        if (answer.type() != QDBusMessage::ReplyMessage) {
            co_return false;
        }
        server_ = answer.service();
        capabilities_ = answer.arguments().value(0).toStringList();
    }
    co_return true;
}

void DesktopNotifications::attach(std::shared_ptr<BusConnection> bus)
{
    listen(Listening::ends);
    forgetServer();
    bus_ = std::move(bus);
    listen(Listening::begins);
}

/// Before the connection closes it stops: the bus library closes on a thread of its own, and looks there at
/// whoever listens still, who may be gone by then.
void DesktopNotifications::listen(Listening listening)
{
    if (!bus_) {
        return;
    }
    QDBusConnection connection = bus_->get();
    const auto set = [&](const QString& from, const QString& at, const QString& interface,
                         const QString& signal, const QStringList& arguments, const QString& signature,
                         const char* slot) {
        if (listening == Listening::begins) {
            connection.connect(from, at, interface, signal, arguments, signature, this, slot);
        } else {
            connection.disconnect(from, at, interface, signal, arguments, signature, this, slot);
        }
    };
    // By the name of the interface alone: for the name of a service the bus library asks its owner and waits.
    set({}, path, service, QStringLiteral("ActionInvoked"), {}, {},
        SLOT(invoke(uint, QString, QDBusMessage)));
    set({}, path, service, QStringLiteral("NotificationClosed"), {}, {},
        SLOT(close(uint, uint, QDBusMessage)));
    set(busService, QStringLiteral("/org/freedesktop/DBus"), busService, QStringLiteral("NameOwnerChanged"),
        {service}, QStringLiteral("sss"), SLOT(changeOwner(QString, QString, QString)));
}

void DesktopNotifications::forgetServer()
{
    server_.clear();
    capabilities_.reset();
    shown_.clear();
}

QDBusMessage DesktopNotifications::notifyCall(const Request& request) const
{
    const auto open = std::ranges::find_if(shown_, [&](const auto& each) {
        return each.second.isOpen && each.second.identifier == request.identifier;
    });
    const uint replaces = open == shown_.end() ? 0 : open->first;
    const QString body = textOf(request.body);
    QStringList actions;
    if (!request.userInfo.empty() && capabilities_->contains(QLatin1String("actions"))) {
        const QString label = openLabel_();
        actions = {QStringLiteral("default"), label, QStringLiteral("open"), label};
    }
    QVariantMap hints{{QStringLiteral("category"), textOf(request.threadIdentifier)},
                      {QStringLiteral("desktop-entry"), RoostBus::name},
                      {QStringLiteral("sound-name"), QStringLiteral("message-new-instant")}};
    // Replaces what has the same tag, also where an earlier process has shown it. The thread would be the
    // wrong tag: of two posts that failed at once only one would ever be seen.
    if (capabilities_->contains(stackTag)) {
        hints.insert(stackTag, textOf(request.identifier));
    }
    // Adds the body to those that stand under the same title.
    if (capabilities_->contains(append)) {
        hints.insert(append, QStringLiteral("allowed"));
    }
    // To this very server: another one may know other numbers and read texts otherwise.
    QDBusMessage call = callOf(QStringLiteral("Notify"), server_);
    call.setArguments({QStringLiteral("Brisken Roost"), replaces, QString{}, textOf(request.title),
                       capabilities_->contains(QLatin1String("body-markup")) ? body.toHtmlEscaped() : body,
                       actions, hints, -1});
    return call;
}

void DesktopNotifications::keep(std::uint32_t id, Request request)
{
    for (auto& [other, shown] : shown_) {
        shown.isOpen = shown.isOpen && shown.identifier != request.identifier;
    }
    shown_.insert_or_assign(id, Shown{std::move(request.identifier), std::move(request.userInfo)});
    if (shown_.size() > mostShown) {
        shown_.erase(shown_.begin());
    }
}

void DesktopNotifications::invoke(uint id, const QString& action, const QDBusMessage& message)
{
    const auto found = shown_.find(id);
    const bool isOurs = message.service() == server_ && found != shown_.end();
    if (!isOurs || (action != QLatin1String("default") && action != QLatin1String("open")) ||
        delegate_ == nullptr) {
        return;
    }
    delegate_->userOpened(found->second.userInfo);
}

void DesktopNotifications::close(uint id, uint /*reason*/, const QDBusMessage& message)
{
    // It can still be opened, whatever the reason: servers keep lists of what is over.
    const auto found = shown_.find(id);
    if (message.service() == server_ && found != shown_.end()) {
        found->second.isOpen = false;
    }
}

void DesktopNotifications::changeOwner(const QString& /*name*/, const QString& /*before*/, const QString& now)
{
    if (now != server_) {
        forgetServer();
    }
}

} // namespace roost
