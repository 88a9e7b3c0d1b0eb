#include "ui/welcome/welcomepages.h"

#include "help/about.h"
#include "theme/applicationicon.h"
#include "ui/support/appearance.h"
#include "ui/support/cardpage.h"
#include "uikit/convert.h"

#include <QLabel>

namespace ellwynd::welcomePages {

namespace {

using namespace cardPage;

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
