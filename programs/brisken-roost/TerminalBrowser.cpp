#include "programs/brisken-roost/TerminalBrowser.h"

#include <utility>

namespace roost {

namespace {

constexpr std::chrono::seconds busTimeout{5};

} // namespace

TerminalBrowser::TerminalBrowser(FileSystem& files, std::filesystem::path program,
                                 QProcessEnvironment environment, std::FILE* terminal)
    : terminal_(terminal),
      receiver_(environment, inbox_),
      handler_(files, std::move(program), environment),
      launcher_(environment),
      authenticator_(
          {.opener = launcher_,
           .inbox = inbox_,
           .reach = [this](std::stop_token stop) { return reach(std::move(stop)); },
           .fallback = [this](const WebURL& url,
                              BrowserAuthenticator::Trouble trouble) { askForHelp(url, trouble); }})
{
}

QCoro::Task<bool> TerminalBrowser::reach(std::stop_token stop)
{
    auto opening = receiver_.open(busTimeout);
    const CallbackReceiver::Doors doors = co_await opening;
    auto claiming = handler_.claim(std::move(stop));
    const SchemeHandler::Handler handler = co_await claiming;
    co_return doors.isOpen() && handler.kind == SchemeHandler::Handler::Kind::ours;
}

void TerminalBrowser::askForHelp(const WebURL& url, BrowserAuthenticator::Trouble trouble)
{
    const bool isOpening = trouble == BrowserAuthenticator::Trouble::notReachable;
    say((isOpening
             ? "The browser may not find its way back here. Where it opened nothing, open this address:\n\n  "
             : "Open this address in a browser:\n\n  ") +
        url.text() +
        "\n\nWhen you have allowed the connection, and nothing happens here, paste the address that the "
        "browser "
        "went to (it begins with briskenroost:) and press Enter.\n");
    lines_ = std::make_unique<StandardInputLines>(
        StandardInputLines::Listener{.line = [this](const std::string& line) { takeLine(line); },
                                     .tooLong = [this] { say("That is too long for such an address.\n"); },
                                     .ended = [] {}});
}

void TerminalBrowser::takeLine(const std::string& line)
{
    switch (inbox_.offer(line)) {
    case CallbackInbox::Verdict::taken:
        break;
    case CallbackInbox::Verdict::ignored:
        say("That address belongs to another sign-in.\n");
        break;
    case CallbackInbox::Verdict::notCallback:
        say("That is not the address: it begins with briskenroost:\n");
        break;
    }
}

void TerminalBrowser::say(const std::string& text) const
{
    std::fputs(text.c_str(), terminal_);
    std::fflush(terminal_);
}

} // namespace roost
