// How many students of a term need attention, by level.
#pragma once

#include "outputs/snapshot/widgettexts.h"
#include "theme/visualstyle.h"

#include <QWidget>

namespace ellwynd {

class SummaryView : public QWidget {
    Q_OBJECT

  public:
    explicit SummaryView(QWidget *parent = nullptr);

    /// @param wide whether the number and its caption share a line.
    void present(const WidgetContent &newContent, const VisualStyle &newStyle, bool newWide);

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    void drawNumber(QPainter &painter) const;
    void drawLevels(QPainter &painter) const;

    WidgetContent content;
    VisualStyle visualStyle;
    bool wide = false;
};

} // namespace ellwynd
