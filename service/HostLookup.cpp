#include "service/HostLookup.h"

#include <netdb.h>

#include <QUrl>

#include <memory>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace roost {

namespace {

/// Where the answer goes; both threads hold it.
class Receiver {
public:
    Receiver(QObject* context, std::function<void(const QHostInfo&)> done)
        : context_(context),
          done_(std::move(done))
    {
    }

    void answer(const QHostInfo& info)
    {
        const std::scoped_lock held(mutex_);
        if (context_ != nullptr) {
            QMetaObject::invokeMethod(
                context_, [info, done = std::move(done_)] { done(info); }, Qt::QueuedConnection);
        }
    }

    void forget()
    {
        const std::scoped_lock held(mutex_);
        context_ = nullptr;
        done_ = nullptr;
    }

private:
    std::mutex mutex_;
    QObject* context_;
    std::function<void(const QHostInfo&)> done_;
};

QHostInfo::HostInfoError errorOf(int code)
{
    switch (code) {
    case 0:
        return QHostInfo::NoError;
    case EAI_NONAME:
    case EAI_FAIL:
#ifdef EAI_NODATA
    case EAI_NODATA:
#endif
        return QHostInfo::HostNotFound;
    default:
        return QHostInfo::UnknownError;
    }
}

/// Waits. Asks the C library, since Qt's own would use what may be gone when the program ends meanwhile.
QHostInfo answerFor(const QByteArray& host)
{
    addrinfo wanted{};
    wanted.ai_family = AF_UNSPEC;
    wanted.ai_socktype = SOCK_STREAM;
    wanted.ai_flags = AI_ADDRCONFIG;
    addrinfo* found = nullptr;
    QHostInfo info;
    info.setError(errorOf(::getaddrinfo(host.constData(), nullptr, &wanted, &found)));
    QList<QHostAddress> addresses;
    for (const addrinfo* each = found; each != nullptr; each = each->ai_next) {
        if (const QHostAddress address(each->ai_addr); !address.isNull() && !addresses.contains(address)) {
            addresses.append(address);
        }
    }
    info.setAddresses(addresses);
    if (found != nullptr) {
        ::freeaddrinfo(found);
    }
    return info;
}

} // namespace

void lookUpHost(const QString& host, QObject* context, std::function<void(const QHostInfo&)> done)
{
    const auto receiver = std::make_shared<Receiver>(context, std::move(done));
    QObject::connect(context, &QObject::destroyed, context, [receiver] { receiver->forget(); });
    try {
        std::thread([receiver, name = QUrl::toAce(host)] { receiver->answer(answerFor(name)); }).detach();
    } catch (const std::system_error&) {
        // The machine has no thread left: as with any other failure, the next attempt may do better.
        QHostInfo none;
        none.setError(QHostInfo::UnknownError);
        receiver->answer(none);
    }
}

} // namespace roost
