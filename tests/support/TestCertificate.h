#pragma once

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>

namespace roost::test {

/// A certificate that nobody vouches for, with its key: made anew by the openssl program, for a day.
struct TestCertificate {
    /// For a server of these names, in the form of openssl: "IP:127.0.0.1,DNS:localhost". Throws when it
    /// cannot be made.
    static TestCertificate make(const QString& names);

    /// What a server needs to show it.
    QSslConfiguration forServer() const;

    QSslCertificate certificate;
    QSslKey key;
};

/// Has every TLS connection of the process trust `certificate` as long as it lives.
class ScopedTrust {
public:
    explicit ScopedTrust(const QSslCertificate& certificate);
    ~ScopedTrust();

    ScopedTrust(const ScopedTrust&) = delete;
    ScopedTrust& operator=(const ScopedTrust&) = delete;

private:
    QSslConfiguration previous_;
};

} // namespace roost::test
