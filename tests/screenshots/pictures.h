// Writing pictures of windows, and using the windows' controls.
#pragma once

#include "ui/print/printedpages.h"
#include "ui/support/appearance.h"

#include <QDir>

namespace ellwynd {

/// The files of one run.
class Pictures {
  public:
    /// @param folder created if it is not there.
    explicit Pictures(const QString &folder);

    /// The names of the files that follow end with these.
    void begin(const char *appearance, double scale);
    /// Saves a widget once it has handled its events.
    void save(QWidget &widget, const char *name);
    void savePDF(const PrintedDocument &document, const char *name);
    /// Whether a file could not be written.
    [[nodiscard]] bool failed() const { return anyFailed; }

  private:
    QDir target;
    QString suffix;
    bool anyFailed = false;
};

/// Lets the windows handle their events.
void settle();
/// Clicks the buttons of this text.
void press(QWidget &window, const char *text);
/// Triggers the commands of this text.
void trigger(QWidget &window, const char *text);

/// Draws pieces of windows on invented students and courses.
void drawPieces(Pictures &pictures, UserDefaults &defaults, const Appearance &appearance);

} // namespace ellwynd
