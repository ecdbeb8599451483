#include "service/HttpInflater.h"

#include "tests/support/Gzip.h"

#include <gmock/gmock.h>

namespace roost::test {

namespace {

using Status = HttpInflater::Status;

constexpr qint64 limit = 1'000'000;

QByteArray noise(qsizetype size)
{
    QByteArray bytes;
    for (quint32 state = 1; bytes.size() < size; state = state * 1'664'525 + 1'013'904'223) {
        bytes.append(static_cast<char>(state >> 24U));
    }
    return bytes;
}

} // namespace

TEST(HttpInflater, GivesWhatWasPackedInPiecesOfAnySize)
{
    const QByteArray plain = noise(100'000) + QByteArray(100'000, 'x');
    const QByteArray packed = gzip(plain);
    for (const qsizetype piece : {qsizetype{1}, qsizetype{1000}, packed.size()}) {
        HttpInflater inflater;
        QByteArray out;
        for (qsizetype i = 0; i < packed.size(); i += piece) {
            ASSERT_EQ(inflater.inflate(QByteArrayView(packed).sliced(i, std::min(piece, packed.size() - i)),
                                       limit, out),
                      Status::ok);
            EXPECT_EQ(inflater.isComplete(), i + piece >= packed.size());
        }
        EXPECT_TRUE(out == plain);
    }
}

TEST(HttpInflater, ReadsOneStreamAfterTheOther)
{
    HttpInflater inflater;
    QByteArray out;

    EXPECT_EQ(inflater.inflate(gzip("one, ") + gzip("two, "), limit, out), Status::ok);
    EXPECT_EQ(inflater.inflate(gzip("three"), limit, out), Status::ok);
    EXPECT_EQ(out, "one, two, three");
    EXPECT_TRUE(inflater.isComplete());
    EXPECT_EQ(inflater.inflate("no stream", limit, out), Status::broken);
}

TEST(HttpInflater, IsCompleteBeforeAnythingCame)
{
    HttpInflater inflater;
    QByteArray out;

    EXPECT_TRUE(inflater.isComplete());
    EXPECT_EQ(inflater.inflate("", limit, out), Status::ok);
    EXPECT_TRUE(inflater.isComplete());
    EXPECT_EQ(inflater.inflate("\x1f", limit, out), Status::ok);
    EXPECT_FALSE(inflater.isComplete());
}

TEST(HttpInflater, NeverGivesMoreThanTheLimit)
{
    const QByteArray bomb = gzip(QByteArray(10'000'000, '\0'));
    HttpInflater inflater;
    QByteArray out;

    EXPECT_EQ(inflater.inflate(bomb, limit, out), Status::overLimit);
    EXPECT_LE(out.size(), limit);
}

TEST(HttpInflater, TellsWhatIsBroken)
{
    QByteArray wrong = gzip("hello, hello, hello");
    wrong[wrong.size() - 6] = static_cast<char>(wrong[wrong.size() - 6] + 1);
    for (const QByteArray& bytes : {QByteArray("plain text"), wrong}) {
        HttpInflater inflater;
        QByteArray out;
        EXPECT_EQ(inflater.inflate(bytes, limit, out), Status::broken);
    }
}

} // namespace roost::test
