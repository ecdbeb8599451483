#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>

#include <concepts>
#include <initializer_list>
#include <limits>
#include <optional>

namespace roost::local {

/// Reads the members of a control request, each with the type and range it must have, and remembers the first
/// complaint. Lives as long as one request; `json` must outlive it.
class JsonArguments {
public:
    explicit JsonArguments(const QJsonObject& json) : json_(json) {}

    bool has(QStringView key) const { return json_.contains(key); }

    /// The text under `key`; nothing when it is absent, or when it is no text, which is a complaint.
    std::optional<QString> text(const QString& key);

    /// The whole number under `key`; nothing when it is absent, or when it is none or out of range, which is
    /// a complaint.
    std::optional<qint64> integer(const QString& key, qint64 lowest, qint64 highest);

    std::optional<bool> flag(const QString& key);
    std::optional<QJsonObject> object(const QString& key);

    /// Complains about every member that is none of `keys`.
    void allow(std::initializer_list<QStringView> keys);

    /// Records `sentence` unless there is a complaint already.
    void complain(const QString& sentence);

    /// One sentence, or nothing while all is well.
    const std::optional<QString>& complaint() const { return complaint_; }

private:
    const QJsonObject& json_;
    std::optional<QString> complaint_;
};

} // namespace roost::local
