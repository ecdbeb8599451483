#include "tests/programs/roost-service/RawClient.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>
#include <QNetworkInterface>
#include <QProcess>
#include <QTcpSocket>

#include <csignal>

namespace roost::local {
namespace {

using namespace Qt::StringLiterals;
using testing::HasSubstr;
using testing::StartsWith;

constexpr int patience = 20'000;

/// The program itself, in a process of its own.
class RoostServiceProgram : public testing::Test {
protected:
    ~RoostServiceProgram() override
    {
        process_.kill();
        process_.waitForFinished(patience);
    }

    void start(const QStringList& arguments) { process_.start(QStringLiteral(ROOST_SERVICE), arguments); }

    /// The line it prints when it is ready.
    QJsonObject ready()
    {
        while (!process_.canReadLine() && process_.waitForReadyRead(patience)) {
        }
        return QJsonDocument::fromJson(process_.readLine()).object();
    }

    int exitCode()
    {
        EXPECT_TRUE(process_.waitForFinished(patience));
        return process_.exitStatus() == QProcess::NormalExit ? process_.exitCode() : -1;
    }

    QProcess process_;
};

TEST_F(RoostServiceProgram, SaysOnOneLineWhereItIsAndWhatOpensIt)
{
    start({u"--profiles"_s, u"2"_s});
    const QJsonObject line = ready();
    const QByteArray base = line.value(u"base"_s).toString().toLatin1();
    const QJsonObject tokens = line.value(u"tokens"_s).toObject();
    ASSERT_EQ(tokens.size(), 2) << QJsonDocument(line).toJson().toStdString();
    const QByteArray token = tokens.value(u"cafe-morgenrot"_s).toString().toLatin1();
    const test::RawAnswer answer =
        test::ask(base, "GET", "/api/roost/v1/widget", "Authorization: Bearer " + token + "\r\n");
    EXPECT_EQ(answer.status(), 200);
    EXPECT_THAT(answer.body().toStdString(), HasSubstr(R"("id":"cafe-morgenrot")"));
    EXPECT_EQ(test::ask(line.value(u"control"_s).toString().toLatin1(), "GET", "/state").status(), 200);
    EXPECT_EQ(process_.bytesAvailable(), 0);
}

TEST_F(RoostServiceProgram, EndsWhenItsInputCloses)
{
    start({});
    const QByteArray base = ready().value(u"base"_s).toString().toLatin1();
    process_.write("input that is no end\n");
    ASSERT_TRUE(process_.waitForBytesWritten(patience));
    EXPECT_EQ(test::ask(base, "GET", "/roost/overview").status(), 200);
    process_.closeWriteChannel();
    EXPECT_EQ(exitCode(), 0);
}

TEST_F(RoostServiceProgram, EndsOnTheSignalsThatAskForIt)
{
    for (const int signal : {SIGTERM, SIGINT}) {
        start({});
        ASSERT_FALSE(ready().isEmpty());
        ::kill(static_cast<pid_t>(process_.processId()), signal);
        EXPECT_EQ(exitCode(), 0);
    }
}

TEST_F(RoostServiceProgram, CanBeReachedOnTheLoopbackAddressAlone)
{
    start({});
    const quint16 port = test::portOf(ready().value(u"base"_s).toString().toLatin1());
    const auto isReachable = [port](const QHostAddress& address) {
        QTcpSocket socket;
        socket.connectToHost(address, port);
        return socket.waitForConnected(2000);
    };
    EXPECT_TRUE(isReachable(QHostAddress(QHostAddress::LocalHost)));
    EXPECT_FALSE(isReachable(QHostAddress(u"127.0.0.2"_s)));
    for (const QHostAddress& address : QNetworkInterface::allAddresses()) {
        if (!address.isLoopback()) {
            EXPECT_FALSE(isReachable(address)) << address.toString().toStdString();
        }
    }
}

TEST_F(RoostServiceProgram, RepeatsItselfWithASeedAndDoesNotWithout)
{
    const auto tokensWith = [this](const QStringList& arguments) {
        start(arguments);
        const QJsonObject tokens = ready().value(u"tokens"_s).toObject();
        process_.closeWriteChannel();
        EXPECT_EQ(exitCode(), 0);
        return tokens;
    };
    const QJsonObject first = tokensWith({u"--seed"_s, u"5"_s});
    EXPECT_EQ(tokensWith({u"--seed"_s, u"5"_s}), first);
    EXPECT_NE(tokensWith({u"--seed"_s, u"6"_s}), first);
    EXPECT_NE(tokensWith({}), tokensWith({}));
}

TEST_F(RoostServiceProgram, PrintsItsHelpAndVersion)
{
    start({u"--help"_s});
    EXPECT_EQ(exitCode(), 0);
    EXPECT_THAT(process_.readAllStandardOutput().toStdString(), HasSubstr("--time-scale"));
    start({u"--version"_s});
    EXPECT_EQ(exitCode(), 0);
    EXPECT_THAT(process_.readAllStandardOutput().toStdString(), StartsWith("roost-service "));
}

TEST_F(RoostServiceProgram, RefusesAWrongCommandLineWithOneSentence)
{
    start({u"--profiles"_s, u"none"_s});
    EXPECT_EQ(exitCode(), 2);
    EXPECT_EQ(process_.readAllStandardOutput(), "");
    EXPECT_EQ(process_.readAllStandardError(),
              "roost-service: --profiles needs a whole number from 1 to 10000.\n");
}

TEST_F(RoostServiceProgram, FailsWhenItsPortIsTaken)
{
    start({});
    const quint16 port = test::portOf(ready().value(u"base"_s).toString().toLatin1());
    QProcess second;
    second.start(QStringLiteral(ROOST_SERVICE), {u"--port"_s, QString::number(port)});
    EXPECT_TRUE(second.waitForFinished(patience));
    EXPECT_EQ(second.exitCode(), 1);
    EXPECT_THAT(second.readAllStandardError().toStdString(), HasSubstr("cannot listen on 127.0.0.1"));
}

} // namespace
} // namespace roost::local
