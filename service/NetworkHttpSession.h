#pragma once

#include "service/HttpSession.h"

#include <QNetworkAccessManager>
#include <QObject>

#include <memory>

namespace roost {

/// The `HttpSession` of the real network, over Qt Network: HTTP/1.1, TLS by the system's trust store with no
/// error ever ignored, the system's proxy for everything but this machine itself.
///
/// Qt tells of a 401 only when its body has come too; until then that answer counts as under way.
class NetworkHttpSession final : public HttpSession {
public:
    NetworkHttpSession();
    /// Ends what is in flight as cancelled: who awaits it goes on before this returns. Requests from then on
    /// are cancelled too.
    ~NetworkHttpSession() override;

    NetworkHttpSession(const NetworkHttpSession&) = delete;
    NetworkHttpSession& operator=(const NetworkHttpSession&) = delete;

    QCoro::Task<HttpResult> send(HttpRequest request, std::stop_token stop) override;

private:
    QNetworkAccessManager manager_;
    /// Parent of the exchanges; nothing once the session is being destroyed.
    std::unique_ptr<QObject> exchanges_;
};

} // namespace roost
