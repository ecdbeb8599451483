#pragma once

#include <QJsonObject>
#include <QString>
#include <QStringView>

#include <expected>
#include <optional>

namespace roost {

/// What a build says of itself: the address of the service, the name of the shared folder, its version, the
/// update keys. The values are settled when the build is configured; a file may stand in for them in
/// development. A plain value; any thread.
class InfoDictionary {
public:
    /// The values that this build was configured with.
    static InfoDictionary builtIn();

    /// The JSON object in the file at `path`, in place of the built-in values, not merged with them. The
    /// error is one sentence for the user that names the file.
    static std::expected<InfoDictionary, QString> fromFile(const QString& path);

    explicit InfoDictionary(QJsonObject values);

    /// The value of `key` when it is a text; a text that holds "$(", a build variable that nobody filled in,
    /// counts as unset.
    std::optional<QString> string(QStringView key) const;

    /// The value of `key`, a number; nothing when it is unset. The error is one sentence for the user, about
    /// anything but a whole number from `lowest` to `highest`.
    std::expected<std::optional<int>, QString> wholeNumber(QStringView key, int lowest, int highest) const;

    /// "CFBundleShortVersionString", for people to read; "0" when unset.
    QString version() const;

private:
    QJsonObject values_;
};

} // namespace roost
