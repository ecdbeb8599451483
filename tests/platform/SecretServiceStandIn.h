#pragma once

#include "tests/support/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QStringList>

#include <functional>

namespace roost::test {

/// A Secret Service whose user is the test: its one collection is locked or missing, and each question waits
/// until the test answers it. For what a keyring without a display cannot show, and
/// for what happens between two calls. Holds no items, and makes none without a question. Main thread, served
/// while the event loop runs.
class SecretServiceStandIn : public QDBusVirtualObject {
public:
    enum class Collection { missing, locked, open };

    /// Whether it has the name of the Secret Service from the beginning.
    enum class Name { taken, left };

    SecretServiceStandIn(const PrivateBus& bus, Collection collection, Name name = Name::taken);
    ~SecretServiceStandIn() override;

    /// The paths of the questions that are on the screen now.
    const QStringList& questions() const { return questions_; }

    /// How many questions were put so far, and how many were taken back.
    int putCount() const { return putCount_; }
    int dismissCount() const { return dismissCount_; }

    /// The user answers the first question: with the password, or by closing it.
    void answerWithPassword();
    void close();

    void lock() { collection_ = Collection::locked; }

    void takeName();
    void leaveName();
    void leaveBus();

    /// Calls `then` as soon as `member` has been answered, and before anything else is. Once.
    void onceAfter(const QString& member, std::function<void()> then);

    QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

private:
    QVariantList replyTo(const QDBusMessage& message);
    void complete(bool isDismissed);

    QDBusConnection connection_;
    Collection collection_;
    QString member_;
    std::function<void()> then_;
    QStringList questions_;
    int offeredCount_ = 0;
    int putCount_ = 0;
    int dismissCount_ = 0;
};

} // namespace roost::test
