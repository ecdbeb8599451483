#pragma once

#include "model/FileSystem.h"
#include "platform/BrowserAuthenticator.h"
#include "platform/BrowserLauncher.h"
#include "platform/CallbackInbox.h"
#include "platform/CallbackReceiver.h"
#include "platform/SchemeHandler.h"
#include "platform/StandardInputLines.h"

#include <QProcessEnvironment>

#include <cstdio>
#include <filesystem>
#include <memory>

namespace roost {

/// The browser step of a sign-in on the command line: the user's browser, and a user who may open the address
/// by hand and paste the one that the browser ends at. Owned by `main` for one sign-in; main thread.
class TerminalBrowser {
public:
    /// `program` is what the desktop is to start for callbacks. Lines are read from standard input only once
    /// they are asked for, which is done on `terminal`. `files` and `terminal` outlive this.
    TerminalBrowser(FileSystem& files, std::filesystem::path program, QProcessEnvironment environment,
                    std::FILE* terminal = stderr);

    WebAuthenticating& authenticator() { return authenticator_; }

private:
    QCoro::Task<bool> reach(std::stop_token stop);
    void askForHelp(const WebURL& url, BrowserAuthenticator::Trouble trouble);
    void takeLine(const std::string& line);
    void say(const std::string& text) const;

    std::FILE* terminal_;
    CallbackInbox inbox_{"briskenroost"};
    CallbackReceiver receiver_;
    SchemeHandler handler_;
    BrowserLauncher launcher_;
    BrowserAuthenticator authenticator_;
    std::unique_ptr<StandardInputLines> lines_;
};

} // namespace roost
