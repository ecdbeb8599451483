#pragma once

#include "service/HttpSession.h"

#include <QObject>

#include <memory>

namespace roost {

/// The `HttpSession` of the real network: HTTP/1.1 over Qt's sockets, one connection per request, TLS by the
/// system's trust store with no error ever ignored, through the system's proxy except to this machine itself.
///
/// Qt's own HTTP client was found unfit: it holds the head of a 401 back until its body has come, and keeps
/// that body in memory whatever its size; it gives an answer that is not HTTP for a lost connection; and it
/// sends a request again when the peer closes without an answer.
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
    /// Parent of the exchanges; nothing once the session is being destroyed.
    std::unique_ptr<QObject> exchanges_;
};

} // namespace roost
