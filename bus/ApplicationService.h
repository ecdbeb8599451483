#pragma once

#include "bus/ApplicationAdaptor.h"
#include "bus/SessionBus.h"

#include <QCoro/QCoroTask>
#include <QObject>

#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>

namespace roost {

/// The program on the session bus, under its well-known name as long as this object lives: other starts of
/// the program hand over what they were started with. Main thread; outlives its tasks.
class ApplicationService final : public QObject {
    Q_OBJECT

public:
    struct Claim {
        enum class Kind {
            /// The name is ours.
            owned,
            /// Another process, `owner`, has the name. It is neither waited for nor driven out.
            taken,
            /// There is no bus, or none that answers.
            noBus,
        };

        Kind kind = Kind::noBus;
        /// The unique name of who has the name; empty without a bus, and when its owner has just left.
        QString owner;

        bool operator==(const Claim&) const = default;
    };

    /// Puts on the bus whatever others look for behind the name.
    using Furnish = std::function<void(const QDBusConnection&)>;

    /// `addresses` are those of the bus, as `sessionBusAddresses` gives them. `furnish` is called before the
    /// name is asked for: whoever finds the name finds everything.
    ApplicationService(QString addresses, ApplicationAdaptor::Opened opened, Furnish furnish = {});
    ~ApplicationService() override;

    /// Connects, and takes the name when it is free. Once. Every step has the time `timeout`, and ends early
    /// on a stop: then the name may be ours all the same.
    QCoro::Task<Claim> start(std::chrono::milliseconds timeout, std::stop_token stop = {});

    /// The connection that `start` made; null without one.
    const std::shared_ptr<BusConnection>& bus() const { return bus_; }

private:
    QString addresses_;
    ApplicationAdaptor::Opened opened_;
    Furnish furnish_;
    std::shared_ptr<BusConnection> bus_;
};

} // namespace roost
