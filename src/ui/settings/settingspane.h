// What every pane of the settings window is made of.
#pragma once

#include "preferences/userdefaults.h"

#include <QWidget>

class QLabel;
class QVBoxLayout;

namespace ellwynd {

class Appearance;

/// A pane with a heading and rows of a label and its control. It shows the preferences as they are
/// now, whoever changed them.
class SettingsPane : public QWidget {
    Q_OBJECT

  public:
    SettingsPane(const QString &title, UserDefaults &defaults, const Appearance &appearance);

  protected:
    /// Sets every control from the preferences; a pane calls it once it is made, and after every
    /// change of a preference it is called again.
    virtual void showPreferences() = 0;

    /// A label with its control; the label also names the control where it has no name of its own.
    QLabel *addRow(const QString &label, QWidget *control, const QString &unit = {});
    QLabel *addNote(const QString &text);
    void addWidget(QWidget *widget);
    [[nodiscard]] QVBoxLayout &column() const { return *contents; }

    UserDefaults &defaults;
    const Appearance &appearance;

  private:
    QVBoxLayout *contents;
    std::vector<QLabel *> labels;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
