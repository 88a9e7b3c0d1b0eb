#include "ui/support/alert.h"

#include <QLabel>
#include <QMessageBox>

namespace ellwynd {

QMessageBox *plainAlert(QWidget *window, const QString &message, const QString &detail) {
    auto *box = new QMessageBox(
        QMessageBox::Information, QStringLiteral("Ellwynd"), message, QMessageBox::NoButton,
        window);
    box->setInformativeText(detail);
    // QMessageBox::setTextFormat does not apply to the informative text.
    for (QLabel *label : box->findChildren<QLabel *>())
        label->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    return box;
}

} // namespace ellwynd
