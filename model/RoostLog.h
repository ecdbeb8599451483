#pragma once

#include <QLoggingCategory>

/// The system log of the program: short lower-case lines in two categories, and a few storage failures on the
/// console, prefixed "Brisken Roost: ". Any thread.
namespace roost::RoostLog {

inline constexpr const char* subsystem = "world.brisken.roost.mac";

/// Category "sync": refreshes and the widget endpoint. `qCInfo(RoostLog::sync)`.
const QLoggingCategory& sync();

/// Category "auth": sign-in and tokens.
const QLoggingCategory& auth();

/// The storage failures that go to the console without a category.
const QLoggingCategory& console();

/// Sends every Qt log line of this process through `redacted` to standard error: with a syslog level and
/// without a time when that is the journal (sd-daemon(3)), otherwise with the time and the category for
/// people to read. Called once, by `main`.
void install();

} // namespace roost::RoostLog
