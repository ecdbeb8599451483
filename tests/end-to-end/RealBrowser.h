#pragma once

#include "service/NetworkHttpSession.h"
#include "tests/support/GuardedProcess.h"
#include "tests/support/ScratchFolder.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

#include <string>
#include <vector>

namespace roost::test {

/// A real browser, Chromium without a window, whose user the test is: by the WebDriver protocol
/// (w3.org/TR/webdriver2), spoken with chromedriver. It and whatever it starts are killed when this goes.
/// Main thread, whose event loop runs during every call. Throws where the browser does not do as it is told.
class RealBrowser {
public:
    /// Whether this machine has such a browser.
    static bool isInstalled();

    /// Runs with the environment of this process, changed by `environment`, words of the form NAME=VALUE. Its
    /// user has agreed that pages of `origin` open addresses of the scheme "briskenroost", and it reaches
    /// nobody but this machine.
    RealBrowser(const QByteArray& origin, const std::vector<std::string>& environment);

    /// Returns when the page has been loaded.
    void open(const std::string& address);

    /// Clicks on the first element that the CSS selector finds.
    void click(const std::string& selector);

    /// Closes it for good, whatever it shows.
    void close() { driver_.end(); }

private:
    QString begin(const QByteArray& origin);
    QJsonValue post(const QString& path, const QJsonObject& parameters);

    NetworkHttpSession network_;
    ScratchFolder folder_;
    GuardedProcess driver_;
    QString base_;
    QString session_;
};

} // namespace roost::test
