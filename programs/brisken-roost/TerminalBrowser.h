#pragma once

#include "model/FileSystem.h"
#include "platform/BrowserAuthenticator.h"
#include "platform/BrowserLauncher.h"
#include "platform/CallbackInbox.h"
#include "platform/CallbackReceiver.h"
#include "platform/SchemeHandler.h"
#include "programs/brisken-roost/SignInByHand.h"

#include <QProcessEnvironment>

#include <cstdio>
#include <filesystem>
#include <memory>

namespace roost {

/// The browser step of a sign-in on the command line: the user's browser, and a user who may open the address
/// by hand and paste the one that the browser ends at. One attempt at a time. Owned by
/// `main`; main thread.
class TerminalBrowser final : public WebAuthenticating {
public:
    /// What stands around the program.
    struct Terminal {
        /// Where the user is spoken to; outlives this.
        std::FILE* output = stderr;
        /// Whether a person sits at standard input: then the address is told in any case, for a browser that
        /// did not open. Otherwise standard input is read only once something went wrong.
        bool isInteractive = false;
    };

    /// `program` is what the desktop is to start for callbacks. `files` outlives this.
    TerminalBrowser(FileSystem& files, std::filesystem::path program, QProcessEnvironment environment,
                    Terminal terminal);

    QCoro::Task<std::expected<std::string, RoostAuthError>> authenticate(WebURL url, QString callbackScheme,
                                                                         std::stop_token stop) override;

private:
    QCoro::Task<bool> reach(std::stop_token stop);
    void tellOf(BrowserAuthenticator::Trouble trouble, const WebURL& url);

    Terminal terminal_;
    bool isAnotherWaiting_ = false;
    CallbackInbox inbox_{"briskenroost"};
    CallbackReceiver receiver_;
    SchemeHandler handler_;
    BrowserLauncher launcher_;
    BrowserAuthenticator authenticator_;
    /// Of the latest attempt.
    std::unique_ptr<SignInByHand> byHand_;
};

} // namespace roost
