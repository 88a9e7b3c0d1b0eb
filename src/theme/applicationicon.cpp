#include "theme/applicationicon.h"

#include "theme/resources.h"

#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace ellwynd {

QIcon applicationIcon() {
    QSvgRenderer renderer(resourceFile(QStringLiteral("application.svg")));
    QIcon icon;
    for (const int size : {16, 22, 24, 32, 48, 64, 128, 256}) {
        QPixmap pixmap(size, size);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        renderer.render(&painter);
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace ellwynd
