#pragma once

#include "platform/KeyringSession.h"

namespace roost {

/// Asks the user to open the default collection, or to make one where there is none, and waits until the
/// question is off the screen, the service has gone or `stop` is cancelled. True when the collection is open
/// then. A question is never taken back: to cancel one that is on the screen can bring the service down. It
/// goes with the connection. Keyring thread.
KeyringResult<bool> openByAsking(KeyringSession& session, GCancellable* stop);

} // namespace roost
