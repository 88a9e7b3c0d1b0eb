// Starting other programs that outlive this process.
#pragma once

#include <QStringList>

#include <optional>
#include <string>

namespace ellwynd {

/// Starts the executable `program` as an independent process. Returns an error message that names
/// it; absent on success.
[[nodiscard]] std::optional<std::string>
startDetached(const QString &program, const QStringList &arguments = {});

} // namespace ellwynd
