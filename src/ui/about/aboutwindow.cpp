#include "ui/about/aboutwindow.h"

#include "generated/version.h"
#include "help/about.h"
#include "theme/applicationicon.h"
#include "ui/support/appearance.h"
#include "ui/support/markdownpage.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QPushButton>
#include <QVBoxLayout>

namespace ellwynd {

AboutWindow::AboutWindow(const Appearance &appearance, QWidget *parent) : QDialog(parent) {
    setWindowTitle(QStringLiteral("About Ellwynd"));
    auto *picture = new QLabel;
    picture->setAccessibleName(QStringLiteral("The icon of Ellwynd"));
    auto *name = plainLabel(this);
    name->setText(QStringLiteral("Ellwynd"));
    auto *number = plainLabel(this);
    number->setText(QStringLiteral("Version %1").arg(qstring(version)));
    // Selectable, to be copied into a bug report.
    number->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    number->setProperty("secondary", true);
    auto *page = new MarkdownPage(appearance);
    page->setAccessibleName(QStringLiteral("About this program"));
    page->showMarkdown(qstring(about::page()));
    auto *buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto *titles = new QVBoxLayout;
    titles->addStretch(1);
    titles->addWidget(name);
    titles->addWidget(number);
    titles->addStretch(1);
    auto *heading = new QHBoxLayout;
    heading->addWidget(picture);
    heading->addLayout(titles, 1);
    auto *column = new QVBoxLayout(this);
    column->addLayout(heading);
    column->addWidget(page, 1);
    auto *foot = new QHBoxLayout;
    foot->addWidget(buttons);
    column->addLayout(foot);
    // The page has its own margin.
    column->setContentsMargins(0, 0, 0, 0);

    const auto size = [&appearance, picture, name, heading, foot] {
        const int margin = appearance.px(20);
        heading->setContentsMargins(margin, margin, margin, 0);
        foot->setContentsMargins(margin, 0, margin, margin);
        heading->setSpacing(appearance.px(14));
        const int side = appearance.px(64);
        picture->setPixmap(
            applicationIcon().pixmap(QSize(side, side), picture->devicePixelRatioF()));
        name->setFont(appearance.font(1.7, QFont::Bold));
    };
    connect(&appearance, &Appearance::appearanceDidChange, this, size);
    size();
    buttons->button(QDialogButtonBox::Close)->setFocus();
    resize(appearance.px(500), appearance.px(520));
}

} // namespace ellwynd
