#include "programs/brisken-roost/TerminalBrowser.h"

#include <utility>

namespace roost {

namespace {

constexpr std::chrono::seconds busTimeout{5};

/// The address with everything as %XX that is not printable ASCII: it comes from the service, and a terminal
/// acts upon some of it.
std::string printable(const WebURL& url)
{
    QByteArray text;
    for (const char byte : url.text()) {
        const bool isPlain = byte > ' ' && byte < '\x7f';
        text += isPlain ? QByteArray(1, byte) : '%' + QByteArray(1, byte).toHex().toUpper();
    }
    return text.toStdString();
}

} // namespace

TerminalBrowser::TerminalBrowser(FileSystem& files, std::filesystem::path program,
                                 QProcessEnvironment environment, Terminal terminal)
    : terminal_(terminal),
      receiver_(environment, inbox_),
      handler_(files, std::move(program), environment),
      launcher_(environment),
      authenticator_({.opener = launcher_,
                      .inbox = inbox_,
                      .reach = [this](std::stop_token stop) { return reach(std::move(stop)); },
                      .fallback = [this](const WebURL& url,
                                         BrowserAuthenticator::Trouble trouble) { tellOf(trouble, url); }})
{
}

QCoro::Task<std::expected<std::string, RoostAuthError>>
TerminalBrowser::authenticate(WebURL url, QString callbackScheme, std::stop_token stop)
{
    hasToldAddress_ = false;
    if (terminal_.isInteractive) {
        say("Choose a profile in your browser.\n");
        tellAddress(url);
    }
    return authenticator_.authenticate(std::move(url), std::move(callbackScheme), std::move(stop));
}

QCoro::Task<bool> TerminalBrowser::reach(std::stop_token stop)
{
    auto opening = receiver_.open(busTimeout, stop);
    const CallbackReceiver::Doors doors = co_await opening;
    isAnotherWaiting_ = doors.isAnotherWaiting();
    auto claiming = handler_.claim(std::move(stop));
    const SchemeHandler::Handler handler = co_await claiming;
    co_return doors.isOpen() && !isAnotherWaiting_ && handler.kind == SchemeHandler::Handler::Kind::ours;
}

void TerminalBrowser::tellOf(BrowserAuthenticator::Trouble trouble, const WebURL& url)
{
    if (isAnotherWaiting_) {
        say("Another sign-in is waiting already; the browser will come back to that one.\n");
    } else if (trouble == BrowserAuthenticator::Trouble::notReachable) {
        say("The browser may not find its way back here.\n");
    }
    tellAddress(url);
}

void TerminalBrowser::tellAddress(const WebURL& url)
{
    if (std::exchange(hasToldAddress_, true)) {
        return;
    }
    say("Where no browser opened, open this address:\n\n  " + printable(url) +
        "\n\nWhere it does not come back here by itself, paste the address that it went to (it begins with "
        "briskenroost:) and press Enter.\n");
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
    std::fputs(text.c_str(), terminal_.output);
    std::fflush(terminal_.output);
}

} // namespace roost
