// The images that are compiled into this module.
#pragma once

#include <QByteArray>
#include <QString>

namespace ellwynd {

/// @param path relative to the module's resources: "glyphs/flask.svg".
/// @return the file's contents; empty if it does not exist.
[[nodiscard]] QByteArray resourceFile(const QString &path);

} // namespace ellwynd
