#pragma once

#include <QString>
#include <QStringList>

#include <chrono>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>

namespace roost::local {

/// What the command line decides. A plain value.
struct ServiceOptions {
    /// 0: a free one.
    quint16 port = 0;
    quint16 controlPort = 0;
    /// PEM files: with both, the service speaks TLS and shows this certificate; its control never does.
    /// Either both or none are there.
    QString certificateFile{};
    QString keyFile{};
    /// Settles the numbers, and all tokens. Without one the numbers are those of seed 1 and the tokens are
    /// random.
    std::optional<std::uint64_t> seed = std::nullopt;
    /// From 1 to 10,000.
    int profiles = 3;
    /// Answers authorization requests at once, as a user who allows them would.
    bool autoConsent = false;
    /// The profile that is allowed then; nothing: as `Consent` has it.
    std::optional<std::string> autoConsentProfile = std::nullopt;
    std::chrono::seconds accessTokenLifetime{3600};
    std::chrono::seconds refreshTokenLifetime{30 * 86'400};
    std::chrono::seconds codeLifetime{60};
    /// How many times as fast as the clock the profiles live, from 1 to 3,600.
    std::int64_t timeScale = 1;
    bool help = false;
    bool version = false;
};

/// The options in `arguments`, the program's name first. The error is one sentence.
std::expected<ServiceOptions, QString> parseServiceOptions(const QStringList& arguments);

/// The text of "--help".
QString serviceHelp();

} // namespace roost::local
