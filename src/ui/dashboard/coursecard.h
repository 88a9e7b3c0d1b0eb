// One course on the dashboard.
#pragma once

#include "app/dashboard/dashboardmodel.h"
#include "uikit/keyboardbutton.h"

namespace ellwynd {

class Appearance;

/// A button that opens its course. It shows how many students are flagged, at which levels, how
/// many moved, the last two weeks, and the most missed work. It paints itself, so that a page of
/// many cards updates without flicker.
class CourseCard : public KeyboardButton {
    Q_OBJECT

  public:
    /// @param defaults hold the course's icon. The arguments must outlive the card.
    CourseCard(
        const UserDefaults &defaults, const Appearance &appearance, QWidget *parent = nullptr);

    void setCard(const DashboardCourseCard &card);
    /// Shows the course's name alone, until its figures are known.
    void setPlaceholder(const Course &course);
    [[nodiscard]] std::int64_t courseID() const { return card.courseID; }
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;
    void enterEvent(QEnterEvent *event) override;
    void leaveEvent(QEvent *event) override;
    bool event(QEvent *event) override;

  private:
    /// A line of text that begins at `top`, in units of the text size.
    [[nodiscard]] QRect line(double top) const;
    [[nodiscard]] QRect trendArea() const;
    [[nodiscard]] QRect mostMissedArea() const;
    void drawPlaceholder(QPainter &painter) const;
    /// Draws the number of flagged students, and returns the left edge.
    int drawCount(QPainter &painter) const;
    void drawBar(QPainter &painter) const;
    void drawLevels(QPainter &painter) const;
    void drawMovement(QPainter &painter) const;
    void drawTrend(QPainter &painter) const;
    void drawMostMissed(QPainter &painter) const;

    const UserDefaults &defaults;
    const Appearance &appearance;
    DashboardCourseCard card;
    bool isPlaceholder = false;
    bool hovered = false;
};

} // namespace ellwynd
