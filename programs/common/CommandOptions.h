#pragma once

#include <QCommandLineParser>
#include <QString>
#include <QStringList>

#include <optional>

namespace roost {

/// Has `parser` take "--help", "--version", the options `takingValues` and, without a value, `flags`; by
/// their long names alone.
void addOptions(QCommandLineParser& parser, const QStringList& takingValues, const QStringList& flags = {});

/// The value of an option that `parser` takes; nothing when it was not given.
std::optional<QString> valueOf(const QCommandLineParser& parser, const QString& option);

} // namespace roost
