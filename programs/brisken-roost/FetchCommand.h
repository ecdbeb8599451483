#pragma once

#include "model/Clock.h"
#include "model/WidgetStore.h"
#include "programs/brisken-roost/CommandLine.h"
#include "programs/brisken-roost/CommandResult.h"
#include "service/WidgetAPI.h"

#include <QCoro/QCoroTask>
#include <QString>

#include <expected>
#include <stop_token>
#include <string_view>

namespace roost {

/// The access token in `text`: its first line, without blanks around it. The error is one sentence; it quotes
/// nothing.
std::expected<QString, std::string> bearerTokenFrom(std::string_view text);

/// Fetches the snapshot that `token` may read, folds it into the record of its profile, a new one where there
/// is none, and writes the shared file. A failure is told, and noted in the record that `command` names.
QCoro::Task<CommandResult> runFetch(FetchCommand command, QString token, WidgetAPI api, WidgetStore store,
                                    Clock now, std::stop_token stop);

} // namespace roost
