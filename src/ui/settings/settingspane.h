// The base of every pane of the settings window.
#pragma once

#include "preferences/userdefaults.h"

#include <QWidget>

class QLabel;
class QVBoxLayout;

namespace ellwynd {

class Appearance;

/// A pane with a heading and rows of a label and a control. It follows every change of a
/// preference.
class SettingsPane : public QWidget {
    Q_OBJECT

  public:
    SettingsPane(const QString &title, UserDefaults &defaults, const Appearance &appearance);

  protected:
    /// Sets every control from the preferences. Subclasses call it at the end of their constructor;
    /// it is called again after every change of a preference.
    virtual void showPreferences() = 0;

    /// Adds a label with its control. The label is also the control's accessible name if it has
    /// none.
    QLabel *addRow(const QString &label, QWidget *control, const QString &unit = {});
    QLabel *addNote(const QString &text);
    void addWidget(QWidget *widget);
    /// Adds a widget that gets all the height that is left.
    void addFilling(QWidget *widget);
    [[nodiscard]] QVBoxLayout &column() const { return *contents; }

    UserDefaults &defaults;
    const Appearance &appearance;

  private:
    QVBoxLayout *contents;
    std::vector<QLabel *> labels;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
