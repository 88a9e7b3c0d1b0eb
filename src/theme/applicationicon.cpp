#include "theme/applicationicon.h"

#include "base/embeddedtext.h"

#include <QByteArray>
#include <QPainter>
#include <QPixmap>
#include <QSvgRenderer>

namespace ellwynd {

std::span<const EmbeddedText> applicationIconText();

QIcon applicationIcon() {
    const std::string_view drawing = applicationIconText().front().text;
    QSvgRenderer renderer(QByteArray(drawing.data(), qsizetype(drawing.size())));
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
