#include "programs/roost-service/LocalService.h"

#include "programs/roost-service/TlsIdentity.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

constexpr std::uint64_t usualSeed = 1;
constexpr int tokenBytes = 24;

Consent consentIn(const ServiceOptions& options)
{
    return {options.autoConsent ? Consent::Answer::allow : Consent::Answer::byUser,
            options.autoConsentProfile};
}

QByteArray originOf(quint16 port) { return "http://127.0.0.1:" + QByteArray::number(port); }

/// By name, as people have a service certified.
QByteArray secureOriginOf(quint16 port) { return "https://localhost:" + QByteArray::number(port); }

} // namespace

LocalService::LocalService(ServiceOptions options, Clock clock, RandomBytes random)
    : options_(options),
      random_(std::move(random)),
      state_(std::move(clock), [this](int count) { return random_(count); }, consentIn(options_),
             {options_.accessTokenLifetime, options_.refreshTokenLifetime, options_.codeLifetime}),
      controlRoutes_(state_),
      server_([this](const Request& request) {
          watcher_(request);
          return routes_->reply(request);
      }),
      controlServer_([this](const Request& request) {
          return Reply{[this, request] { return controlRoutes_.answer(request); }, {}, nullptr};
      })
{
}

LocalService::~LocalService() = default;

std::expected<void, QString> LocalService::start()
{
    if (!options_.certificateFile.isEmpty()) {
        auto identity = tlsIdentity(options_.certificateFile, options_.keyFile);
        if (!identity) {
            return std::unexpected(identity.error());
        }
        server_.encrypt(*std::move(identity));
    }
    const auto port = server_.listen(options_.port);
    if (!port) {
        return std::unexpected(port.error());
    }
    const auto controlPort = controlServer_.listen(options_.controlPort);
    if (!controlPort) {
        return std::unexpected(controlPort.error());
    }
    base_ = options_.certificateFile.isEmpty() ? originOf(*port) : secureOriginOf(*port);
    control_ = originOf(*controlPort);

    const LifePace pace{state_.clock(), options_.timeScale};
    for (int i = 0; i < options_.profiles; ++i) {
        state_.profiles.emplace_back(options_.seed.value_or(usualSeed), static_cast<std::size_t>(i), pace,
                                     base_.toStdString());
        state_.standingTokens.push_back(randomText(random_, tokenBytes).toStdString());
    }
    if (options_.autoConsentProfile && state_.profile(*options_.autoConsentProfile) == nullptr) {
        return std::unexpected(
            u"there is no profile \"%1\""_s.arg(QString::fromStdString(*options_.autoConsentProfile)));
    }
    routes_ = std::make_unique<ServiceRoutes>(
        state_, [this](const std::string& token) { return accessOf(token); },
        [this](int count) { return random_(count); }, base_);
    return {};
}

std::optional<Access> LocalService::accessOf(const std::string& token) const
{
    for (std::size_t i = 0; i < state_.profiles.size(); ++i) {
        if (state_.standingTokens[i] == token) {
            return Access{state_.profiles[i].id(), true};
        }
    }
    const auto allowed = state_.authorization.allowedBy(QByteArray::fromStdString(token));
    return allowed ? std::optional(Access{allowed->profile, allowed->scopes.contains("metrics:read")})
                   : std::nullopt;
}

std::string LocalService::standingToken(const std::string& profile) const
{
    for (std::size_t i = 0; i < state_.profiles.size(); ++i) {
        if (state_.profiles[i].id() == profile) {
            return state_.standingTokens[i];
        }
    }
    return {};
}

QByteArray LocalService::readyLine() const
{
    QJsonObject tokens;
    for (std::size_t i = 0; i < state_.profiles.size(); ++i) {
        tokens.insert(QString::fromStdString(state_.profiles[i].id()),
                      QString::fromStdString(state_.standingTokens[i]));
    }
    return QJsonDocument(QJsonObject{{u"base"_s, QString::fromLatin1(base_)},
                                     {u"control"_s, QString::fromLatin1(control_)},
                                     {u"tokens"_s, tokens}})
        .toJson(QJsonDocument::Compact);
}

} // namespace roost::local
