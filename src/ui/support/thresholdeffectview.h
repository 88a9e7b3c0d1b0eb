// What a change of thresholds does, in two lines.
#pragma once

#include "app/roster/rostercache.h"

#include <QWidget>

class QLabel;

namespace ellwynd {

class Appearance;

/// Says how many students are flagged instead of how many, and who becomes what, compared with the
/// time when the view began.
class ThresholdEffectView : public QWidget {
    Q_OBJECT

  public:
    /// @param rosters the courses in memory. The references must outlive this object.
    ThresholdEffectView(
        const RosterCache &rosters, const Appearance &appearance, QWidget *parent = nullptr);

    /// Compares with the courses as scored now.
    /// @param thresholds those that will be changed, as they are now.
    /// @param courseID the only course that they are about; absent for all.
    void
    begin(const CourseThresholds &thresholds, std::optional<std::int64_t> courseID = std::nullopt);
    /// Forgets the courses.
    void end();
    /// Shows the effect; call when the courses were scored again.
    /// @param thresholds as they are now; nothing is shown while they are those of the beginning.
    void showEffect(const CourseThresholds &thresholds);

  private:
    const RosterCache &rosters;
    RosterCache before;
    CourseThresholds thresholdsBefore;
    QLabel *title;
    QLabel *names;
};

} // namespace ellwynd
