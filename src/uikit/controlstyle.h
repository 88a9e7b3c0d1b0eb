// The Qt style of standard controls.
#pragma once

#include <QProxyStyle>

namespace ellwynd {

/// Fusion, with check boxes that are visible in dark themes and controls that grow with the text.
class ControlStyle : public QProxyStyle {
    Q_OBJECT

  public:
    ControlStyle();

    void drawPrimitive(
        PrimitiveElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget) const override;
    int pixelMetric(
        PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
};

} // namespace ellwynd
