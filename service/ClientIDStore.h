#pragma once

#include "model/WebURL.h"
#include "service/SecretStore.h"

#include <QCoro/QCoroTask>

#include <expected>
#include <map>
#include <optional>
#include <string>

namespace roost {

/// The client ids of this installation, one per issuer, in the secret store under "client-id|" and the
/// issuer. An id that could not be stored serves until the program ends. Main thread; outlives its tasks.
class ClientIDStore {
public:
    explicit ClientIDStore(SecretStore& secrets) : secrets_(&secrets) {}

    /// The id for `issuer`; nothing when there is none or an empty one. Fails while it cannot be told.
    QCoro::Task<std::expected<std::optional<std::string>, SecretsUnavailable>> find(WebURL issuer);

    /// Keeps `id`, at least for this run.
    QCoro::Task<void> keep(WebURL issuer, std::string id);

    QCoro::Task<void> forget(WebURL issuer);

    /// Tries once more to store what the store did not take. True when it has all of it.
    QCoro::Task<bool> storeAgain();

private:
    SecretStore* secrets_;
    /// By key: the ids that the store did not take, and those that it gave while it was there.
    std::map<std::string, std::string> unstored_;
    std::map<std::string, std::string> found_;
};

} // namespace roost
