#include "programs/brisken-roost/TerminalBrowser.h"

#include <utility>

namespace roost {

namespace {

constexpr std::chrono::seconds busTimeout{5};

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
    byHand_ = std::make_unique<SignInByHand>(terminal_.output);
    byHand_->onLine([this](const std::string& line) { byHand_->tell(inbox_.offer(line)); });
    if (terminal_.isInteractive) {
        byHand_->say("Choose a profile in your browser.\n");
        byHand_->tellAddress(url.text());
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
        byHand_->say("Another sign-in is waiting already; the browser will come back to that one.\n");
    } else if (trouble == BrowserAuthenticator::Trouble::notReachable) {
        byHand_->say("The browser may not find its way back here.\n");
    }
    byHand_->tellAddress(url.text());
}

} // namespace roost
