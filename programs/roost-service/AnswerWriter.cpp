#include "programs/roost-service/AnswerWriter.h"

#include <sys/socket.h>

#include <QTcpSocket>
#include <QTimer>

namespace roost::local {

AnswerWriter::AnswerWriter(QTcpSocket& socket, Reply reply)
    : QObject(&socket),
      socket_(socket),
      reply_(std::move(reply))
{
    if (reply_.delivery.before.count() > 0) {
        QTimer::singleShot(reply_.delivery.before, Qt::PreciseTimer, this, [this] { carryOut(); });
    } else {
        carryOut();
    }
}

void AnswerWriter::carryOut()
{
    const Delivery& delivery = reply_.delivery;
    if (reply_.carryOut) {
        Answer answer = reply_.carryOut();
        bytes_ = headOf(answer);
        headBytes_ = delivery.dripHead ? 0 : bytes_.size();
        bytes_ += delivery.bodyCutAt ? answer.body.left(*delivery.bodyCutAt) : answer.body;
    }
    if (delivery.verbatim) {
        bytes_ = *delivery.verbatim;
        headBytes_ = 0;
    }
    if (delivery.after.count() > 0) {
        QTimer::singleShot(delivery.after, Qt::PreciseTimer, this, [this] { send(); });
    } else {
        send();
    }
}

void AnswerWriter::send()
{
    const Delivery& delivery = reply_.delivery;
    switch (delivery.ending) {
    case Delivery::Ending::hang:
        return;
    case Delivery::Ending::reset:
        reset();
        return;
    case Delivery::Ending::drop:
        bytes_.clear();
        break;
    case Delivery::Ending::whole:
        if (delivery.dripBytes > 0) {
            sent_ = socket_.write(bytes_.first(headBytes_));
            drip();
            return;
        }
        socket_.write(bytes_);
        break;
    }
    reply_.whileInFlight.reset();
    socket_.disconnectFromHost();
}

void AnswerWriter::drip()
{
    const qsizetype piece = std::min(reply_.delivery.dripBytes, bytes_.size() - sent_);
    sent_ += socket_.write(bytes_.sliced(sent_, piece));
    if (sent_ < bytes_.size()) {
        QTimer::singleShot(reply_.delivery.dripPause, Qt::PreciseTimer, this, [this] { drip(); });
        return;
    }
    reply_.whileInFlight.reset();
    socket_.disconnectFromHost();
}

void AnswerWriter::reset()
{
    // With a linger time of nothing the system answers with RST in place of FIN.
    const linger nothing{1, 0};
    ::setsockopt(static_cast<int>(socket_.socketDescriptor()), SOL_SOCKET, SO_LINGER, &nothing,
                 sizeof nothing);
    reply_.whileInFlight.reset();
    socket_.abort();
}

} // namespace roost::local
