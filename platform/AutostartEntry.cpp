#include "platform/AutostartEntry.h"

#include "model/RoostLog.h"
#include "platform/DesktopEntry.h"
#include "platform/EnvironmentPaths.h"
#include "platform/GLibOwned.h"

#include <QByteArray>

#include <algorithm>
#include <array>
#include <utility>

namespace roost {

namespace {

constexpr std::size_t longestEntry = 64 * 1024;
constexpr const char* group = "Desktop Entry";

using GOwnedKeyFile = std::unique_ptr<GKeyFile, GReleased<&g_key_file_unref>>;
using GOwnedTexts = std::unique_ptr<char*, GReleased<&g_strfreev>>;

/// Window managers that start nothing by themselves. Their users start things by the manager's own
/// configuration.
constexpr std::array desktopsWithoutAutostart{"awesome",  "bspwm", "dwm",   "herbstluftwm",
                                              "hyprland", "i3",    "labwc", "niri",
                                              "qtile",    "river", "sway",  "wayfire"};

bool startsEntries(const QString& desktops)
{
    const QStringList names = desktops.toLower().split(QLatin1Char(':'), Qt::SkipEmptyParts);
    return std::ranges::none_of(desktopsWithoutAutostart,
                                [&](const char* name) { return names.contains(QLatin1StringView(name)); });
}

/// A list that is absent says nothing.
std::optional<QStringList> desktopsIn(GKeyFile* entry, const char* key)
{
    gsize count = 0;
    const GOwnedTexts texts{g_key_file_get_string_list(entry, group, key, &count, nullptr)};
    if (!texts) {
        return std::nullopt;
    }
    QStringList desktops;
    for (gsize i = 0; i < count; ++i) {
        desktops.append(QString::fromUtf8(texts.get()[i]));
    }
    return desktops;
}

/// The entry that this text is; null when it is none.
GOwnedKeyFile entryIn(const std::string& text)
{
    GOwnedKeyFile entry{g_key_file_new()};
    const bool isEntry =
        g_key_file_load_from_data(entry.get(), text.data(), text.size(), G_KEY_FILE_NONE, nullptr) != FALSE &&
        g_key_file_has_group(entry.get(), group) != FALSE;
    return isEntry ? std::move(entry) : nullptr;
}

/// Whether that text is an entry which is not switched off on these desktops.
bool isOn(const std::string& text, const QString& desktops)
{
    const GOwnedKeyFile entry = entryIn(text);
    if (!entry) {
        return false;
    }
    const auto is = [&entry](const char* key) {
        return g_key_file_get_boolean(entry.get(), group, key, nullptr) != FALSE;
    };
    constexpr const char* enabled = "X-GNOME-Autostart-enabled";
    const bool isDisabled = g_key_file_has_key(entry.get(), group, enabled, nullptr) != FALSE && !is(enabled);
    if (is("Hidden") || isDisabled) {
        return false;
    }
    const QStringList names = desktops.split(QLatin1Char(':'), Qt::SkipEmptyParts);
    const auto namesOne = [&names](const QStringList& listed) {
        return std::ranges::any_of(names, [&](const QString& name) { return listed.contains(name); });
    };
    const auto only = desktopsIn(entry.get(), "OnlyShowIn");
    const auto never = desktopsIn(entry.get(), "NotShowIn");
    return (!only || namesOne(*only)) && !(never && namesOne(*never));
}

/// Whether that text is an entry whose program is there.
bool startsSomething(const std::string& text)
{
    const GOwnedKeyFile entry = entryIn(text);
    const GOwnedText command{entry ? g_key_file_get_string(entry.get(), group, "Exec", nullptr) : nullptr};
    char** words = nullptr;
    if (!command || g_shell_parse_argv(command.get(), nullptr, &words, nullptr) == FALSE) {
        return false;
    }
    const GOwnedTexts owned{words};
    // A doubled "%" is one that begins no field code.
    const QByteArray name = QByteArray{words[0]}.replace("%%", "%");
    const GOwnedText program{g_find_program_in_path(name.constData())};
    return program != nullptr;
}

std::unexpected<std::string> failureOf(const std::error_code& error)
{
    return std::unexpected(error.message());
}

} // namespace

AutostartEntry::AutostartEntry(FileSystem& files, std::optional<std::filesystem::path> folder,
                               std::filesystem::path program, std::string arguments, QString desktops)
    : files_(files),
      program_(std::move(program)),
      arguments_(std::move(arguments)),
      desktops_(std::move(desktops))
{
    if (folder) {
        file_ = *folder / name;
    }
}

std::optional<std::filesystem::path> AutostartEntry::folderOf(const QProcessEnvironment& environment)
{
    if (const auto config = folderNamedBy(environment, QStringLiteral("XDG_CONFIG_HOME"))) {
        return *config / "autostart";
    }
    const auto home = folderNamedBy(environment, QStringLiteral("HOME"));
    return home ? std::optional{*home / ".config" / "autostart"} : std::nullopt;
}

LoginItem::Status AutostartEntry::status() const
{
    const auto entry = stored();
    if (!entry) {
        return Status::notRegistered;
    }
    return isOn(*entry, desktops_) && startsEntries(desktops_) ? Status::enabled : Status::requiresApproval;
}

std::expected<void, std::string> AutostartEntry::add()
{
    if (stored()) {
        // What the user switched off in the desktop is theirs to switch on there.
        return {};
    }
    const auto entry = text();
    if (!entry) {
        return failureOf(std::make_error_code(std::errc::invalid_argument));
    }
    return write(*entry);
}

std::expected<void, std::string> AutostartEntry::remove()
{
    if (!file_) {
        return {};
    }
    if (const std::error_code failed = files_.remove(*file_)) {
        return failureOf(failed);
    }
    return {};
}

void AutostartEntry::renew()
{
    const auto entry = stored();
    const auto wanted = text();
    if (!entry || !wanted || !isOn(*entry, desktops_) || startsSomething(*entry)) {
        return;
    }
    if (const auto written = write(*wanted); !written) {
        qCWarning(RoostLog::console, "the autostart entry starts another program (%s)",
                  written.error().c_str());
    }
}

std::optional<std::string> AutostartEntry::text() const
{
    const auto argument = execArgument(program_);
    if (!argument) {
        return std::nullopt;
    }
    return "[Desktop Entry]\nType=Application\nName=Brisken Roost for Mac\nExec=" + *argument + ' ' +
           arguments_ + "\nTerminal=false\nX-GNOME-Autostart-enabled=true\n";
}

std::optional<std::string> AutostartEntry::stored() const
{
    if (!file_) {
        return std::nullopt;
    }
    const auto text = files_.read(*file_, longestEntry);
    if (!text && text.error() == std::errc::no_such_file_or_directory) {
        return std::nullopt;
    }
    // What cannot be read starts nothing, and is not ours to replace.
    return text.value_or("");
}

std::expected<void, std::string> AutostartEntry::write(const std::string& text)
{
    if (!file_) {
        return failureOf(std::make_error_code(std::errc::no_such_file_or_directory));
    }
    if (const std::error_code failed = files_.makeFolders(file_->parent_path())) {
        return failureOf(failed);
    }
    if (const std::error_code failed = replaceFile(files_, *file_, text)) {
        return failureOf(failed);
    }
    return {};
}

} // namespace roost
