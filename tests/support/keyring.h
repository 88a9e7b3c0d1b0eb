// The secret service of a session made by with-keyring: what may happen to it in mid-run. Each call
// throws std::runtime_error when it could not be done.
#pragma once

namespace ellwynd::test {

void lockKeyring();
/// With the password that with-keyring gave it, as if the teacher had typed it.
void unlockKeyring();
/// Ends the service's process at once.
void killKeyring();

} // namespace ellwynd::test
