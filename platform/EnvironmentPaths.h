#pragma once

#include <QProcessEnvironment>
#include <QString>

#include <filesystem>
#include <optional>

namespace roost {

/// The folder that `variable` of `environment` names. Nothing when it is unset or no absolute path, which
/// does not count (XDG Base Directory Specification).
std::optional<std::filesystem::path> folderNamedBy(const QProcessEnvironment& environment,
                                                   const QString& variable);

/// The path of the program that is found as `name` along the PATH of `environment`; empty without one.
QString programNamed(const QString& name, const QProcessEnvironment& environment);

} // namespace roost
