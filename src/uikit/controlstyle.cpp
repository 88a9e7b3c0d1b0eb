#include "uikit/controlstyle.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QIconEngine>
#include <QPainter>
#include <QStyleOption>
#include <QTimer>
#include <QWidget>

#include <algorithm>
#include <chrono>

namespace ellwynd {

namespace {

void drawCheckBox(const QStyleOption &option, QPainter &painter) {
    const bool on = option.state.testFlag(QStyle::State_On);
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const QPalette &colors = option.palette;
    const auto group = enabled ? QPalette::Active : QPalette::Disabled;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(option.rect).adjusted(1.5, 1.5, -1.5, -1.5);
    const bool focused = option.state.testFlag(QStyle::State_HasFocus);
    painter.setPen(QPen(
        focused || (on && enabled) ? colors.color(QPalette::Highlight)
                                   : colors.color(QPalette::PlaceholderText),
        focused ? 2 : 1.2));
    painter.setBrush(on && enabled ? colors.highlight() : colors.button());
    painter.drawRoundedRect(box, 4, 4);
    if (on) {
        painter.setPen(QPen(
            enabled ? colors.color(QPalette::HighlightedText) : colors.color(group, QPalette::Text),
            box.width() / 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        const auto at = [&](double x, double y) {
            return QPointF(box.left() + box.width() * x, box.top() + box.height() * y);
        };
        painter.drawPolyline(QPolygonF{at(0.24, 0.53), at(0.43, 0.72), at(0.77, 0.3)});
    }
    painter.restore();
}

/// Says that a narrow menu bar has more menus. Qt's own picture is in a plugin, which would be
/// loaded at every start.
class MoreIcon : public QIconEngine {
  public:
    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(
            QApplication::palette().color(group, QPalette::ButtonText), 1.5, Qt::SolidLine,
            Qt::RoundCap, Qt::RoundJoin));
        const double size = std::min(rect.width(), rect.height());
        const QPointF center = QRectF(rect).center();
        for (const double left : {-0.3, 0.05}) {
            const auto at = [&](double x, double y) {
                return center + QPointF((left + x) * size, y * size);
            };
            painter->drawPolyline(QPolygonF{at(0, -0.25), at(0.25, 0), at(0, 0.25)});
        }
        painter->restore();
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect({}, size), mode, state);
        return picture;
    }
    [[nodiscard]] QIconEngine *clone() const override { return new MoreIcon; }
};

/// The height of the text is the unit of these controls.
int unitOf(const QStyleOption &option) {
    return option.fontMetrics.height();
}

/// As high as a button.
int fieldHeight(int unit) {
    return unit + std::max(12, unit * 3 / 4);
}

/// The background and outline that choices and number fields have in common with buttons.
void drawField(const QStyleOption &option, QPainter &painter, const QBrush &background) {
    const bool focused = option.state.testFlag(QStyle::State_HasFocus);
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const double width = focused ? 2 : 1;
    constexpr double radius = 6;
    painter.setPen(QPen(
        option.palette.color(
            focused       ? QPalette::Highlight
                : enabled ? QPalette::Mid
                          : QPalette::Midlight),
        width));
    painter.setBrush(background);
    const double half = width / 2;
    painter.drawRoundedRect(QRectF(option.rect).adjusted(half, half, -half, -half), radius, radius);
}

/// An angle that points up or down.
void drawChevron(const QStyleOption &option, QPainter &painter, const QRect &area, bool up) {
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const double half = unitOf(option) * 0.22;
    const double rise = up ? -half / 2 : half / 2;
    const QPointF middle = QRectF(area).center();
    painter.setPen(QPen(
        option.palette.color(enabled ? QPalette::PlaceholderText : QPalette::Midlight), 1.5,
        Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(QPolygonF{
        middle + QPointF(-half, -rise), middle + QPointF(0, rise), middle + QPointF(half, -rise)});
}

void drawComboBox(const QStyleOptionComboBox &option, QPainter &painter, const QRect &arrow) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const bool hovered = option.state.testFlag(QStyle::State_MouseOver) &&
        option.state.testFlag(QStyle::State_Enabled);
    drawField(option, painter, option.palette.brush(hovered ? QPalette::Light : QPalette::Button));
    drawChevron(option, painter, arrow, false);
    painter.restore();
}

void drawSpinBox(
    const QStyleOptionSpinBox &option, QPainter &painter, const QRect &up, const QRect &down) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    drawField(option, painter, option.palette.brush(QPalette::Base));
    using Spin = QAbstractSpinBox;
    const auto drawStep = [&](QStyle::SubControl part, const QRect &area, bool isUp,
                              Spin::StepEnabledFlag flag) {
        QStyleOptionSpinBox step = option;
        step.state.setFlag(
            QStyle::State_Enabled,
            option.state.testFlag(QStyle::State_Enabled) && option.stepEnabled.testFlag(flag));
        if (option.activeSubControls == part && step.state.testFlag(QStyle::State_Enabled)) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(option.palette.light());
            constexpr double radius = 4;
            painter.drawRoundedRect(QRectF(area).adjusted(0, 1, -1, -1), radius, radius);
        }
        drawChevron(step, painter, area, isUp);
    };
    drawStep(QStyle::SC_SpinBoxUp, up, true, Spin::StepUpEnabled);
    drawStep(QStyle::SC_SpinBoxDown, down, false, Spin::StepDownEnabled);
    painter.restore();
}

/// Repaints a widget soon; for as long as it is visible, since its painting asks for the next.
void animate(const QWidget *widget) {
    constexpr auto pending = "repaintPending";
    constexpr std::chrono::milliseconds interval(40);
    auto *animated = const_cast<QWidget *>(widget); // NOLINT(cppcoreguidelines-pro-type-const-cast)
    if (animated == nullptr || animated->property(pending).toBool())
        return;
    animated->setProperty(pending, true);
    QTimer::singleShot(interval, animated, [animated] {
        animated->setProperty(pending, false);
        animated->update();
    });
}

/// A thin bar. Without a known end a part of it moves from left to right.
void drawProgressBar(
    const QStyleOptionProgressBar &option, QPainter &painter, const QWidget *widget) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double height = unitOf(option) * 0.35;
    QRectF groove(option.rect);
    groove.setTop(groove.center().y() - height / 2);
    groove.setHeight(height);
    painter.setBrush(option.palette.midlight());
    painter.drawRoundedRect(groove, height / 2, height / 2);
    QRectF filled = groove;
    if (option.maximum > option.minimum) {
        const double share =
            double(option.progress - option.minimum) / double(option.maximum - option.minimum);
        filled.setWidth(groove.width() * std::clamp(share, 0.0, 1.0));
    } else {
        constexpr std::int64_t period = 1500;
        constexpr double part = 0.3;
        const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(
            std::chrono::steady_clock::now().time_since_epoch());
        const double at = double(now.count() % period) / double(period);
        filled.setWidth(groove.width() * part);
        filled.moveLeft(groove.left() + groove.width() * (at * (1 + part) - part));
        filled &= groove;
        animate(widget);
    }
    painter.setBrush(option.palette.highlight());
    painter.drawRoundedRect(filled, height / 2, height / 2);
    painter.restore();
}

} // namespace

ControlStyle::ControlStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void ControlStyle::drawPrimitive(
    PrimitiveElement element, const QStyleOption *option, QPainter *painter,
    const QWidget *widget) const {
    if (element == PE_IndicatorCheckBox)
        drawCheckBox(*option, *painter);
    else
        QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void ControlStyle::polish(QWidget *widget) {
    QProxyStyle::polish(widget);
    // A style sheet computes the size of number fields itself, for narrow buttons.
    if (auto *spin = qobject_cast<QAbstractSpinBox *>(widget)) {
        const int unit = spin->fontMetrics().height();
        spin->setMinimumSize(spin->sizeHint().width() + unit * 5 / 4, fieldHeight(unit));
    }
}

void ControlStyle::drawControl(
    ControlElement element, const QStyleOption *option, QPainter *painter,
    const QWidget *widget) const {
    const auto *progress = qstyleoption_cast<const QStyleOptionProgressBar *>(option);
    if (element == CE_ProgressBar && progress != nullptr)
        drawProgressBar(*progress, *painter, widget);
    else
        QProxyStyle::drawControl(element, option, painter, widget);
}

void ControlStyle::drawComplexControl(
    ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
    const QWidget *widget) const {
    const auto *combo = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    const auto *spin = qstyleoption_cast<const QStyleOptionSpinBox *>(option);
    if (control == CC_ComboBox && combo != nullptr)
        drawComboBox(*combo, *painter, subControlRect(control, option, SC_ComboBoxArrow, widget));
    else if (control == CC_SpinBox && spin != nullptr)
        drawSpinBox(
            *spin, *painter, subControlRect(control, option, SC_SpinBoxUp, widget),
            subControlRect(control, option, SC_SpinBoxDown, widget));
    else
        QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect ControlStyle::subControlRect(
    ComplexControl control, const QStyleOptionComplex *option, SubControl part,
    const QWidget *widget) const {
    const QRect whole = option->rect;
    const int unit = unitOf(*option);
    // For the arrows at the right, or at the left in a right-to-left layout.
    const QRect arrows(whole.right() - unit * 3 / 2, whole.top(), unit * 3 / 2, whole.height());
    const QRect text(
        whole.left() + unit / 2, whole.top(), arrows.left() - whole.left() - unit / 2,
        whole.height());
    const auto placed = [&](const QRect &rect) {
        return visualRect(option->direction, whole, rect);
    };
    if (control == CC_ComboBox && part == SC_ComboBoxArrow)
        return placed(arrows);
    if (control == CC_ComboBox && part == SC_ComboBoxEditField)
        return placed(text);
    if (control == CC_SpinBox) {
        const int middle = whole.center().y();
        switch (part) {
        case SC_SpinBoxUp:
            return placed(QRect(arrows.topLeft(), QPoint(arrows.right(), middle)));
        case SC_SpinBoxDown:
            return placed(QRect(QPoint(arrows.left(), middle + 1), arrows.bottomRight()));
        case SC_SpinBoxEditField:
            return placed(text.adjusted(0, 2, 0, -2));
        default:
            break;
        }
    }
    return QProxyStyle::subControlRect(control, option, part, widget);
}

QSize ControlStyle::sizeFromContents(
    ContentsType type, const QStyleOption *option, const QSize &contents,
    const QWidget *widget) const {
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    const int unit = unitOf(*option);
    if (type == CT_ComboBox)
        return {std::max(size.width(), contents.width() + unit * 5 / 2), fieldHeight(unit)};
    if (type == CT_ProgressBar)
        return {size.width(), unit / 2};
    return size;
}

QIcon ControlStyle::standardIcon(
    StandardPixmap which, const QStyleOption *option, const QWidget *widget) const {
    if (which == SP_ToolBarHorizontalExtensionButton)
        return QIcon(new MoreIcon);
    return QProxyStyle::standardIcon(which, option, widget);
}

int ControlStyle::pixelMetric(
    PixelMetric metric, const QStyleOption *option, const QWidget *widget) const {
    const QFontMetrics metrics(widget != nullptr ? widget->font() : QApplication::font());
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return metrics.height() + 2;
    case PM_SmallIconSize:
    case PM_ButtonIconSize:
        return metrics.height();
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

} // namespace ellwynd
