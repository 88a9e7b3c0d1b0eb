#include "ui/welcome/welcomepages.h"

#include "help/about.h"
#include "theme/applicationicon.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QGridLayout>
#include <QScrollArea>
#include <QVBoxLayout>

namespace ellwynd::welcomePages {

namespace {

constexpr int iconSize = 64;

QWidget *icon(const Appearance &appearance) {
    auto *picture = new QLabel;
    picture->setAccessibleName(QStringLiteral("The icon of Ellwynd"));
    const auto size = [&appearance, picture] {
        const int side = appearance.px(iconSize);
        picture->setPixmap(
            applicationIcon().pixmap(QSize(side, side), picture->devicePixelRatioF()));
    };
    QObject::connect(&appearance, &Appearance::appearanceDidChange, picture, size);
    size();
    return picture;
}

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
    const auto size = [&appearance, heading, column] {
        const int margin = appearance.px(24);
        column->setContentsMargins(margin, margin, margin, margin);
        column->setSpacing(appearance.px(12));
        heading->setFont(appearance.font(1.5, QFont::Bold));
    };
    QObject::connect(&appearance, &Appearance::appearanceDidChange, content, size);
    size();
    auto *scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setAccessibleName(title);
    scroll->setWidget(content);
    return scroll;
}

QWidget *introduction(const QString &title, const Appearance &appearance) {
    std::vector<QString> promises;
    for (const std::string_view promise : about::promises())
        promises.push_back(qstring(promise));
    return page(
        title,
        {besideEachOther(icon(appearance), text(qstring(about::purpose))),
         card(
             QStringLiteral("What it looks at"),
             {bulletList(
                 {QStringLiteral("Missing work, by its share of the final grade."),
                  QStringLiteral("The current score, against your passing score."),
                  QStringLiteral("Time in the course, against the rest of the class."),
                  QStringLiteral("Days without activity, against how quiet the class is."),
                  QStringLiteral("Work that is past due and not handed in.")})},
             appearance),
         card(QStringLiteral("What it never does"), {bulletList(promises)}, appearance)},
        appearance);
}

QWidget *end(std::vector<QWidget *> results, const Appearance &appearance) {
    results.push_back(card(
        QStringLiteral("What comes next"),
        {bulletList(
            {QStringLiteral("Open a course in the sidebar: the students who need attention are on "
                            "top, each with the reasons."),
             QStringLiteral("Students are scored against a passing score and an inactivity "
                            "window. Set them for all courses in Settings, or for one course "
                            "with Thresholds above its roster."),
             QStringLiteral("From the second day on, Ellwynd shows who slipped and who improved "
                            "since your last visit. Settings ▸ Privacy shows what it remembers "
                            "and deletes it when you want.")})},
        appearance));
    return page(QStringLiteral("You are connected"), results, appearance);
}

} // namespace ellwynd::welcomePages
