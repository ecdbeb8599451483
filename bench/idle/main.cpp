#include "bench/idle/IdleReport.h"
#include "service/NetworkHttpSession.h"

#include <QCoreApplication>
#include <QCoro/QCoroTask>
#include <QJsonDocument>
#include <QJsonObject>

#include <cstdio>
#include <thread>

using namespace roost;
using namespace roost::bench;
using namespace std::chrono_literals;

namespace {

/// How many snapshots the local service has been asked for, by its control.
std::optional<int> snapshotsAskedFor(NetworkHttpSession& session, const QString& control)
{
    HttpRequest request;
    request.url = QUrl{control + QStringLiteral("/state")};
    const HttpResult answer = QCoro::waitFor(session.send(std::move(request), {}));
    if (!answer || answer->status != 200) {
        return std::nullopt;
    }
    const QJsonObject state = QJsonDocument::fromJson(answer->body).object();
    return state.value(QStringLiteral("requests")).toObject().value(QStringLiteral("widget")).toInt();
}

int complain(const char* sentence)
{
    std::fprintf(stderr, "roost_idle: %s\n", sentence);
    return 2;
}

} // namespace

/// Watches the app and the bare program while both idle, and says what that costs. Arguments: minutes, the
/// address of the local service's control, the process of the app and that of the bare program. Ends with 1
/// when the app costs more than it may, with 2 when nothing could be measured.
int main(int argc, char* argv[])
{
    const QCoreApplication application{argc, argv};
    const QStringList arguments = QCoreApplication::arguments();
    const int minutes = arguments.value(1).toInt();
    if (arguments.size() != 5 || minutes < 1) {
        return complain("takes minutes, the control's address, and two processes");
    }
    NetworkHttpSession session;
    auto asked = snapshotsAskedFor(session, arguments[2]);
    IdleWatch app{arguments[3].toInt()};
    IdleWatch bare{arguments[4].toInt()};
    std::vector<int> snapshots;
    auto next = std::chrono::steady_clock::now();
    for (int second = 0; second < minutes * 60; ++second) {
        next += 1s;
        std::this_thread::sleep_until(next);
        const auto before = asked;
        if (!app.look() || !bare.look() || !before || !(asked = snapshotsAskedFor(session, arguments[2]))) {
            return complain("one of those that are measured has ended");
        }
        snapshots.push_back(*asked - *before);
    }
    const IdleReport report{app, bare, snapshots};
    std::fputs(report.text().c_str(), stdout);
    return report.isWithinLimits() ? 0 : 1;
}
