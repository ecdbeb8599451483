#pragma once

#include "programs/brisken-roost-views/RenderCommand.h"

#include <QString>
#include <QStringList>

#include <expected>
#include <variant>

namespace roost::drawing {

/// `--help` and `--version`: a text for standard output.
struct PrintCommand {
    QString text;

    bool operator==(const PrintCommand&) const = default;
};

using Command = std::variant<RenderCommand, PrintCommand>;

/// What `words` (without the program's name) ask for; the error is one sentence for the user. `version` is
/// what `--version` prints.
std::expected<Command, QString> parseCommandLine(const QStringList& words, const QString& version);

} // namespace roost::drawing
