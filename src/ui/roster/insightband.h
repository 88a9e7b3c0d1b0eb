// The course insight band above a course's roster.
#pragma once

#include "app/roster/courseinsight.h"

#include <QFrame>

class QBoxLayout;
class QToolButton;

namespace ellwynd {

class Appearance;
class TextLink;

/// Two weeks of levels as sparklines and sentences, outreach counts, and the most missed work; or
/// one line with the levels and the most missed assignment.
class InsightBand : public QFrame {
    Q_OBJECT

  public:
    InsightBand(const Appearance &appearance, QWidget *parent = nullptr);

    void setInsight(const CourseInsight &insight);
    void setCollapsed(bool on);

    [[nodiscard]] QSize minimumSizeHint() const override;

  Q_SIGNALS:
    void missingWorkRequested();
    /// The list of the signals that count should be shown.
    void coverageRequested();
    /// Only the students who are missing an assignment should be shown.
    void assignmentRequested(const ellwynd::AssignmentRef &assignment);
    /// The teacher asked for one line, or for the whole band.
    void collapseRequested(bool collapsed);

  protected:
    void resizeEvent(QResizeEvent *event) override;

  private:
    void rebuild();
    void arrange();
    void fitWhole(int available);
    void fitLine(int available);
    void makeWhole();
    QWidget *makeSection(const QString &title, QWidget *content);
    QWidget *makeTrend();
    QWidget *makeOutreach();
    QWidget *makeMostMissed();
    void makeLine();
    [[nodiscard]] TextLink *makeCoverage(QWidget *parent);
    [[nodiscard]] QWidget *makeSparkline(RiskLevel level, QWidget *parent) const;
    [[nodiscard]] TextLink *
    makeAssignmentLink(const MissedAssignment &assignment, const QString &text, QWidget *parent);

    const Appearance &appearance;
    CourseInsight insight;
    bool collapsed = false;
    /// These two are made when they are first shown.
    QWidget *whole = nullptr;
    QBoxLayout *sections = nullptr;
    QWidget *line = nullptr;
    /// The parts of the line that are left out first when it does not fit.
    std::vector<std::vector<QWidget *>> lessImportant;
    QToolButton *toggle;
};

} // namespace ellwynd
