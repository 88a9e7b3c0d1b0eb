// How many students of a term need attention, by level.
#pragma once

#include "outputs/snapshot/widgettexts.h"
#include "theme/visualstyle.h"
#include "uikit/keyboardbutton.h"

namespace ellwynd {

/// A button; clicking it opens the program.
class SummaryView : public KeyboardButton {
    Q_OBJECT

  public:
    explicit SummaryView(QWidget *parent = nullptr);

    /// @param wide whether the number and its caption share a line.
    void present(const WidgetContent &newContent, const VisualStyle &newStyle, bool newWide);
    /// How far the view extends beyond its figures on each side, for its ring.
    [[nodiscard]] int outset() const;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    void drawNumber(QPainter &painter, const QSize &area) const;
    void drawLevels(QPainter &painter, const QSize &area) const;

    WidgetContent content;
    VisualStyle visualStyle;
    bool wide = false;
};

} // namespace ellwynd
