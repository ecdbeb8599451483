#include "programs/common/CommandOptions.h"

namespace roost {

void addOptions(QCommandLineParser& parser, const QStringList& takingValues)
{
    parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsLongOptions);
    parser.addOption({QStringLiteral("help"), QString{}});
    parser.addOption({QStringLiteral("version"), QString{}});
    for (const QString& option : takingValues) {
        parser.addOption({option, QString{}, QStringLiteral("VALUE")});
    }
}

std::optional<QString> valueOf(const QCommandLineParser& parser, const QString& option)
{
    return parser.isSet(option) ? std::optional{parser.value(option)} : std::nullopt;
}

} // namespace roost
