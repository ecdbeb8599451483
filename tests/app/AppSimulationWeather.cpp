#include "tests/app/AppSimulationWeather.h"

#include <QUrlQuery>

#include <array>

namespace roost::test {

using namespace std::chrono_literals;

SimulatedWeather::SimulatedWeather(SimulatedWorld& world) : world_{&world}
{
    world.roost.latency = [this] { return latency(); };
    world.roost.trouble = [this](const HttpRequest& request) { return trouble(request); };
}

void SimulatedWeather::change()
{
    Dice& dice = world_->dice;
    const bool isBetter = dice.isOneIn(2);
    switch (dice.below(4)) {
    case 0:
        network_ = isBetter ? Network::well : static_cast<Network>(dice.below(5));
        break;
    case 1:
        service_ = isBetter ? Service::well : static_cast<Service>(dice.below(6));
        break;
    case 2:
        world_->keyring.mood =
            isBetter ? SimulatedKeyring::Mood::well : static_cast<SimulatedKeyring::Mood>(dice.below(4));
        break;
    default:
        world_->files.recover();
        if (!isBetter) {
            changeDisk();
        }
    }
}

void SimulatedWeather::clear()
{
    network_ = Network::well;
    service_ = Service::well;
    world_->keyring.mood = SimulatedKeyring::Mood::well;
    world_->files.recover();
}

void SimulatedWeather::changeDisk()
{
    using Operation = FailingFileSystem::Operation;
    constexpr std::array operations{Operation::makeFolders,   Operation::read,   Operation::write,
                                    Operation::openTemporary, Operation::rename, Operation::syncFolder};
    world_->files.failEvery(operations.at(world_->dice.below(operations.size())),
                            std::make_error_code(std::errc::no_space_on_device));
}

std::chrono::milliseconds SimulatedWeather::latency()
{
    Dice& dice = world_->dice;
    return network_ == Network::slow ? dice.between(0ms, 29s) : dice.between(0ms, 400ms);
}

std::optional<HttpResult> SimulatedWeather::trouble(const HttpRequest& request)
{
    Dice& dice = world_->dice;
    const bool isWidget = request.url.path() == QStringLiteral("/api/roost/v1/widget");
    if (world_->isFrozen()) {
        // What was on the wire when the process died may arrive.
        return dice.isOneIn(2) ? std::optional{noNetwork()} : std::nullopt;
    }
    if (network_ == Network::offline || (network_ == Network::flaky && dice.isOneIn(3))) {
        return noNetwork();
    }
    switch (service_) {
    case Service::well:
        return std::nullopt;
    case Service::overloaded:
        return overloaded();
    case Service::broken:
        return response(500, "<html>sorry</html>");
    case Service::talkingNonsense:
        return response(200, dice.isOneIn(2) ? "{}" : "<html>please sign in to the hotel's network</html>");
    case Service::refusing:
        return isWidget && dice.isOneIn(40) ? std::optional{response(401)} : std::nullopt;
    case Service::forbidding:
        return isWidget && dice.isOneIn(200) ? std::optional{response(403)} : std::nullopt;
    }
    return std::nullopt;
}

HttpResult SimulatedWeather::overloaded()
{
    constexpr std::array times{"", "5", "120", "200", "100000", "soon", "-3"};
    const std::string time = times.at(world_->dice.below(times.size()));
    HttpResult result = response(world_->dice.isOneIn(2) ? 503 : 429);
    if (!time.empty()) {
        result->headers.emplace_back("Retry-After", QByteArray::fromStdString(time));
    }
    return result;
}

HttpResult SimulatedWeather::onWayBack(const HttpRequest& request, HttpResult result)
{
    if (network_ != Network::losingAnswers || !world_->dice.isOneIn(5)) {
        return result;
    }
    const QUrlQuery form{QString::fromUtf8(request.body)};
    const QString token = form.queryItemValue(QStringLiteral("refresh_token"));
    if (!token.isEmpty()) {
        // The service has replaced it, and nobody knows by what.
        world_->lostTokens.insert(token.toStdString());
    }
    return noNetwork();
}

} // namespace roost::test
