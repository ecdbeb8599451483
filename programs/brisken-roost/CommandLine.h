#pragma once

#include <QString>
#include <QStringList>

#include <expected>
#include <optional>
#include <string>
#include <variant>

namespace roost {

enum class StatusFormat { text, json, waybar };

/// `status`: what the shared file holds.
struct StatusCommand {
    std::optional<std::string> profile;
    StatusFormat format = StatusFormat::text;
    /// An identifier that `RoostFormat::knows`; nothing: the machine's.
    std::optional<std::string> locale;

    bool operator==(const StatusCommand&) const = default;
};

/// `fetch`: one snapshot with a bearer token, for development.
struct FetchCommand {
    std::optional<QString> baseURL;
    std::optional<std::string> profile;

    bool operator==(const FetchCommand&) const = default;
};

/// An address of the scheme "briskenroost" as the only word: the desktop entry starts the program so, when
/// the browser comes back from a sign-in.
struct OpenCallbackCommand {
    /// As received; holds a secret.
    std::string address;

    bool operator==(const OpenCallbackCommand&) const = default;
};

/// `sign-in`: one profile, through the browser.
struct SignInCommand {
    std::optional<QString> baseURL;
    /// Gives up the one that the app is waiting for, instead.
    bool cancels = false;

    bool operator==(const SignInCommand&) const = default;
};

/// `accounts`: who is signed in.
struct AccountsCommand {
    std::optional<QString> baseURL;

    bool operator==(const AccountsCommand&) const = default;
};

/// `sign-out`: forgets one profile here.
struct SignOutCommand {
    std::optional<QString> baseURL;
    std::string profile;

    bool operator==(const SignOutCommand&) const = default;
};

/// `sync`: one sync now, of one profile or all.
struct SyncCommand {
    std::optional<QString> baseURL;
    std::optional<std::string> profile;

    bool operator==(const SyncCommand&) const = default;
};

/// `refresh`: has the running app fetch fresh numbers; without one the same as `sync` of all.
struct RefreshCommand {
    std::optional<QString> baseURL;
    /// Whether it ends when the numbers have come.
    bool waits = false;

    bool operator==(const RefreshCommand&) const = default;
};

/// `select`: has one profile shown.
struct SelectCommand {
    std::optional<QString> baseURL;
    std::string profile;

    bool operator==(const SelectCommand&) const = default;
};

/// `quit`: ends the running app.
struct QuitCommand {
    std::optional<QString> baseURL;

    bool operator==(const QuitCommand&) const = default;
};

/// `notify`: notifications with sample numbers, for trying out.
struct NotifyCommand {
    /// One of `SampleEvents::kinds`.
    std::string kind;
    /// In whose language and numbers; the machine's when absent.
    std::optional<std::string> locale;
    /// Whether it stays for clicks until it is stopped.
    bool waits = false;

    bool operator==(const NotifyCommand&) const = default;
};

/// `run`: the app itself.
struct RunCommand {
    std::optional<QString> baseURL;

    bool operator==(const RunCommand&) const = default;
};

/// `--help` and `--version`: a text for standard output.
struct PrintCommand {
    QString text;

    bool operator==(const PrintCommand&) const = default;
};

using Command = std::variant<StatusCommand, FetchCommand, SignInCommand, AccountsCommand, SignOutCommand,
                             SyncCommand, RefreshCommand, SelectCommand, QuitCommand, NotifyCommand,
                             RunCommand, OpenCallbackCommand, PrintCommand>;

struct CommandLine {
    Command command;
    /// The file that stands in for the built-in information dictionary.
    std::optional<QString> infoFile;
};

/// What `arguments` (without the program's name) ask for; the error is one sentence for the user. `version`
/// is what `--version` prints.
std::expected<CommandLine, QString> parseCommandLine(const QStringList& arguments, const QString& version);

} // namespace roost
