#include "platform/BrowserLauncher.h"

#include "platform/DetachedProcess.h"

#include <QStandardPaths>

namespace roost {

void BrowserLauncher::open(WebURL url, std::function<void(Trouble)> failed)
{
    if (environment_.value(QStringLiteral("DISPLAY")).isEmpty() &&
        environment_.value(QStringLiteral("WAYLAND_DISPLAY")).isEmpty()) {
        failed(Trouble::noDisplay);
        return;
    }
    const QStringList folders =
        environment_.value(QStringLiteral("PATH")).split(QLatin1Char(':'), Qt::SkipEmptyParts);
    const QString opener =
        folders.isEmpty() ? QString{} : QStandardPaths::findExecutable(QStringLiteral("xdg-open"), folders);
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
