#pragma once

#include "programs/roost-service/HttpValues.h"

#include <QObject>

class QTcpSocket;

namespace roost::local {

/// Sends one reply over one connection in the way that its delivery asks for, and then closes it. Belongs to
/// the connection and dies with it. Main thread.
class AnswerWriter final : public QObject {
public:
    /// Begins at once. One writer per connection.
    AnswerWriter(QTcpSocket& socket, Reply reply);

private:
    void carryOut();
    void send();
    void drip();
    void reset();

    QTcpSocket& socket_;
    Reply reply_;
    QByteArray bytes_;
    /// How much of `bytes_` goes out at once, before any dripping.
    qsizetype headBytes_ = 0;
    qsizetype sent_ = 0;
};

} // namespace roost::local
