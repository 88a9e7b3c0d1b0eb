#include "ui/dashboard/dashboardpane.h"

#include "app/dashboard/dashboardtexts.h"
#include "app/roster/rostertexts.h"
#include "preferences/coursesettings.h"
#include "ui/dashboard/coursecard.h"
#include "ui/dashboard/legend.h"
#include "ui/dashboard/needspane.h"
#include "ui/dashboard/studentlist.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"
#include "uikit/textlink.h"

#include <QContextMenuEvent>
#include <QGridLayout>
#include <QKeyEvent>
#include <QMenu>
#include <QProgressBar>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>

#include <algorithm>
#include <utility>

namespace ellwynd {

DashboardPane::DashboardPane(
    Dashboard &dashboard, UserDefaults &defaults, const Appearance &appearance, QWidget *parent)
    : QWidget(parent),
      dashboard(dashboard),
      defaults(defaults),
      appearance(appearance),
      headline(new ElidedLabel(this)),
      movement(secondaryLabel(this)),
      updated(new ElidedLabel(this)),
      terms(new QPushButton(this)),
      refresh(new QPushButton(QStringLiteral("⟳"), this)),
      stack(new QStackedWidget(this)),
      scroll(new QScrollArea(stack)),
      page(new QWidget(scroll->viewport())),
      grid(new QGridLayout),
      heading(new QBoxLayout(QBoxLayout::LeftToRight)),
      waitPage(new QWidget(stack)),
      wait(plainLabel(waitPage, true)),
      progress(new QProgressBar(page)),
      header(new QWidget(this)),
      needs(new NeedsPane(appearance, page)),
      footer(new QWidget(page)),
      levelsLink(new TextLink(QStringLiteral("What do the levels mean?"), footer)),
      legend(new Legend(appearance, footer)),
      observing(defaults.observe([this](std::string_view key) {
          if (courseSettings::isIconKey(key))
              page->update();
      })) {
    terms->setMenu(new QMenu(terms));
    terms->setToolTip(QStringLiteral("The term whose courses are shown"));
    refresh->setProperty("quiet", true);
    refresh->setToolTip(QStringLiteral("Refresh all courses (Ctrl+R)"));
    refresh->setAccessibleName(QStringLiteral("Refresh all courses"));
    wait->setAlignment(Qt::AlignCenter);
    wait->setProperty("secondary", true);
    progress->setTextVisible(false);
    progress->setAccessibleName(QStringLiteral("Scoring"));

    updated->setProperty("secondary", true);
    updated->setAlignment(Qt::AlignRight);
    updated->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    auto *names = new QVBoxLayout;
    names->setSpacing(2);
    names->addWidget(headline);
    names->addWidget(movement);
    names->addStretch(1);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(terms);
    buttons->addWidget(refresh);
    auto *commands = new QVBoxLayout;
    commands->setSpacing(2);
    commands->addLayout(buttons);
    commands->addWidget(updated);
    header->setLayout(heading);
    QSizePolicy asTallAsNeeded(QSizePolicy::Preferred, QSizePolicy::Fixed);
    asTallAsNeeded.setHeightForWidth(true);
    header->setSizePolicy(asTallAsNeeded);
    heading->addLayout(names, 1);
    heading->addLayout(commands);

    page->setObjectName(QStringLiteral("plain"));
    auto *pageColumn = new QVBoxLayout(page);
    pageColumn->setContentsMargins(0, 0, 0, 0);
    pageColumn->addWidget(progress);
    pageColumn->addLayout(grid);
    auto *needsColumn = new QVBoxLayout;
    needsColumn->addWidget(needs);
    pageColumn->addLayout(needsColumn);
    pageColumn->addWidget(footer);
    pageColumn->addStretch(1);
    scroll->setWidget(page);
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    stack->addWidget(scroll);
    auto *waitColumn = new QVBoxLayout(waitPage);
    waitColumn->addStretch(2);
    waitColumn->addWidget(wait);
    waitColumn->addStretch(3);
    stack->addWidget(waitPage);

    auto *footerColumn = new QVBoxLayout(footer);
    footerColumn->addWidget(levelsLink);
    footerColumn->addWidget(legend);
    legend->hide();
    connect(levelsLink, &QAbstractButton::clicked, this, [this] {
        legend->setVisible(!legend->isVisible());
    });

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(header);
    column->addWidget(stack, 1);

    connect(terms->menu(), &QMenu::triggered, this, [this](const QAction *chosen) {
        this->dashboard.selectTerm(chosen->data().toLongLong());
    });
    connect(refresh, &QPushButton::clicked, this, &DashboardPane::refreshRequested);
    connect(needs, &NeedsPane::termRequested, this, &DashboardPane::termRequested);
    connect(needs->list(), &StudentList::rowShown, this, [this](const QRect &row) {
        const QPoint place = needs->list()->viewport()->mapTo(page, row.center());
        scroll->ensureVisible(place.x(), place.y(), 0, row.height());
    });
    connect(&dashboard, &Dashboard::dashboardModelDidChange, this, &DashboardPane::showModel);
    connect(&appearance, &Appearance::appearanceDidChange, this, &DashboardPane::applyAppearance);
    applyAppearance();
}

void DashboardPane::focusCards() {
    if (!cards.empty() && cards.front()->isVisible())
        cards.front()->setFocus(Qt::OtherFocusReason);
    else
        terms->setFocus(Qt::OtherFocusReason);
}

StudentList *DashboardPane::students() const {
    return needs->list();
}

void DashboardPane::applyAppearance() {
    headline->setFont(appearance.font(1.24, QFont::Bold));
    wait->setFont(appearance.font(1.1));
    const int side = appearance.px(18);
    wait->setContentsMargins(side, side, side, side);
    heading->setContentsMargins(side, appearance.px(12), side, appearance.px(8));
    heading->setSpacing(appearance.px(10));
    grid->setContentsMargins(side, appearance.px(2), side, appearance.px(14));
    grid->setSpacing(appearance.px(12));
    needs->setContentsMargins(side, 0, side, 0);
    // Texts and commands stay close to each other in a very wide window.
    needs->setMaximumWidth(appearance.px(1500));
    footer->layout()->setContentsMargins(side, appearance.px(10), side, appearance.px(10));
    footer->layout()->setSpacing(appearance.px(8));
    arrangeHeader();
    arrangeCards();
}

/// In a narrow pane the commands are below the texts.
void DashboardPane::arrangeHeader() {
    constexpr double enough = 520;
    heading->setDirection(
        width() < appearance.px(enough) ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight);
}

void DashboardPane::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    arrangeHeader();
    arrangeCards();
}

void DashboardPane::showEvent(QShowEvent *event) {
    if (isOutdated)
        showModel();
    QWidget::showEvent(event);
}

void DashboardPane::setRefreshing(bool refreshing) {
    if (std::exchange(isRefreshing, refreshing) != refreshing)
        showModel();
}

/// While the pane is hidden, a change waits until it is shown.
void DashboardPane::showModel() {
    isOutdated = isHidden();
    if (isOutdated)
        return;
    showTermMenu();
    const DashboardTerm *term = dashboard.shownTerm();
    if (term == nullptr)
        return showWait();
    headline->setFullText(qstring(ellwynd::headline(*term)));
    movement->setText(qstring(movementLine(*term)));
    const std::string note = stampNote(term->updatedAt, isRefreshing, systemNow());
    updated->setFullText(qstring(stamp(dashboard) + (note.empty() ? "" : " · " + note)));
    progress->hide();
    setCardCount(term->cards.size());
    for (std::size_t i = 0; i < term->cards.size(); ++i)
        cards[i]->setCard(term->cards[i]);
    needs->setTerm(*term);
    needs->show();
    stack->setCurrentIndex(0);
}

/// While a term is scored for the first time, the names of its courses.
void DashboardPane::showWait() {
    const PassProgress &pass = dashboard.progress();
    const std::vector<TermGroup> &terms = dashboard.preparedTerms();
    const auto term = std::ranges::find(terms, dashboard.shownTermID(), &TermGroup::id);
    const bool showsNames = pass.running && term != terms.end();
    const QString line = qstring(waitLine(dashboard).value_or(""));
    headline->setFullText(showsNames ? qstring(title(*term)) : QStringLiteral("Dashboard"));
    movement->setText(showsNames ? line : QString());
    updated->setFullText({});
    wait->setText(line);
    progress->setVisible(showsNames);
    progress->setRange(0, int(pass.total));
    progress->setValue(int(pass.done));
    if (showsNames) {
        setCardCount(term->courses.size());
        for (std::size_t i = 0; i < term->courses.size(); ++i)
            cards[i]->setPlaceholder(term->courses[i]);
        needs->hide();
    }
    stack->setCurrentIndex(showsNames ? 0 : 1);
}

/// Refills the menu only when its items have changed, so that an open menu stays open.
void DashboardPane::showTermMenu() {
    const std::vector<TermMenuItem> items = termMenu(dashboard);
    QMenu *menu = terms->menu();
    // After a tab a menu shows a text at its right.
    const auto textOf = [](const TermMenuItem &item) {
        const QString note = item.note.empty() ? QString() : u'\t' + menuText(item.note);
        return menuText(item.title) + note;
    };
    const auto same = [&textOf](const QAction *action, const TermMenuItem &item) {
        return action->data().toLongLong() == item.tag && action->text() == textOf(item);
    };
    const QList<QAction *> actions = menu->actions();
    if (!std::ranges::equal(actions, items, same)) {
        menu->clear();
        for (const TermMenuItem &item : items) {
            QAction *action = menu->addAction(textOf(item));
            action->setData(qlonglong(item.tag));
            action->setCheckable(true);
        }
    }
    for (std::size_t i = 0; i < items.size(); ++i) {
        menu->actions().at(qsizetype(i))->setChecked(items[i].selected);
        if (items[i].selected) {
            terms->setText(menuText(items[i].title) + QStringLiteral(" ▾"));
            terms->setAccessibleName(QStringLiteral("Term: ") + qstring(items[i].title));
        }
    }
    terms->setVisible(!dashboard.preparedTerms().empty());
}

void DashboardPane::setCardCount(std::size_t count) {
    while (cards.size() < count) {
        auto *card = new CourseCard(defaults, appearance, page);
        connect(card, &CourseCard::clicked, this, [this, card] {
            Q_EMIT courseRequested(card->courseID());
        });
        card->installEventFilter(this);
        cards.push_back(card);
        columns = 0;
    }
    for (std::size_t i = 0; i < cards.size(); ++i)
        cards[i]->setVisible(i < count);
    arrangeCards();
}

bool DashboardPane::eventFilter(QObject *object, QEvent *event) {
    const auto found = std::ranges::find(cards, object);
    if (found != cards.end() && event->type() == QEvent::KeyPress)
        return moveFocus(
            std::size_t(found - cards.begin()), static_cast<QKeyEvent *>(event)->key());
    if (found != cards.end() && event->type() == QEvent::ContextMenu) {
        const auto *menu = static_cast<QContextMenuEvent *>(event);
        const bool isByKey = menu->reason() == QContextMenuEvent::Keyboard;
        const QPoint center = (*found)->mapToGlobal((*found)->rect().center());
        Q_EMIT courseMenuRequested((*found)->courseID(), isByKey ? center : menu->globalPos());
        return true;
    }
    return QWidget::eventFilter(object, event);
}

bool DashboardPane::moveFocus(std::size_t from, int key) {
    const auto count =
        std::ranges::count_if(cards, [](const CourseCard *card) { return card->isVisible(); });
    std::ptrdiff_t step = 0;
    switch (key) {
    case Qt::Key_Left:
        step = -1;
        break;
    case Qt::Key_Right:
        step = 1;
        break;
    case Qt::Key_Up:
        step = -columns;
        break;
    case Qt::Key_Down:
        step = columns;
        break;
    default:
        return false;
    }
    const std::ptrdiff_t to = std::ptrdiff_t(from) + step;
    if (to < 0)
        return true;
    if (to < count)
        cards[std::size_t(to)]->setFocus(Qt::TabFocusReason);
    else if (key == Qt::Key_Down && needs->list()->isVisible())
        needs->list()->setFocus(Qt::TabFocusReason);
    return true;
}

/// Arranges the cards in as many columns as fit.
void DashboardPane::arrangeCards() {
    if (cards.empty())
        return;
    const int available =
        width() - 2 * appearance.px(18) - scroll->verticalScrollBar()->sizeHint().width();
    const int spacing = grid->spacing();
    const int fitting = std::max(1, (available + spacing) / (appearance.px(270) + spacing));
    if (fitting == columns)
        return;
    for (int column = 0; column < std::max(columns, fitting); ++column)
        grid->setColumnStretch(column, column < fitting ? 1 : 0);
    columns = fitting;
    for (std::size_t i = 0; i < cards.size(); ++i)
        grid->addWidget(cards[i], int(i) / columns, int(i) % columns);
}

} // namespace ellwynd
