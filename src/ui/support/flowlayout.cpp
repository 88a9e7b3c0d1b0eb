#include "ui/support/flowlayout.h"

#include <algorithm>

namespace ellwynd {

FlowLayout::FlowLayout(QWidget *parent) : QLayout(parent) {}

FlowLayout::~FlowLayout() {
    for (const QLayoutItem *item : items)
        delete item;
}

void FlowLayout::addItem(QLayoutItem *item) {
    items.push_back(item);
}

QLayoutItem *FlowLayout::itemAt(int index) const {
    return index >= 0 && index < count() ? items[std::size_t(index)] : nullptr;
}

QLayoutItem *FlowLayout::takeAt(int index) {
    QLayoutItem *item = itemAt(index);
    if (item != nullptr)
        items.erase(items.begin() + index);
    return item;
}

QSize FlowLayout::minimumSize() const {
    QSize size;
    for (const QLayoutItem *item : items) {
        if (!item->isEmpty())
            size = size.expandedTo(item->minimumSize());
    }
    const QMargins margins = contentsMargins();
    return size + QSize(margins.left() + margins.right(), margins.top() + margins.bottom());
}

QSize FlowLayout::sizeHint() const {
    int width = 0;
    for (const QLayoutItem *item : items) {
        if (!item->isEmpty())
            width += item->sizeHint().width() + spacing();
    }
    const QMargins margins = contentsMargins();
    const int whole = width + margins.left() + margins.right();
    return {whole, heightForWidth(whole)};
}

int FlowLayout::heightForWidth(int width) const {
    return place(QRect(0, 0, width, 0), false);
}

void FlowLayout::setGeometry(const QRect &rect) {
    QLayout::setGeometry(rect);
    place(rect, true);
}

int FlowLayout::place(const QRect &rect, bool apply) const {
    const QRect area = rect.marginsRemoved(contentsMargins());
    std::vector<QLayoutItem *> line;
    int y = area.top();
    int x = area.left();
    int height = 0;
    const auto endLine = [&] {
        int left = area.left();
        for (QLayoutItem *item : line) {
            const QSize size = item->sizeHint().boundedTo({area.width(), QLAYOUTSIZE_MAX});
            if (item->alignment().testFlag(Qt::AlignRight))
                left = area.left() + area.width() - size.width();
            if (apply)
                item->setGeometry(QRect({left, y + (height - size.height()) / 2}, size));
            left += size.width() + spacing();
        }
        line.clear();
    };
    for (QLayoutItem *item : items) {
        if (item->isEmpty())
            continue;
        const QSize size = item->sizeHint();
        if (!line.empty() && x + size.width() > area.left() + area.width()) {
            endLine();
            y += height + spacing();
            x = area.left();
            height = 0;
        }
        line.push_back(item);
        x += size.width() + spacing();
        height = std::max(height, size.height());
    }
    endLine();
    return y + height - rect.top() + contentsMargins().bottom();
}

} // namespace ellwynd
