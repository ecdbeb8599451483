#include "platform/IniSettings.h"

#include <QStandardPaths>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace roost {

namespace {

QString textOf(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

IniSettings::IniSettings(const std::filesystem::path& file)
    : settings_{QString::fromStdString(file.string()), QSettings::IniFormat}
{
}

std::filesystem::path IniSettings::location()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return std::filesystem::path{folder.toStdString()} / "world.brisken.roost.mac" / "settings.ini";
}

std::optional<std::string> IniSettings::stored(std::string_view key) const
{
    settings_.sync();
    const QVariant value = settings_.value(textOf(key));
    if (!value.isValid()) {
        return std::nullopt;
    }
    // Somebody who edits the file does not quote a text with a comma, which makes it a list.
    const bool isList = value.typeId() == QMetaType::QStringList;
    return (isList ? value.toStringList().join(QLatin1Char(',')) : value.toString()).toStdString();
}

void IniSettings::store(std::string_view key, const std::optional<std::string>& text)
{
    if (text) {
        settings_.setValue(textOf(key), textOf(*text));
    } else {
        settings_.remove(textOf(key));
    }
    settings_.sync();
}

} // namespace roost
