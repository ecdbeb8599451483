#pragma once

#include "platform/BrowserOpener.h"

#include <QObject>
#include <QProcessEnvironment>

namespace roost {

/// Opens addresses with xdg-open, whose exit code is waited for in passing: it may run as long as the browser
/// does, and the browser outlives this program. Without a display nothing is started, since xdg-open would
/// try text browsers on nobody's terminal. Neither the address nor what xdg-open says is ever printed.
class BrowserLauncher final : public QObject, public BrowserOpener {
    Q_OBJECT

public:
    /// xdg-open is looked for along the PATH of `environment`, and runs with it.
    explicit BrowserLauncher(const QProcessEnvironment& environment) : environment_(environment) {}

    void open(WebURL url, std::function<void(Trouble)> failed) override;

private:
    QProcessEnvironment environment_;
};

} // namespace roost
