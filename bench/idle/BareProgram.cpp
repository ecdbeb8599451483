#include <QCoreApplication>
#include <QDBusConnection>
#include <QNetworkAccessManager>
#include <QNetworkReply>

#include <cstdio>

/// The least that a program like ours can be: an event loop, a network manager that has spoken https, and a
/// connection to the session bus. Fetches the address it is given `requests` times, one after another, says
/// "ready" and idles until it is ended.
int main(int argc, char* argv[])
{
    constexpr int requests = 5;
    const QCoreApplication application{argc, argv};
    const QUrl address{QCoreApplication::arguments().value(1)};
    QNetworkAccessManager manager;
    for (int i = 0; i < requests; ++i) {
        QNetworkReply* reply = manager.get(QNetworkRequest{address});
        QObject::connect(reply, &QNetworkReply::finished, &application, &QCoreApplication::quit);
        QCoreApplication::exec();
        if (reply->error() != QNetworkReply::NoError || reply->readAll().isEmpty()) {
            std::fprintf(stderr, "%s\n", qPrintable(reply->errorString()));
            return 1;
        }
        reply->deleteLater();
    }
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        std::fputs("There is no session bus.\n", stderr);
        return 1;
    }
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
