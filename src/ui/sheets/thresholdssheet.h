// "Risk Thresholds…": the thresholds of one course.
#pragma once

#include "app/undo/preferenceedit.h"
#include "risk/coursethresholds.h"
#include "ui/support/sheet.h"

class QCheckBox;
class QLabel;
class QPushButton;

namespace ellwynd {

class Appearance;
class ThresholdEditor;
class ThresholdEffectView;
struct RosterCache;

/// Edits one course's thresholds. Every change is saved at once, and the roster is scored again.
class ThresholdsSheet : public Sheet {
    Q_OBJECT

  public:
    /// @param rosters the courses in memory. The references must outlive this object.
    ThresholdsSheet(
        std::int64_t courseID, const std::string &courseName, const RosterCache &rosters,
        UserDefaults &defaults, const Appearance &appearance, QWidget *parent);

    /// Call when the course was scored again.
    void showEffect();
    void done(int result) override;

  Q_SIGNALS:
    /// The sheet was closed.
    /// @param edit what it has changed; may be empty.
    void editDidEnd(const ellwynd::PreferenceEdit &edit);

  private:
    /// Sets every control from the preferences.
    void showThresholds();
    void writePassing();
    void writeInactivity();
    void write(std::string_view suffix, std::optional<PreferenceValue> value);

    std::int64_t courseID;
    UserDefaults &defaults;
    QLabel *summary;
    ThresholdEffectView *effect;
    QCheckBox *ownPassing;
    ThresholdEditor *passing;
    QCheckBox *ownInactivity;
    ThresholdEditor *inactivity;
    QPushButton *followDefaults;
    PreferenceEdit edit;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
