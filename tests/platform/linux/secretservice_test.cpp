// Runs in a session with a real secret service; see support/with-keyring.
#include "platform/linux/secretservice.h"
#include "support/keyring.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

constexpr const char *service = "com.varnok.Ellwynd.test";

/// The status of the error that reading throws, or 0.
int statusOfReading(const std::string &account, const SecretAccess &access = {}) {
    SecretService secrets;
    try {
        (void)secrets.read(service, account, access);
    } catch (const KeychainError &error) {
        return error.status();
    }
    return 0;
}

// A single test, since locking or killing the keyring cannot be undone for other tests.
TEST(SecretService, StoresSecretsAndDistinguishesErrors) {
    SecretService secrets;
    EXPECT_EQ(secrets.read(service, "h.example", {}), std::nullopt);
    secrets.remove(service, "h.example", {});
    secrets.save("first", service, "h.example", {});
    const std::string second = "s\u00e4cond";
    secrets.save(second, service, "h.example", {});
    secrets.save("other", service, "o.example", {});
    EXPECT_EQ(secrets.read(service, "h.example", {}), second);
    EXPECT_EQ(secrets.read(service, "o.example", {}), "other");
    EXPECT_EQ(secrets.read("another.service", "h.example", {}), std::nullopt);
    secrets.remove(service, "o.example", {});
    EXPECT_EQ(secrets.read(service, "o.example", {}), std::nullopt);
    EXPECT_EQ(secrets.read(service, "h.example", {}), second);

    test::lockKeyring();
    const int locked = statusOfReading("h.example");
    EXPECT_TRUE(locked == KeychainError::locked || locked == KeychainError::dismissed) << locked;
    EXPECT_EQ(statusOfReading("h.example", {.prompt = UnlockPrompt::never}), KeychainError::locked);
    EXPECT_THROW(secrets.remove(service, "h.example", {}), KeychainError) << "cannot be deleted";
    EXPECT_THROW(secrets.save("third", service, "h.example", {}), KeychainError);
    EXPECT_EQ(statusOfReading("nobody.example"), 0) << "nothing is saved, locked or not";

    test::unlockKeyring();
    EXPECT_EQ(statusOfReading("h.example"), 0);

    test::killKeyring();
    // Unavailable, or restarted by the bus and locked: an error, never "no secret".
    EXPECT_NE(statusOfReading("h.example"), 0);
}

} // namespace
} // namespace ellwynd
