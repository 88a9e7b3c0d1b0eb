// The end of a process that may still run threads.
#pragma once

namespace ellwynd {

/// Flushes the standard streams and ends the process without running exit handlers. Qt's network
/// thread and the keyring's thread may still run code of libraries that exit handlers tear down,
/// which aborts a process after its work is done. Objects of the caller are not destroyed.
[[noreturn]] void endProcess(int status);

} // namespace ellwynd
