#include "programs/common/CommandOptions.h"

namespace roost {

void addOptions(QCommandLineParser& parser, const QStringList& takingValues, const QStringList& flags)
{
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOption({QStringLiteral("help"), QString{}});
    parser.addOption({QStringLiteral("version"), QString{}});
    for (const QString& option : takingValues) {
        parser.addOption({option, QString{}, QStringLiteral("VALUE")});
    }
    for (const QString& flag : flags) {
        parser.addOption({flag, QString{}});
    }
}

std::optional<QString> valueOf(const QCommandLineParser& parser, const QString& option)
{
    return parser.isSet(option) ? std::optional{parser.value(option)} : std::nullopt;
}

} // namespace roost
