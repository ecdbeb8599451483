#pragma once

#include "app/LoginItem.h"
#include "model/FileSystem.h"

#include <QProcessEnvironment>

#include <filesystem>
#include <optional>
#include <string>

namespace roost {

/// Opens the app at login by an entry in the user's autostart folder (Desktop Application Autostart
/// Specification). Approval is missing where the entry is switched off, as the start-up settings of desktops
/// do it, and on a desktop that is known to start no such entries. Holds a reference to the file system,
/// which must outlive it.
class AutostartEntry final : public LoginItem {
public:
    static constexpr const char* name = "world.brisken.roost.mac.desktop";

    /// The entry is in `folder`, nowhere without one. The desktop runs `program` (an absolute path) with
    /// `arguments`, which need no quotes. `desktops` are its names, as XDG_CURRENT_DESKTOP has them.
    AutostartEntry(FileSystem& files, std::optional<std::filesystem::path> folder,
                   std::filesystem::path program, std::string arguments, QString desktops);

    /// The autostart folder of the user whose environment that is; nothing without a home.
    static std::optional<std::filesystem::path> folderOf(const QProcessEnvironment& environment);

    Status status() const override;
    std::expected<void, std::string> add() override;
    std::expected<void, std::string> remove() override;

    /// Has the entry start this program where the one that it names is no longer there: it was moved. One
    /// that the user switched off stays as it is.
    void renew();

private:
    std::optional<std::string> text() const;
    /// What is in the file; nothing without one.
    std::optional<std::string> stored() const;
    std::expected<void, std::string> write(const std::string& text);

    FileSystem& files_;
    std::filesystem::path program_;
    std::string arguments_;
    std::optional<std::filesystem::path> file_;
    QString desktops_;
};

} // namespace roost
