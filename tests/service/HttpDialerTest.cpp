#include "service/HttpDialer.h"

#include "tests/support/DeafPort.h"
#include "tests/support/LoopbackServer.h"
#include "tests/support/RunUntil.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>
#include <QSslSocket>

namespace roost::test {

namespace {

const QHostAddress good(QStringLiteral("127.0.0.1"));
/// Nobody listens there.
const QHostAddress refusing(QStringLiteral("127.0.0.3"));

struct Dialed {
    std::unique_ptr<QTcpSocket> socket;
    int code = 0;
};

Dialed dial(HttpRoute route, HttpDialer::Security security = HttpDialer::Security::none)
{
    std::optional<Dialed> dialed;
    const HttpDialer dialer(
        std::move(route), security,
        [&](std::unique_ptr<QTcpSocket> socket, int code) {
            EXPECT_FALSE(dialed.has_value());
            dialed = Dialed{std::move(socket), code};
        },
        nullptr);
    EXPECT_FALSE(dialed.has_value());
    EXPECT_TRUE(runUntil([&] { return dialed.has_value(); }));
    return *std::move(dialed);
}

HttpRoute route(quint16 port, const QList<QHostAddress>& addresses)
{
    HttpRoute made;
    made.host = QStringLiteral("roost.invalid");
    made.port = port;
    made.addresses = addresses;
    return made;
}

} // namespace

TEST(HttpDialer, ConnectsToAnAddress)
{
    const LoopbackServer server;

    const Dialed dialed = dial(route(server.port(), {good}));

    ASSERT_NE(dialed.socket, nullptr);
    EXPECT_EQ(dialed.socket->state(), QAbstractSocket::ConnectedState);
    EXPECT_EQ(qobject_cast<QSslSocket*>(dialed.socket.get()), nullptr);
}

TEST(HttpDialer, LooksANameUp)
{
    const LoopbackServer server;
    HttpRoute toName = route(server.port(), {});
    toName.host = QStringLiteral("localhost");

    EXPECT_NE(dial(toName).socket, nullptr);
}

TEST(HttpDialer, GivesASecureSocketThatIsNotYetEncrypted)
{
    const LoopbackServer server;

    const Dialed dialed = dial(route(server.port(), {good}), HttpDialer::Security::tls);

    const auto* secure = qobject_cast<QSslSocket*>(dialed.socket.get());
    ASSERT_NE(secure, nullptr);
    EXPECT_FALSE(secure->isEncrypted());
}

TEST(HttpDialer, GoesToTheNextAddressWhenOneRefuses)
{
    const LoopbackServer server;

    const Dialed dialed = dial(route(server.port(), {refusing, refusing, good}));

    ASSERT_NE(dialed.socket, nullptr);
    EXPECT_EQ(dialed.socket->peerAddress(), good);
}

TEST(HttpDialer, DoesNotWaitForAnAddressThatIsDeaf)
{
    const LoopbackServer server;
    const DeafPort deaf(server.port());

    const Dialed dialed = dial(route(server.port(), {DeafPort::address(), good}));

    ASSERT_NE(dialed.socket, nullptr);
    EXPECT_EQ(dialed.socket->peerAddress(), good);
}

TEST(HttpDialer, GivesTheCodeOfTheFirstAddressWhenAllFail)
{
    quint16 port = 0;
    {
        const LoopbackServer gone;
        port = gone.port();
    }

    const Dialed dialed = dial(route(port, {good, refusing}));

    EXPECT_EQ(dialed.socket, nullptr);
    EXPECT_EQ(dialed.code, -1004);
}

TEST(HttpDialer, GivesUpSilentlyWhenItIsDeleted)
{
    const LoopbackServer server;
    bool called = false;
    {
        const HttpDialer dialer(
            route(server.port(), {good}), HttpDialer::Security::none, [&](auto, int) { called = true; },
            nullptr);
    }

    EXPECT_FALSE(runUntil([&] { return called; }, std::chrono::milliseconds(50)));
}

TEST(HttpDialer, TakesTheFamiliesInTurns)
{
    const QHostAddress four1(QStringLiteral("192.0.2.1"));
    const QHostAddress four2(QStringLiteral("192.0.2.2"));
    const QHostAddress six1(QStringLiteral("2001:db8::1"));
    const QHostAddress six2(QStringLiteral("2001:db8::2"));
    const QHostAddress six3(QStringLiteral("2001:db8::3"));

    EXPECT_EQ(inTurns({six1, six2, six3, four1, four2}),
              (QList<QHostAddress>{six1, four1, six2, four2, six3}));
    EXPECT_EQ(inTurns({four1, six1}), (QList<QHostAddress>{four1, six1}));
    EXPECT_EQ(inTurns({}), QList<QHostAddress>{});
}

} // namespace roost::test
