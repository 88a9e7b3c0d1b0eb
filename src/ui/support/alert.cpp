#include "ui/support/alert.h"

#include "theme/applicationicon.h"

#include <QLabel>
#include <QMessageBox>
#include <QStyle>

namespace ellwynd {

QMessageBox *plainAlert(QWidget *window, const QString &message, const QString &detail) {
    auto *box = new QMessageBox(
        QMessageBox::Information, QStringLiteral("Ellwynd"), message, QMessageBox::NoButton,
        window);
    box->setInformativeText(detail);
    const int side = box->style()->pixelMetric(QStyle::PM_MessageBoxIconSize, nullptr, box);
    box->setIconPixmap(applicationIcon().pixmap(QSize(side, side), box->devicePixelRatioF()));
    // QMessageBox::setTextFormat does not apply to the informative text.
    for (QLabel *label : box->findChildren<QLabel *>())
        label->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}

} // namespace ellwynd
