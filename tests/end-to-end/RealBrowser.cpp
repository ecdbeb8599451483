#include "tests/end-to-end/RealBrowser.h"

#include "tests/end-to-end/ProgramRun.h"
#include "tests/support/Await.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QStandardPaths>

#include <stdexcept>

namespace roost::test {

namespace {

using namespace Qt::StringLiterals;

const QString browserProgram = u"chromium"_s;
const QString driverProgram = u"chromedriver"_s;
/// Section 11 of the protocol.
const QString elementKey = u"element-6066-11e4-a52e-4f735466cecf"_s;

std::vector<std::string> commandIn(const ScratchFolder& folder, const std::vector<std::string>& environment)
{
    // A display that nobody serves: xdg-open asks for one before it looks at desktop entries.
    std::vector<std::string> command{"env", "DISPLAY=:999", "TMPDIR=" + folder.path().string()};
    command.insert(command.end(), environment.begin(), environment.end());
    command.insert(command.end(), {driverProgram.toStdString(), "--port=0"});
    return command;
}

/// Where the driver listens, from what it says.
QString baseOf(GuardedProcess& driver)
{
    const std::string before = "successfully on port ";
    for (std::string line = driver.line(); !line.empty(); line = driver.line()) {
        if (const std::size_t found = line.find(before); found != std::string::npos) {
            return u"http://127.0.0.1:%1"_s.arg(std::stoi(line.substr(found + before.size())));
        }
    }
    throw std::runtime_error("chromedriver does not start");
}

} // namespace

bool RealBrowser::isInstalled()
{
    return !QStandardPaths::findExecutable(browserProgram).isEmpty() &&
           !QStandardPaths::findExecutable(driverProgram).isEmpty();
}

RealBrowser::RealBrowser(const QByteArray& origin, const std::vector<std::string>& environment)
    : driver_(commandIn(folder_, environment)),
      base_(baseOf(driver_)),
      session_(begin(origin))
{
}

QString RealBrowser::begin(const QByteArray& origin)
{
    // The sandbox refuses to work for the administrator, as whom containers like to run.
    const QJsonArray arguments{u"--headless=new"_s,
                               u"--no-sandbox"_s,
                               u"--disable-gpu"_s,
                               u"--disable-dev-shm-usage"_s,
                               u"--no-proxy-server"_s,
                               u"--host-resolver-rules=MAP * ~NOTFOUND , EXCLUDE 127.0.0.1"_s,
                               u"--user-data-dir="_s +
                                   QString::fromStdString((folder_ / "profile").string())};
    const QJsonObject agreed{{QString::fromLatin1(origin), QJsonObject{{u"briskenroost"_s, true}}}};
    const QJsonObject options{
        {u"binary"_s, QStandardPaths::findExecutable(browserProgram)},
        {u"args"_s, arguments},
        {u"prefs"_s,
         QJsonObject{{u"protocol_handler"_s, QJsonObject{{u"allowed_origin_protocol_pairs"_s, agreed}}}}}};
    const QJsonObject wanted{{u"alwaysMatch"_s, QJsonObject{{u"goog:chromeOptions"_s, options}}}};
    const QJsonValue begun = post(u"/session"_s, {{u"capabilities"_s, wanted}});
    return u"/session/"_s + begun[u"sessionId"_s].toString();
}

void RealBrowser::open(const std::string& address)
{
    post(session_ + u"/url"_s, {{u"url"_s, QString::fromStdString(address)}});
}

void RealBrowser::click(const std::string& selector)
{
    const QJsonValue element =
        post(session_ + u"/element"_s,
             {{u"using"_s, u"css selector"_s}, {u"value"_s, QString::fromStdString(selector)}});
    post(session_ + u"/element/%1/click"_s.arg(element[elementKey].toString()), {});
}

QJsonValue RealBrowser::post(const QString& path, const QJsonObject& parameters)
{
    HttpRequest request;
    request.method = HttpRequest::Method::post;
    request.url = QUrl{base_ + path};
    request.headers = {{"Content-Type", "application/json; charset=utf-8"}};
    request.body = QJsonDocument{parameters}.toJson(QJsonDocument::Compact);
    request.timeout = browserGuard;
    const HttpResult answer = await(network_.send(std::move(request), {}), browserGuard);
    const QJsonValue value =
        answer ? QJsonDocument::fromJson(answer->body).object().value(u"value"_s) : QJsonValue{};
    if (!answer || answer->status != 200) {
        throw std::runtime_error("the browser refuses " + path.toStdString() + ": " +
                                 value[u"error"_s].toString().toStdString() + ", " +
                                 value[u"message"_s].toString().toStdString());
    }
    return value;
}

} // namespace roost::test
