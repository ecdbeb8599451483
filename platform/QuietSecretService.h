#pragma once

#include "platform/GLibOwned.h"

#include <libsecret/secret.h>

namespace roost {

/// libsecret's view of the Secret Service at the other end of `connection`, of a kind that never asks the
/// user anything: what would need a question fails as locked. Blocks while the bus starts the service, if it
/// can; where nobody offers one, this succeeds and the calls fail. Null, and `error` set, on failure.
GOwned<SecretService> quietSecretService(GDBusConnection* connection, GCancellable* stop, GError** error);

} // namespace roost
