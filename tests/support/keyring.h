// Locks, unlocks and kills the secret service started by with-keyring. Each function throws
// std::runtime_error on failure.
#pragma once

namespace ellwynd::test {

void lockKeyring();
/// Unlocks it with the password from with-keyring, without a prompt.
void unlockKeyring();
/// Kills the service's process.
void killKeyring();

} // namespace ellwynd::test
