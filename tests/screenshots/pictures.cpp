#include "pictures.h"

#include <QAction>
#include <QApplication>
#include <QPushButton>

#include <fmt/format.h>

namespace ellwynd {

Pictures::Pictures(const QString &folder) : target(folder) {
    QDir().mkpath(folder);
}

void Pictures::begin(const char *appearance, double scale) {
    suffix = QString::fromUtf8(appearance) +
        (scale == 1.0 ? QString() : QStringLiteral("-x%1").arg(scale));
}

void Pictures::save(QWidget &widget, const char *name) {
    settle();
    const QString file =
        target.filePath(QStringLiteral("%1-%2.png").arg(QString::fromUtf8(name), suffix));
    const bool written = widget.grab().save(file);
    anyFailed = anyFailed || !written;
    fmt::print("{}{}\n", written ? "" : "not written: ", file.toStdString());
}

void Pictures::savePDF(const PrintedDocument &document, const char *name) {
    QFile file(target.filePath(QStringLiteral("%1-%2.pdf").arg(QString::fromUtf8(name), suffix)));
    const bool written = file.open(QIODevice::WriteOnly) && file.write(pdf(document)) > 0;
    anyFailed = anyFailed || !written;
    fmt::print("{}\n", file.fileName().toStdString());
}

void settle() {
    for (int i = 0; i < 8; ++i)
        QApplication::processEvents(QEventLoop::AllEvents, 20);
}

void press(QWidget &window, const char *text) {
    for (auto *button : window.findChildren<QPushButton *>()) {
        if (button->text() == QString::fromUtf8(text))
            button->click();
    }
    settle();
}

void trigger(QWidget &window, const char *text) {
    for (QAction *command : window.findChildren<QAction *>()) {
        if (QString(command->text()).remove(u'&') == QString::fromUtf8(text))
            command->trigger();
    }
    settle();
}

} // namespace ellwynd
