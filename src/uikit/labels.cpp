#include "uikit/labels.h"

#include "uikit/tooltip.h"

#include <QEvent>
#include <QFontMetrics>
#include <QStyle>

namespace ellwynd {

QLabel *plainLabel(QWidget *parent, bool wraps) {
    auto *label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(wraps);
    return label;
}

QLabel *secondaryLabel(QWidget *parent, const QString &text, bool wraps) {
    auto *label = plainLabel(parent, wraps);
    label->setProperty("secondary", true);
    label->setText(text);
    return label;
}

void showStatus(QLabel &label, const QString &text, bool failed) {
    label.setProperty("secondary", !failed);
    label.setProperty("attention", failed);
    // Style sheets evaluate properties only when a widget is polished.
    label.style()->unpolish(&label);
    label.style()->polish(&label);
    label.setText(text);
}

ElidedLabel::ElidedLabel(QWidget *parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ElidedLabel::setFullText(const QString &text) {
    full = text;
    full.replace(u'\n', u' ');
    setAccessibleName(full);
    updateGeometry();
    elide();
}

QSize ElidedLabel::sizeHint() const {
    return {fontMetrics().horizontalAdvance(full) + 2, QLabel::sizeHint().height()};
}

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 6, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::resizeEvent(QResizeEvent *event) {
    QLabel::resizeEvent(event);
    elide();
}

void ElidedLabel::changeEvent(QEvent *event) {
    QLabel::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        updateGeometry();
        elide();
    }
}

void ElidedLabel::elide() {
    const QString shown = fontMetrics().elidedText(full, Qt::ElideRight, contentsRect().width());
    setText(shown);
    setToolTip(shown == full ? QString() : plainToolTip(full));
}

} // namespace ellwynd
