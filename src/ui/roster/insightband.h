// The course insight band above a course's roster.
#pragma once

#include "app/roster/courseinsight.h"

#include <QFrame>

class QBoxLayout;
class QGridLayout;
class QLabel;
class QToolButton;

namespace ellwynd {

class Appearance;
class ElidedLabel;
class Sparkline;

/// Two weeks of levels as sparklines and sentences, outreach counts, and the most missed work. It
/// is reduced to one line when it does not fit or when the teacher collapses it.
class InsightBand : public QFrame {
    Q_OBJECT

  public:
    InsightBand(const Appearance &appearance, QWidget *parent = nullptr);

    void setInsight(const CourseInsight &insight);
    void setCollapsed(bool on);

    [[nodiscard]] QSize minimumSizeHint() const override;

  Q_SIGNALS:
    void missingWorkRequested();
    /// The teacher asked for one line, or for the whole band.
    void collapseRequested(bool collapsed);

  protected:
    void resizeEvent(QResizeEvent *event) override;

  private:
    void rebuild();
    void arrange();
    QWidget *makeSection(const QString &title, QWidget *content);
    QWidget *makeTrend();
    QWidget *makeOutreach();
    QWidget *makeMostMissed();

    const Appearance &appearance;
    CourseInsight insight;
    bool collapsed = false;
    QWidget *whole = nullptr;
    ElidedLabel *brief;
    QToolButton *toggle;
};

} // namespace ellwynd
