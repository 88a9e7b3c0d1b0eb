// The band above a course's roster.
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

/// Two weeks of levels as lines and in words, what outreach has reached, and the work most of the
/// class is missing. Where there is no room for all of it, or when the teacher shrinks it, one line
/// says the same in short.
class InsightBand : public QFrame {
    Q_OBJECT

  public:
    InsightBand(const Appearance &appearance, QWidget *parent = nullptr);

    void setInsight(const CourseInsight &insight);
    void setShrunk(bool on);

    [[nodiscard]] QSize minimumSizeHint() const override;

  Q_SIGNALS:
    void missingWorkRequested();
    /// The teacher asked for the short form, or for the whole band.
    void shrinkRequested(bool shrunk);

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
    bool shrunk = false;
    QWidget *whole = nullptr;
    ElidedLabel *brief;
    QToolButton *toggle;
};

} // namespace ellwynd
