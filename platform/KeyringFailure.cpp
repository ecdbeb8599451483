#include "platform/KeyringFailure.h"

#include <libsecret/secret.h>

namespace roost {

namespace {

KeyringFailure ofTheBus(int code)
{
    switch (code) {
    case G_DBUS_ERROR_SERVICE_UNKNOWN:
    case G_DBUS_ERROR_NAME_HAS_NO_OWNER:
    case G_DBUS_ERROR_SPAWN_EXEC_FAILED:
    case G_DBUS_ERROR_SPAWN_FORK_FAILED:
    case G_DBUS_ERROR_SPAWN_CHILD_EXITED:
    case G_DBUS_ERROR_SPAWN_CHILD_SIGNALED:
    case G_DBUS_ERROR_SPAWN_FAILED:
    case G_DBUS_ERROR_SPAWN_SETUP_FAILED:
    case G_DBUS_ERROR_SPAWN_CONFIG_INVALID:
    case G_DBUS_ERROR_SPAWN_SERVICE_INVALID:
    case G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND:
    case G_DBUS_ERROR_SPAWN_PERMISSIONS_INVALID:
    case G_DBUS_ERROR_SPAWN_FILE_INVALID:
    case G_DBUS_ERROR_SPAWN_NO_MEMORY:
        return KeyringFailure::noService;
    case G_DBUS_ERROR_NO_REPLY:
    case G_DBUS_ERROR_TIMEOUT:
    case G_DBUS_ERROR_TIMED_OUT:
    case G_DBUS_ERROR_DISCONNECTED:
        return KeyringFailure::notAnswering;
    default:
        return KeyringFailure::refused;
    }
}

KeyringFailure ofTheConnection(int code)
{
    switch (code) {
    case G_IO_ERROR_CANCELLED:
    case G_IO_ERROR_CLOSED:
    case G_IO_ERROR_TIMED_OUT:
    case G_IO_ERROR_BROKEN_PIPE:
        return KeyringFailure::notAnswering;
    default:
        return KeyringFailure::refused;
    }
}

} // namespace

KeyringFailure failureOf(const GError* error)
{
    if (error == nullptr) {
        return KeyringFailure::notAnswering;
    }
    if (g_error_matches(error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED) != FALSE) {
        return KeyringFailure::locked;
    }
    if (error->domain == G_DBUS_ERROR) {
        return ofTheBus(error->code);
    }
    return error->domain == G_IO_ERROR ? ofTheConnection(error->code) : KeyringFailure::refused;
}

SecretsUnavailable unavailableFor(KeyringFailure failure)
{
    switch (failure) {
    case KeyringFailure::locked:
        return {SecretsUnavailable::Why::locked};
    case KeyringFailure::noService:
    case KeyringFailure::noCollection:
        return {SecretsUnavailable::Why::noService};
    case KeyringFailure::notAnswering:
    case KeyringFailure::refused:
        break;
    }
    return {SecretsUnavailable::Why::notAnswering};
}

KeychainError errorFor(KeyringFailure failure)
{
    switch (failure) {
    case KeyringFailure::locked:
        return {KeychainError::interactionNotAllowed};
    case KeyringFailure::noService:
        return {KeychainError::notAvailable};
    case KeyringFailure::noCollection:
        return {KeychainError::noDefaultKeychain};
    case KeyringFailure::notAnswering:
        return {KeychainError::serviceNotAvailable};
    case KeyringFailure::refused:
        break;
    }
    return {KeychainError::internalComponent};
}

} // namespace roost
