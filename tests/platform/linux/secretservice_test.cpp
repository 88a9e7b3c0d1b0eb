// Runs in a session with a real secret service; see support/with-keyring.
#include "platform/linux/secretservice.h"
#include "support/keyring.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

constexpr const char *service = "com.varnok.Ellwynd.test";

/// What reading ends with: the status of its error, or 0.
int statusOfReading(const std::string &account) {
    SecretService secrets;
    try {
        (void)secrets.read(service, account);
    } catch (const KeychainError &error) {
        return error.status();
    }
    return 0;
}

// One test in order: a keyring that was locked or killed stays so.
TEST(SecretService, KeepsSecretsAndTellsItsTroublesApart) {
    SecretService secrets;
    EXPECT_EQ(secrets.read(service, "h.example"), std::nullopt);
    secrets.remove(service, "h.example");
    secrets.save("first", service, "h.example");
    secrets.save(
        std::string("s\xc3\xa4"
                    "cond"),
        service, "h.example");
    secrets.save("other", service, "o.example");
    EXPECT_EQ(
        secrets.read(service, "h.example"),
        "s\xc3\xa4"
        "cond");
    EXPECT_EQ(secrets.read(service, "o.example"), "other");
    EXPECT_EQ(secrets.read("another.service", "h.example"), std::nullopt);
    secrets.remove(service, "o.example");
    EXPECT_EQ(secrets.read(service, "o.example"), std::nullopt);
    EXPECT_EQ(
        secrets.read(service, "h.example"),
        "s\xc3\xa4"
        "cond");

    test::lockKeyring();
    const int locked = statusOfReading("h.example");
    EXPECT_TRUE(locked == KeychainError::locked || locked == KeychainError::dismissed) << locked;
    EXPECT_THROW(secrets.remove(service, "h.example"), KeychainError) << "not deleted, not silent";
    EXPECT_THROW(secrets.save("third", service, "h.example"), KeychainError);
    EXPECT_EQ(statusOfReading("nobody.example"), 0) << "nothing is saved, locked or not";

    test::unlockKeyring();
    EXPECT_EQ(statusOfReading("h.example"), 0);

    test::killKeyring();
    // Gone, or started anew by the bus and locked: never "no token".
    EXPECT_NE(statusOfReading("h.example"), 0);
}

} // namespace
} // namespace ellwynd
