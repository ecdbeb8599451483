#include "programs/roost-service/ServiceOptions.h"

#include <gtest/gtest.h>

namespace roost::local {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

std::expected<ServiceOptions, QString> parse(const QStringList& arguments)
{
    return parseServiceOptions(QStringList{u"roost-service"_s} + arguments);
}

std::string complaintAbout(const QStringList& arguments)
{
    const auto options = parse(arguments);
    return options ? "none" : options.error().toStdString();
}

TEST(ServiceOptions, AreModestWithoutArguments)
{
    const auto options = parse({});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->port, 0);
    EXPECT_EQ(options->controlPort, 0);
    EXPECT_FALSE(options->seed);
    EXPECT_EQ(options->profiles, 3);
    EXPECT_FALSE(options->autoConsent);
    EXPECT_EQ(options->accessTokenLifetime, 1h);
    EXPECT_EQ(options->refreshTokenLifetime, 720h);
    EXPECT_EQ(options->codeLifetime, 60s);
    EXPECT_FALSE(options->autoConsentProfile);
    EXPECT_EQ(options->timeScale, 1);
}

TEST(ServiceOptions, AreReadFromTheCommandLine)
{
    const auto options = parse({u"--port"_s, u"8080"_s, u"--control-port=8081"_s, u"--seed"_s, u"7"_s,
                                u"--profiles"_s, u"12"_s, u"--auto-consent"_s, u"--access-ttl"_s, u"2"_s,
                                u"--refresh-ttl"_s, u"0"_s, u"--code-ttl=3"_s, u"--time-scale"_s, u"3600"_s});
    ASSERT_TRUE(options) << options.error().toStdString();
    EXPECT_EQ(options->port, 8080);
    EXPECT_EQ(options->controlPort, 8081);
    EXPECT_EQ(options->seed, 7U);
    EXPECT_EQ(options->profiles, 12);
    EXPECT_TRUE(options->autoConsent);
    EXPECT_EQ(options->accessTokenLifetime, 2s);
    EXPECT_EQ(options->refreshTokenLifetime, 0s);
    EXPECT_EQ(options->codeLifetime, 3s);
    EXPECT_EQ(options->timeScale, 3600);
}

TEST(ServiceOptions, NameACertificateWithItsKey)
{
    const auto options = parse({u"--certificate"_s, u"certificate.pem"_s, u"--key=key.pem"_s});
    ASSERT_TRUE(options);
    EXPECT_EQ(options->certificateFile, u"certificate.pem"_s);
    EXPECT_EQ(options->keyFile, u"key.pem"_s);
    EXPECT_EQ(parse({})->certificateFile, QString());
}

TEST(ServiceOptions, TakeAProfileBehindAutoConsentWhereThereIsOne)
{
    EXPECT_EQ(parse({u"--auto-consent"_s, u"mira"_s, u"--seed=1"_s})->autoConsentProfile, "mira");
    EXPECT_EQ(parse({u"--auto-consent=mira"_s})->autoConsentProfile, "mira");
    EXPECT_TRUE(parse({u"--auto-consent=mira"_s})->autoConsent);
    EXPECT_FALSE(parse({u"--auto-consent"_s, u"--seed=1"_s})->autoConsentProfile);
    EXPECT_EQ(complaintAbout({u"--auto-consent"_s, u"mira"_s, u"x"_s}), "\"x\" is not an option.");
}

TEST(ServiceOptions, ComplainAboutWhatTheyDoNotUnderstand)
{
    EXPECT_EQ(complaintAbout({u"--port"_s, u"65536"_s}), "--port needs a whole number from 0 to 65535.");
    EXPECT_EQ(complaintAbout({u"--profiles"_s, u"0"_s}), "--profiles needs a whole number from 1 to 10000.");
    EXPECT_EQ(complaintAbout({u"--time-scale"_s, u"1.5"_s}),
              "--time-scale needs a whole number from 1 to 3600.");
    EXPECT_EQ(complaintAbout({u"--seed"_s, u"-1"_s}),
              "--seed needs a whole number from 0 to 9223372036854775807.");
    EXPECT_EQ(complaintAbout({u"--code-ttl"_s, u"soon"_s}),
              "--code-ttl needs a whole number from 0 to 316224000.");
    EXPECT_EQ(complaintAbout({u"--key"_s, u"key.pem"_s}), "--certificate and --key need each other.");
    EXPECT_EQ(complaintAbout({u"extra"_s}), "\"extra\" is not an option.");
    EXPECT_NE(complaintAbout({u"--sed"_s}), "none");
}

TEST(ServiceOptions, AreAllNamedInTheHelp)
{
    for (const char* option :
         {"--port", "--control-port", "--certificate", "--key", "--seed", "--profiles", "--auto-consent",
          "--access-ttl", "--refresh-ttl", "--code-ttl", "--time-scale", "--help", "--version"}) {
        EXPECT_TRUE(serviceHelp().contains(QLatin1StringView(option))) << option;
    }
}

} // namespace
} // namespace roost::local
