#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <optional>

namespace roost {

/// Has `parser` take "--help", "--version" and the options `takingValues`, by their long names alone.
void addOptions(QCommandLineParser& parser, const QStringList& takingValues);

/// The value of an option that `parser` takes; nothing when it was not given.
std::optional<QString> valueOf(const QCommandLineParser& parser, const QString& option);

} // namespace roost
