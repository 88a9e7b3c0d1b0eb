// A desktop without a session bus, which is how tests run unless they start one.
#include "platform/linux/secretservice.h"

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

TEST(SecretService, IsUnavailableWithoutABus) {
    SecretService service;
    try {
        (void)service.read("s", "a", {});
        FAIL() << "read without a bus";
    } catch (const KeychainError &error) {
        EXPECT_EQ(error.status(), KeychainError::unavailable) << error.what();
    }
}

} // namespace
} // namespace ellwynd
