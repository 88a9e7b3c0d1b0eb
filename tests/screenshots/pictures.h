// Writing pictures of windows, and using the windows' controls.
#pragma once

#include <QDir>
#include <QWidget>

#include <string>

namespace ellwynd {

class Appearance;
class UserDefaults;

/// The files of one run.
class Pictures {
  public:
    /// @param folder created if it is not there.
    explicit Pictures(const QString &folder);

    /// The names of the files that follow end with these.
    void begin(const char *appearance, double scale);
    /// Saves a widget once it has handled its events.
    void save(QWidget &widget, const std::string &name);
    void save(const QPixmap &picture, const std::string &name);
    void savePDF(const QByteArray &document, const std::string &name);
    /// Whether a file could not be written.
    [[nodiscard]] bool failed() const { return anyFailed; }

  private:
    [[nodiscard]] QString fileOf(const std::string &name, const char *type) const;
    void report(const QString &file, bool written);

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
