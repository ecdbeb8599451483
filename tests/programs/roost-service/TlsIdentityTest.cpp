#include "service/NetworkHttpSession.h"
#include "tests/programs/roost-service/ServiceUnderTest.h"
#include "tests/support/Await.h"
#include "tests/support/ScratchFolder.h"
#include "tests/support/TestCertificate.h"

#include <gmock/gmock.h>

namespace roost::local {
namespace {

using namespace Qt::StringLiterals;
using roost::test::await;
using roost::test::putBytes;
using roost::test::ScopedTrust;
using roost::test::ScratchFolder;
using roost::test::TestCertificate;
using testing::EndsWith;
using testing::StartsWith;

class ServiceOverTls : public test::ServiceUnderTest {
protected:
    void SetUp() override
    {
        putBytes(folder_ / "certificate.pem", made_.certificate.toPem().toStdString());
        putBytes(folder_ / "key.pem", made_.key.toPem().toStdString());
        ServiceOptions options;
        options.certificateFile = nameOf("certificate.pem");
        options.keyFile = nameOf("key.pem");
        start(options);
    }

    QString nameOf(const char* file) const { return QString::fromStdString((folder_ / file).string()); }

    HttpResult fetchedWidget()
    {
        HttpRequest request;
        request.url = QUrl(QString::fromLatin1(service_->base()) + u"/api/roost/v1/widget"_s);
        request.headers = {
            {"Authorization", "Bearer " + QByteArray::fromStdString(service_->standingToken(profileId()))}};
        NetworkHttpSession session;
        return await(session.send(std::move(request), {}));
    }

    ScratchFolder folder_;
    TestCertificate made_ = TestCertificate::make(u"DNS:localhost"_s);
};

TEST_F(ServiceOverTls, AnswersWhoTrustsItsCertificate)
{
    EXPECT_THAT(service_->base().toStdString(), StartsWith("https://localhost:"));
    const ScopedTrust trust(made_.certificate);
    const HttpResult answer = fetchedWidget();
    ASSERT_TRUE(answer);
    EXPECT_EQ(answer->status, 200);
    EXPECT_EQ(state().value(u"requests"_s).toObject().value(u"widget"_s).toInt(), 1);
}

TEST_F(ServiceOverTls, AnswersNobodyWhoDoesNot)
{
    EXPECT_FALSE(fetchedWidget());
    EXPECT_EQ(state().value(u"requests"_s).toObject().value(u"widget"_s).toInt(), 0);
}

TEST_F(ServiceOverTls, NamesTheFileThatHoldsNoCertificateOrKey)
{
    ServiceOptions options;
    options.certificateFile = nameOf("key.pem");
    options.keyFile = nameOf("certificate.pem");
    const auto complaint = [&options] {
        const auto started = LocalService(options, systemClock(), systemRandomBytes()).start();
        return started ? std::string() : started.error().toStdString();
    };
    EXPECT_THAT(complaint(), EndsWith("/key.pem\""));
    options.certificateFile = options.keyFile;
    EXPECT_THAT(complaint(), EndsWith("/certificate.pem\""));
    EXPECT_THAT(complaint(), StartsWith("there is no EC or RSA key"));
}

} // namespace
} // namespace roost::local
