#pragma once

#include "programs/roost-service/LocalService.h"
#include "tests/programs/roost-service/RawClient.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QJsonObject>

#include <memory>

namespace roost::local::test {

/// A service in this process, on a clock that the test moves.
class ServiceUnderTest : public testing::Test {
protected:
    void start(ServiceOptions options = {})
    {
        options.seed = 7;
        service_ = std::make_unique<LocalService>(options, [this] { return now_; }, seededRandomBytes(7));
        const auto started = service_->start();
        ASSERT_TRUE(started) << started.error().toStdString();
    }

    void SetUp() override { start(); }

    const std::string& profileId(std::size_t position = 0)
    {
        return service_->state().profiles[position].id();
    }

    QByteArray bearer(std::size_t position = 0)
    {
        return "Authorization: Bearer " +
               QByteArray::fromStdString(service_->standingToken(profileId(position))) + "\r\n";
    }

    RawAnswer get(const QByteArray& target, const QByteArray& lines = {})
    {
        return ask(service_->base(), "GET", target, lines);
    }

    RawAnswer widget(std::size_t position = 0) { return get("/api/roost/v1/widget", bearer(position)); }

    /// Asks the control, expects it to agree and gives the state.
    QJsonObject control(const QByteArray& target, const QByteArray& json)
    {
        const RawAnswer answer =
            ask(service_->control(), "POST", target, "Content-Type: application/json\r\n", json);
        EXPECT_EQ(answer.status(), 200) << answer.bytes.toStdString();
        return QJsonDocument::fromJson(answer.body()).object();
    }

    QJsonObject state()
    {
        return QJsonDocument::fromJson(ask(service_->control(), "GET", "/state").body()).object();
    }

    Date now_{std::chrono::milliseconds{1'750'000'000'123}};
    std::unique_ptr<LocalService> service_;
};

} // namespace roost::local::test
