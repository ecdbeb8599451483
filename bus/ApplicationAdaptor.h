#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>

#include <functional>

namespace roost {

/// The interface org.freedesktop.Application of the object that it is a child of (Desktop Entry
/// Specification, "D-Bus Activation"). Main thread.
class ApplicationAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    /// Whether somebody was waiting for one of these addresses. They come from any process of this user:
    /// nothing about them is certain but their number and length.
    using Opened = std::function<bool(const QStringList&)>;

    /// More addresses in one call are not even looked at, nor are any when one is longer than
    /// `longestCallback`.
    static constexpr qsizetype mostAddresses = 16;

    ApplicationAdaptor(QDBusConnection connection, Opened opened, QObject* parent);

public Q_SLOTS: // NOLINT: called by the bus
    /// There is no window to show.
    void Activate(const QVariantMap& platformData);

    /// Answers with the error `RoostBus::notAwaited` when nobody was waiting, so that the caller can try
    /// another way.
    void Open(const QStringList& uris, const QVariantMap& platformData, const QDBusMessage& message);

    /// There are no actions.
    void ActivateAction(const QString& name, const QVariantList& parameters, const QVariantMap& platformData);

private:
    QDBusConnection connection_;
    Opened opened_;
};

} // namespace roost
