#include "ui/support/sheet.h"

#include "ui/support/appearance.h"
#include "uikit/labels.h"

#include <QEvent>
#include <QVBoxLayout>

namespace ellwynd {

Sheet::Sheet(
    const QString &title, const QString &heading, const Appearance &appearance, QWidget *parent)
    : QDialog(parent), contents(new QVBoxLayout(this)) {
    setWindowTitle(title);
    setWindowModality(Qt::WindowModal);
    setAttribute(Qt::WA_DeleteOnClose);
    const int margin = appearance.px(20);
    contents->setContentsMargins(margin, margin, margin, margin);
    contents->setSpacing(appearance.px(9));
    auto *label = plainLabel(this);
    label->setFont(appearance.font(1.22, QFont::Bold));
    label->setText(heading);
    contents->addWidget(label);
}

void Sheet::resizeEvent(QResizeEvent *event) {
    QDialog::resizeEvent(event);
    fitHeight();
}

bool Sheet::event(QEvent *event) {
    const bool isHandled = QDialog::event(event);
    // A text was shown or changed.
    if (event->type() == QEvent::LayoutRequest)
        fitHeight();
    return isHandled;
}

void Sheet::fitHeight() {
    // A layout's size hint ignores that wrapped labels need more than one line.
    if (contents->hasHeightForWidth())
        setMinimumHeight(contents->minimumHeightForWidth(width()));
}

} // namespace ellwynd
