#include "model/Clock.h"
#include "model/InfoDictionary.h"
#include "programs/roost-service/EndOfRun.h"
#include "programs/roost-service/LocalService.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

constexpr int failure = 1;
constexpr int wrongUsage = 2;

int complain(const QString& sentence, int code)
{
    std::fprintf(stderr, "roost-service: %s\n", qPrintable(sentence));
    return code;
}

int say(const QByteArray& text)
{
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
    return std::fflush(stdout) == 0 ? 0 : failure;
}

} // namespace

int main(int argc, char** argv)
{
    using namespace roost;
    using namespace roost::local;

    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("roost-service"));
    const auto options = parseServiceOptions(QCoreApplication::arguments());
    if (!options) {
        return complain(options.error(), wrongUsage);
    }
    if (options->help) {
        return say(serviceHelp().toUtf8());
    }
    if (options->version) {
        return say("roost-service " + InfoDictionary::builtIn().version().toUtf8() + '\n');
    }

    EndOfRun end([] { QCoreApplication::quit(); });
    LocalService service(*options, systemClock(),
                         options->seed ? seededRandomBytes(*options->seed) : systemRandomBytes());
    if (const auto started = service.start(); !started) {
        return complain(started.error(), failure);
    }
    if (say(service.readyLine() + '\n') != 0) {
        return complain(QStringLiteral("cannot write to standard output"), failure);
    }
    return QCoreApplication::exec();
}
