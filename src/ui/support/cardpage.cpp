#include "ui/support/cardpage.h"

#include "ui/support/appearance.h"
#include "uikit/labels.h"

#include <QGridLayout>
#include <QScrollArea>
#include <QVBoxLayout>

namespace ellwynd::cardPage {

namespace {

/// At text scale 1.
constexpr int maxWidth = 620;

} // namespace

QLabel *text(const QString &text) {
    auto *label = plainLabel(nullptr, true);
    label->setText(text);
    return label;
}

QWidget *besideEachOther(QWidget *left, QWidget *right) {
    auto *both = new QWidget;
    auto *row = new QHBoxLayout(both);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(left);
    row->addWidget(right, 1);
    return both;
}

QWidget *leftAligned(QWidget *widget) {
    return besideEachOther(widget, new QWidget);
}

QWidget *bulletList(const std::vector<QString> &items) {
    auto *list = new QWidget;
    auto *rows = new QGridLayout(list);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setColumnStretch(1, 1);
    for (const QString &item : items) {
        const int row = rows->rowCount();
        rows->addWidget(text(QStringLiteral("•")), row, 0, Qt::AlignTop);
        rows->addWidget(text(item), row, 1);
    }
    return list;
}

QWidget *
card(const QString &title, const std::vector<QWidget *> &contents, const Appearance &appearance) {
    auto *frame = new QFrame;
    frame->setObjectName(QStringLiteral("card"));
    frame->setAccessibleName(title);
    auto *heading = text(title);
    auto *column = new QVBoxLayout(frame);
    column->addWidget(heading);
    for (QWidget *each : contents)
        column->addWidget(each);
    const auto size = [&appearance, heading, column] {
        const int inset = appearance.px(16);
        column->setContentsMargins(inset, inset, inset, inset);
        column->setSpacing(appearance.px(9));
        heading->setFont(appearance.font(1.1, QFont::DemiBold));
    };
    QObject::connect(&appearance, &Appearance::appearanceDidChange, frame, size);
    size();
    return frame;
}

QWidget *
page(const QString &title, const std::vector<QWidget *> &contents, const Appearance &appearance) {
    auto *content = new QWidget;
    content->setObjectName(QStringLiteral("plain"));
    auto *heading = text(title);
    auto *column = new QVBoxLayout(content);
    column->addWidget(heading);
    for (QWidget *each : contents)
        column->addWidget(each);
    column->addStretch(1);
    const auto size = [&appearance, content, heading, column] {
        const int margin = appearance.px(24);
        column->setContentsMargins(margin, margin, margin, margin);
        column->setSpacing(appearance.px(12));
        heading->setFont(appearance.font(1.5, QFont::Bold));
        content->setMaximumWidth(appearance.px(maxWidth));
    };
    QObject::connect(&appearance, &Appearance::appearanceDidChange, content, size);
    size();
    auto *scroll = new QScrollArea;
    scroll->setAlignment(Qt::AlignHCenter);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setAccessibleName(title);
    scroll->setWidget(content);
    return scroll;
}

} // namespace ellwynd::cardPage
