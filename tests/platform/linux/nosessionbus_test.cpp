// A desktop without a session bus, as the tests run in unless they bring their own.
#include "platform/linux/secretservice.h"

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

TEST(SecretService, WithoutABusIsUnavailable) {
    SecretService service;
    try {
        (void)service.read("s", "a");
        FAIL() << "read without a bus";
    } catch (const KeychainError &error) {
        EXPECT_EQ(error.status(), KeychainError::unavailable) << error.what();
    }
}

} // namespace
} // namespace ellwynd
