#pragma once

#include "programs/roost-service/ServiceState.h"

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <expected>

namespace roost::local {

/// The part of the run-time control that is about the authorization server. Main thread.
class OAuthControl {
public:
    explicit OAuthControl(ServiceState& state) : state_(state) {}

    /// Whether `perform` knows the path.
    static bool owns(const QByteArray& path);

    /// "/fault" {"kind", "times"}: a fault for all requests or so many; {"kind":"none"} ends them all.
    /// "/consent" {"auto": "allow", "deny" or "off", "profile"}.
    /// "/lifetimes" {"access", "refresh", "code"}: seconds, of what is issued from now on.
    /// "/revoke" {"profile"}: the grants of one profile, or all.
    /// "/expire" {"tokens": "access" or "refresh"}: all that are out now.
    /// "/forget-clients" {}.
    /// The error is one sentence.
    std::expected<void, QString> perform(const QByteArray& path, const QJsonObject& json);

    /// What the state tells of clients, grants, consent, lifetimes and faults: counts and switches, no
    /// secrets.
    QJsonObject toJson() const;

private:
    using Done = std::expected<void, QString>;

    Done setFault(const QJsonObject& json);
    Done setConsent(const QJsonObject& json);
    Done setLifetimes(const QJsonObject& json);
    Done revoke(const QJsonObject& json);
    Done expire(const QJsonObject& json);
    Done forgetClients(const QJsonObject& json);

    ServiceState& state_;
};

} // namespace roost::local
