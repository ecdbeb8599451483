#include "platform/EnvironmentPaths.h"

#include <QFile>
#include <QStandardPaths>

namespace roost {

std::optional<std::filesystem::path> folderNamedBy(const QProcessEnvironment& environment,
                                                   const QString& variable)
{
    const std::filesystem::path folder = QFile::encodeName(environment.value(variable)).toStdString();
    return folder.is_absolute() ? std::optional{folder} : std::nullopt;
}

QString programNamed(const QString& name, const QProcessEnvironment& environment)
{
    const QStringList folders =
        environment.value(QStringLiteral("PATH")).split(QLatin1Char(':'), Qt::SkipEmptyParts);
    // Without folders it would be looked for along the PATH of this process.
    return folders.isEmpty() ? QString{} : QStandardPaths::findExecutable(name, folders);
}

} // namespace roost
