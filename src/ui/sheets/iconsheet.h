// "Icon…": the glyph and the colour of one course's tile.
#pragma once

#include "app/undo/preferenceedit.h"
#include "preferences/coursesettings.h"
#include "ui/support/sheet.h"

class QButtonGroup;
class QGridLayout;
class QLabel;
class QPushButton;

namespace ellwynd {

class Appearance;

/// Chooses what a course's tile shows. Every choice is saved at once, so that all views update;
/// Cancel restores the previous values.
class IconSheet : public Sheet {
    Q_OBJECT

  public:
    IconSheet(
        std::int64_t courseID, const std::string &courseName, UserDefaults &defaults,
        const Appearance &appearance, QWidget *parent);

    void accept() override;
    void reject() override;

  Q_SIGNALS:
    /// The teacher has accepted the choice.
    /// @param edit what it has changed; may be empty.
    void editDidEnd(const ellwynd::PreferenceEdit &edit);

  private:
    /// Sets every control from the preferences.
    void showChoice();
    void write(std::string_view suffix, const std::string &word);
    void useDefault();
    void apply(const PreferenceChanges &changes);
    QGridLayout *makeGrid(QButtonGroup &group, std::string_view suffix);

    std::int64_t courseID;
    std::string courseName;
    UserDefaults &defaults;
    const Appearance &appearance;
    QLabel *preview;
    QLabel *description;
    QButtonGroup *icons;
    QButtonGroup *colors;
    QPushButton *followDefault;
    /// Set while `showChoice` updates the controls.
    bool showing = false;
    PreferenceEdit edit;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
