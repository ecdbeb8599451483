#pragma once

#include <QProcessEnvironment>

#include <filesystem>
#include <optional>

namespace roost {

/// The folder in which the processes of this user find each other while they run, made when it is missing:
/// "world.brisken.roost.mac" in $XDG_RUNTIME_DIR, or "world.brisken.roost.mac-UID" in the temporary folder
/// ($TMPDIR, by default /tmp) where that variable names no folder of this user alone. Nothing when there is
/// no folder that belongs to this user, is open to nobody else (0700) and is no symbolic link.
std::optional<std::filesystem::path> privateRuntimeFolder(const QProcessEnvironment& environment);

} // namespace roost
