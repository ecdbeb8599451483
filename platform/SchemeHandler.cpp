#include "platform/SchemeHandler.h"

#include "model/RoostLog.h"
#include "platform/DesktopEntry.h"
#include "platform/EnvironmentPaths.h"
#include "platform/ToolRun.h"

#include <optional>

namespace roost {

namespace {

const QString mimeType = QStringLiteral("x-scheme-handler/briskenroost");
const QString tool = QStringLiteral("xdg-mime");
constexpr std::size_t longestEntry = 64 * 1024;

std::optional<std::filesystem::path> dataFolder(const QProcessEnvironment& environment)
{
    if (const auto data = folderNamedBy(environment, QStringLiteral("XDG_DATA_HOME"))) {
        return data;
    }
    const auto home = folderNamedBy(environment, QStringLiteral("HOME"));
    return home ? std::optional{*home / ".local" / "share"} : std::nullopt;
}

} // namespace

SchemeHandler::SchemeHandler(FileSystem& files, std::filesystem::path program,
                             const QProcessEnvironment& environment, std::chrono::milliseconds timeout)
    : files_(files),
      program_(std::move(program)),
      environment_(environment),
      timeout_(timeout)
{
}

std::error_code SchemeHandler::install()
{
    const auto text = desktopEntry(program_);
    if (!text) {
        return std::make_error_code(std::errc::invalid_argument);
    }
    const auto data = dataFolder(environment_);
    if (!data) {
        return std::make_error_code(std::errc::no_such_file_or_directory);
    }
    const std::filesystem::path entry = *data / "applications" / entryName.toStdString();
    if (files_.read(entry, longestEntry) == *text) {
        return {};
    }
    if (const std::error_code failed = files_.makeFolders(entry.parent_path())) {
        return failed;
    }
    return replaceFile(files_, entry, *text);
}

QCoro::Task<bool> SchemeHandler::makeDefault(std::stop_token stop)
{
    auto running =
        runTool(tool, {QStringLiteral("default"), entryName, mimeType}, environment_, timeout_, stop);
    const auto result = co_await running;
    co_return result && result->exitCode == 0;
}

QCoro::Task<SchemeHandler::Handler> SchemeHandler::handler(std::stop_token stop)
{
    const QStringList question{QStringLiteral("query"), QStringLiteral("default"), mimeType};
    auto running = runTool(tool, question, environment_, timeout_, stop);
    const auto result = co_await running;
    if (!result || result->exitCode != 0) {
        co_return Handler{};
    }
    const QString entry = QString::fromUtf8(result->output).trimmed();
    if (entry.isEmpty()) {
        co_return Handler{Handler::Kind::nobody, {}};
    }
    if (entry != entryName) {
        co_return Handler{Handler::Kind::another, entry};
    }
    const bool isPlain = execArgument(program_) == program_.native();
    co_return Handler{isPlain ? Handler::Kind::ours : Handler::Kind::unknown, entry};
}

QCoro::Task<SchemeHandler::Handler> SchemeHandler::claim(std::stop_token stop)
{
    // Asked before the entry is there: then it may be the default by the order of names alone, until another
    // program comes.
    auto looking = handler(stop);
    Handler before = co_await looking;
    if (const std::error_code failed = install()) {
        qCWarning(RoostLog::auth, "desktop entry not installed: %s", failed.message().c_str());
        co_return Handler{};
    }
    // The tool writes the user's choices anew even when nothing changes, a link in their place included.
    if (before.entry == entryName) {
        co_return before;
    }
    auto making = makeDefault(stop);
    co_await making;
    auto asking = handler(stop);
    Handler found = co_await asking;
    co_return found;
}

} // namespace roost
