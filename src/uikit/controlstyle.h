// The Qt style of standard controls.
#pragma once

#include <QProxyStyle>

namespace ellwynd {

/// Fusion with controls of the program's own shape: check boxes, choices, number fields and
/// progress bars that are drawn in the colours of the palette and grow with the text.
class ControlStyle : public QProxyStyle {
    Q_OBJECT

  public:
    ControlStyle();

    using QProxyStyle::polish;
    void polish(QWidget *widget) override;
    void drawPrimitive(
        PrimitiveElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget) const override;
    void drawControl(
        ControlElement element, const QStyleOption *option, QPainter *painter,
        const QWidget *widget) const override;
    void drawComplexControl(
        ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
        const QWidget *widget) const override;
    QRect subControlRect(
        ComplexControl control, const QStyleOptionComplex *option, SubControl part,
        const QWidget *widget) const override;
    QSize sizeFromContents(
        ContentsType type, const QStyleOption *option, const QSize &contents,
        const QWidget *widget) const override;
    QIcon standardIcon(
        StandardPixmap which, const QStyleOption *option, const QWidget *widget) const override;
    int pixelMetric(
        PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
};

} // namespace ellwynd
