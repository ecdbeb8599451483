#pragma once

#include "model/Clock.h"
#include "model/Settings.h"
#include "notify/NotificationService.h"
#include "present/RoostFormat.h"
#include "programs/brisken-roost/CommandLine.h"
#include "programs/brisken-roost/CommandResult.h"

#include <QCoro/QCoroTask>
#include <QString>
#include <QUrl>

#include <functional>
#include <stop_token>
#include <string>

namespace roost {

/// What `notify` works with. The settings outlive its task.
struct NotifyParts {
    /// As `sessionBusAddresses` gives them.
    QString busAddresses;
    const Settings& settings;
    /// Shows the page of a notification that was clicked.
    NotificationService::Opener open;
    /// Of the service, for notifications without a link of their own.
    QUrl base;
    RoostFormat format;
    Clock now;
    /// Tells the user something before the command has ended.
    std::function<void(const std::string&)> say;
};

/// Sends notifications with sample numbers to the desktop the way real ones go, and prints the title of each
/// that was taken. `noNotifications` when nobody is there to show any, `switchedOff` when the user has
/// switched a kind off (the others are sent), `failure` when one was refused or not answered, or when `stop`
/// came before the last one. Clicks are heard while it runs: until the last one was taken, or with
/// `command.waits` until `stop`.
QCoro::Task<CommandResult> runNotify(NotifyCommand command, NotifyParts parts, std::stop_token stop);

} // namespace roost
