#include "platform/KeyringFailure.h"

#include <gmock/gmock.h>
#include <libsecret/secret.h>

namespace roost::test {

namespace {

using Why = SecretsUnavailable::Why;

KeyringFailure failureWith(GQuark domain, int code)
{
    GError* error = g_error_new_literal(domain, code, "told by a test");
    const KeyringFailure failure = failureOf(error);
    g_error_free(error);
    return failure;
}

} // namespace

TEST(KeyringFailure, TellsALockedKeyringFromEverythingElse)
{
    EXPECT_EQ(failureWith(SECRET_ERROR, SECRET_ERROR_IS_LOCKED), KeyringFailure::locked);
    EXPECT_EQ(failureWith(SECRET_ERROR, SECRET_ERROR_NO_SUCH_OBJECT), KeyringFailure::refused);
    EXPECT_EQ(failureWith(SECRET_ERROR, SECRET_ERROR_PROTOCOL), KeyringFailure::refused);
}

TEST(KeyringFailure, TellsAMissingServiceFromOneThatDoesNotAnswer)
{
    EXPECT_EQ(failureWith(G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN), KeyringFailure::noService);
    EXPECT_EQ(failureWith(G_DBUS_ERROR, G_DBUS_ERROR_SPAWN_EXEC_FAILED), KeyringFailure::noService);
    EXPECT_EQ(failureWith(G_DBUS_ERROR, G_DBUS_ERROR_NO_REPLY), KeyringFailure::notAnswering);
    EXPECT_EQ(failureWith(G_DBUS_ERROR, G_DBUS_ERROR_TIMED_OUT), KeyringFailure::notAnswering);
    EXPECT_EQ(failureWith(G_IO_ERROR, G_IO_ERROR_CANCELLED), KeyringFailure::notAnswering);
    EXPECT_EQ(failureWith(G_IO_ERROR, G_IO_ERROR_CLOSED), KeyringFailure::notAnswering);
    EXPECT_EQ(failureWith(G_DBUS_ERROR, G_DBUS_ERROR_ACCESS_DENIED), KeyringFailure::refused);
}

TEST(KeyringFailure, TakesAResultWithoutAnErrorForNoAnswer)
{
    EXPECT_EQ(failureOf(nullptr), KeyringFailure::notAnswering);
}

TEST(KeyringFailure, NeverSaysThatThereIsNoSuchItem)
{
    EXPECT_EQ(unavailableFor(KeyringFailure::locked).why, Why::locked);
    EXPECT_EQ(unavailableFor(KeyringFailure::noService).why, Why::noService);
    EXPECT_EQ(unavailableFor(KeyringFailure::noCollection).why, Why::noService);
    EXPECT_EQ(unavailableFor(KeyringFailure::notAnswering).why, Why::notAnswering);
    EXPECT_EQ(unavailableFor(KeyringFailure::refused).why, Why::notAnswering);
}

TEST(KeyringFailure, HasAStatusOfItsOwnForEach)
{
    EXPECT_EQ(errorFor(KeyringFailure::locked).status, -25308);
    EXPECT_EQ(errorFor(KeyringFailure::noService).status, -25291);
    EXPECT_EQ(errorFor(KeyringFailure::noCollection).status, -25307);
    EXPECT_EQ(errorFor(KeyringFailure::notAnswering).status, -67585);
    EXPECT_EQ(errorFor(KeyringFailure::refused).status, -2070);
}

} // namespace roost::test
