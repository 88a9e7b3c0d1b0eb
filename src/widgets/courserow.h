// A course's row in a widget.
#pragma once

#include "outputs/snapshot/widgettexts.h"
#include "preferences/coursesettings.h"
#include "theme/visualstyle.h"
#include "uikit/keyboardbutton.h"

namespace ellwynd {

/// A button with a course's name and its counts by level; clicking it opens the course.
class CourseRow : public KeyboardButton {
    Q_OBJECT

  public:
    explicit CourseRow(QWidget *parent = nullptr);

    /// @param showsSummary whether "8 flagged" is shown beside the name.
    void present(
        const WidgetRow &newRow, const CourseIcon &newIcon, const VisualStyle &newStyle,
        bool showsSummary);
    [[nodiscard]] const WidgetRow &row() const { return shown; }

  protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    [[nodiscard]] QRect textRect() const;
    [[nodiscard]] QRect nameRect() const;
    void drawCounts(QPainter &painter, const QRect &line) const;
    void updateToolTip();

    WidgetRow shown;
    CourseIcon icon;
    VisualStyle visualStyle;
    bool hasSummary = false;
};

} // namespace ellwynd
