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

void Pictures::save(QWidget &widget, const std::string &name) {
    settle();
    save(widget.grab(), name);
}

void Pictures::save(const QPixmap &picture, const std::string &name) {
    const QString file = fileOf(name, "png");
    report(file, picture.save(file));
}

void Pictures::savePDF(const QByteArray &document, const std::string &name) {
    QFile file(fileOf(name, "pdf"));
    report(file.fileName(), file.open(QIODevice::WriteOnly) && file.write(document) > 0);
}

QString Pictures::fileOf(const std::string &name, const char *type) const {
    return target.filePath(
        QString::fromStdString(name) + u'-' + suffix + u'.' + QString::fromLatin1(type));
}

void Pictures::report(const QString &file, bool written) {
    anyFailed = anyFailed || !written;
    fmt::print("{}{}\n", written ? "" : "not written: ", file.toStdString());
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
