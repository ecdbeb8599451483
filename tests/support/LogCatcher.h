#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QtGlobal>

#include <iosfwd>

namespace roost::test {

/// Catches every Qt log line of the process, of all threads, as long as it lives; nothing is printed
/// meanwhile. One at a time.
class LogCatcher {
public:
    struct Line {
        QtMsgType level;
        QByteArray category;
        QString message;

        bool operator==(const Line&) const = default;
    };

    LogCatcher();
    ~LogCatcher();

    LogCatcher(const LogCatcher&) = delete;
    LogCatcher& operator=(const LogCatcher&) = delete;

    /// What was logged so far, in order.
    QList<Line> lines() const;

    /// The messages of one category.
    QList<QString> messages(QByteArrayView category) const;

    /// Whether `text` stands in any line.
    bool saw(QStringView text) const;

private:
    QtMessageHandler previous_;
};

/// For the messages of failed tests.
void PrintTo(const LogCatcher::Line& line, std::ostream* out);

} // namespace roost::test
