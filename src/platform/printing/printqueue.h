// The print queues of the desktop.
#pragma once

#include <string>

namespace ellwynd {

enum class PrintQueueState {
    /// The queue takes jobs, or nothing else is known of it.
    accepting,
    /// The queue exists and takes no jobs.
    refusing,
    /// The print server cannot be reached.
    unreachable,
};

/// Whether a job given to a printer's queue would be taken. Asked before printing, because the
/// toolkit does not report a job that was refused. Blocks until the print server answers, at most
/// about five seconds.
/// @param printer its name, as the toolkit gives it: "Queue" or "Queue/instance".
[[nodiscard]] PrintQueueState printQueueState(const std::string &printer);

} // namespace ellwynd
