#include "platform/BrowserLauncher.h"

#include "platform/DetachedProcess.h"
#include "platform/EnvironmentPaths.h"

namespace roost {

void BrowserLauncher::open(WebURL url, std::function<void(Trouble)> failed)
{
    if (environment_.value(QStringLiteral("DISPLAY")).isEmpty() &&
        environment_.value(QStringLiteral("WAYLAND_DISPLAY")).isEmpty()) {
        failed(Trouble::noDisplay);
        return;
    }
    const QString opener = programNamed(QStringLiteral("xdg-open"), environment_);
    const auto ended = [failed](int exitCode) {
        if (exitCode != 0) {
            failed(Trouble::failed);
        }
    };
    if (opener.isEmpty() ||
        !startDetached(opener, {QString::fromStdString(url.text())}, environment_, this, ended)) {
        failed(Trouble::noOpener);
    }
}

} // namespace roost
