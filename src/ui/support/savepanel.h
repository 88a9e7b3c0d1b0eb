// The panel in which the teacher chooses where a file is saved.
#pragma once

#include "preferences/userdefaults.h"

#include <QString>

class QFileDialog;
class QWidget;

namespace ellwynd {

struct SaveRequest {
    QString title;
    /// "text/csv".
    QString type;
    /// "csv".
    QString suffix;
    /// The suggested name.
    std::string fileName;
};

/// A panel that deletes itself when it is closed. It opens in the folder of the last file that was
/// saved, at first in the documents folder, and emits `fileSelected`.
/// @param defaults must outlive this object.
[[nodiscard]] QFileDialog *
savePanel(const SaveRequest &request, UserDefaults &defaults, QWidget &parent);

} // namespace ellwynd
