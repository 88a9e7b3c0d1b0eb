// The pictures that are compiled into this module.
#pragma once

#include <QByteArray>
#include <QString>

namespace ellwynd {

/// @param path below the module's resources: "glyphs/flask.svg".
/// @return the file's content; empty when there is no such file.
[[nodiscard]] QByteArray resourceFile(const QString &path);

} // namespace ellwynd
