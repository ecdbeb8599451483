#pragma once

#include "programs/roost-service/HttpValues.h"
#include "programs/roost-service/OAuthControl.h"
#include "programs/roost-service/ServiceState.h"

#include <QJsonObject>
#include <QString>

#include <expected>

namespace roost::local {

/// The run-time control, spoken in JSON on a port of its own: reads the counters, switches scenarios, moves
/// the profiles' time, and what `OAuthControl` does. Requests that a web page makes (they carry "Origin") are
/// refused. Main thread.
class ControlRoutes {
public:
    explicit ControlRoutes(ServiceState& state) : state_(state), oauth_(state) {}

    /// 200 with the new state, or 400, 403, 404, 405 with one sentence under "error".
    Answer answer(const Request& request);

private:
    using Done = std::expected<void, QString>;

    Done perform(const QByteArray& path, const QJsonObject& json);
    Done setScenario(QJsonObject json);
    Done advance(const QJsonObject& json);
    Done reset(const QJsonObject& json);
    QJsonObject stateJson() const;

    ServiceState& state_;
    OAuthControl oauth_;
};

} // namespace roost::local
