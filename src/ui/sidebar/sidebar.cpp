#include "ui/sidebar/sidebar.h"

#include "app/mainwindowcontroller.h"
#include "theme/courseicon.h"
#include "ui/sidebar/sidebarmodel.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QPainter>
#include <QScopedValueRollback>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include <algorithm>

namespace ellwynd {

namespace {

/// How many terms stand open before the teacher opens or closes any.
constexpr int openAtFirst = 2;

/// Draws a term as a small heading and a course as its tile, its name and its count.
class SidebarDelegate : public QStyledItemDelegate {
  public:
    SidebarDelegate(const UserDefaults &store, const Appearance &look, QObject *parent)
        : QStyledItemDelegate(parent), defaults(store), appearance(look) {}

    [[nodiscard]] QSize
    sizeHint(const QStyleOptionViewItem &, const QModelIndex &index) const override {
        return {appearance.px(120), appearance.px(index.parent().isValid() ? 29 : 32)};
    }

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index)
        const override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (index.parent().isValid())
            paintCourse(*painter, option, index);
        else if (SidebarModel::isDashboard(index))
            paintDashboard(*painter, option, index);
        else
            paintTerm(*painter, option, index);
        painter->restore();
    }

  private:
    void paintDashboard(
        QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
        const Theme &theme = appearance.theme();
        const int side = appearance.px(20);
        QRect tile(option.rect.left() - appearance.px(4), 0, side, side);
        tile.moveTop(option.rect.center().y() - side / 2 + 1);
        painter.setPen(Qt::NoPen);
        painter.setBrush(theme.secondaryText);
        painter.drawRoundedRect(tile, side * 0.25, side * 0.25);
        // Four cards.
        painter.setBrush(theme.sidebar);
        const double cell = side * 0.24;
        for (const double x : {0.22, 0.54}) {
            for (const double y : {0.22, 0.54}) {
                painter.drawRoundedRect(
                    QRectF(tile.left() + side * x, tile.top() + side * y, cell, cell), 1, 1);
            }
        }
        painter.setFont(appearance.font(1, QFont::Medium));
        painter.setPen(theme.text);
        painter.drawText(
            option.rect.adjusted(side + appearance.px(4), 0, 0, 0),
            Qt::AlignLeft | Qt::AlignVCenter, index.data().toString());
    }

    void paintTerm(
        QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
        const bool selected = option.state.testFlag(QStyle::State_Selected);
        QFont font = appearance.font(0.86, QFont::DemiBold);
        font.setLetterSpacing(QFont::PercentageSpacing, 103);
        painter.setFont(font);
        painter.setPen(selected ? appearance.theme().text : appearance.theme().secondaryText);
        const QRect text = option.rect.adjusted(0, appearance.px(4), -appearance.px(8), 0);
        const QString title = index.data().toString().toUpper();
        painter.drawText(
            text, Qt::AlignLeft | Qt::AlignVCenter,
            QFontMetrics(font).elidedText(title, Qt::ElideRight, text.width()));
    }

    void paintCourse(
        QPainter &painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
        const Theme &theme = appearance.theme();
        QRect row = option.rect.adjusted(-appearance.px(10), 0, -appearance.px(12), 0);

        if (const QVariant flagged = index.data(SidebarModel::flaggedRole);
            flagged.toLongLong() > 0) {
            const QString count = flagged.toString();
            painter.setFont(appearance.font(0.86, QFont::Medium));
            const int width = std::max(
                appearance.px(20),
                painter.fontMetrics().horizontalAdvance(count) + appearance.px(11));
            const int height = appearance.px(18);
            const QRect badge(
                row.right() - width, row.center().y() - height / 2 + 1, width, height);
            painter.setPen(Qt::NoPen);
            painter.setBrush(theme.controlPressed);
            painter.drawRoundedRect(badge, height / 2.0, height / 2.0);
            painter.setPen(theme.secondaryText);
            painter.drawText(badge, Qt::AlignCenter, count);
            row.setRight(badge.left() - appearance.px(6));
        }

        const int tile = appearance.px(20);
        const std::int64_t courseID = index.data(SidebarModel::courseIDRole).toLongLong();
        painter.drawPixmap(
            row.left(), row.center().y() - tile / 2 + 1,
            courseTile(
                courseID, index.data().toString().toStdString(), tile,
                painter.device()->devicePixelRatioF(), courseIcon(defaults, courseID)));
        row.setLeft(row.left() + tile + appearance.px(8));
        painter.setFont(appearance.font());
        painter.setPen(theme.text);
        painter.drawText(
            row, Qt::AlignLeft | Qt::AlignVCenter,
            painter.fontMetrics().elidedText(index.data().toString(), Qt::ElideRight, row.width()));
    }

    const UserDefaults &defaults;
    const Appearance &appearance;
};

/// A tree that paints selection as one rounded bar and its own arrows.
class SidebarTree : public QTreeView {
  public:
    SidebarTree(const Appearance &look, QWidget *parent) : QTreeView(parent), appearance(look) {}

  protected:
    void drawRow(QPainter *painter, const QStyleOptionViewItem &options, const QModelIndex &index)
        const override {
        if (selectionModel()->isSelected(index)) {
            const Theme &theme = appearance.theme();
            painter->save();
            painter->setRenderHint(QPainter::Antialiasing);
            painter->setBrush(theme.selection);
            painter->setPen(hasFocus() ? QPen(theme.accent, 1.5) : QPen(Qt::NoPen));
            painter->drawRoundedRect(
                QRectF(options.rect).adjusted(6, index.parent().isValid() ? 1 : 4, -6, -1), 6, 6);
            painter->restore();
        }
        QTreeView::drawRow(painter, options, index);
    }

    void
    drawBranches(QPainter *painter, const QRect &rect, const QModelIndex &index) const override {
        if (index.parent().isValid() || SidebarModel::isDashboard(index))
            return;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(QPen(
            appearance.theme().secondaryText, 1.6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        const double r = appearance.px(3);
        painter->translate(rect.right() - 2 * r, rect.center().y() + appearance.px(3));
        if (isExpanded(index))
            painter->rotate(90);
        painter->drawPolyline(QPolygonF{{-r / 2, -r}, {r / 2, 0}, {-r / 2, r}});
        painter->restore();
    }

  private:
    const Appearance &appearance;
};

} // namespace

Sidebar::Sidebar(
    MainWindowController &driver, UserDefaults &store, const Appearance &appearance,
    QWidget *parent)
    : QWidget(parent),
      controller(driver),
      defaults(store),
      model(new SidebarModel(
          [&driver](std::int64_t courseID) { return driver.flaggedStudents(courseID); }, this)),
      tree(new SidebarTree(appearance, this)),
      updateBanner(plainLabel(this, true)),
      status(plainLabel(this, true)),
      observing(store.observe([this](std::string_view key) {
          if (courseSettings::isIconKey(key))
              tree->viewport()->update();
      })) {
    setObjectName(QStringLiteral("sidebarPane"));
    setAttribute(Qt::WA_StyledBackground);
    tree->setObjectName(QStringLiteral("sidebar"));
    tree->setAccessibleName(QStringLiteral("Terms and courses"));
    tree->setModel(model);
    tree->setItemDelegate(new SidebarDelegate(store, appearance, tree));
    tree->setHeaderHidden(true);
    tree->setUniformRowHeights(false);
    tree->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    tree->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    tree->setEditTriggers(QAbstractItemView::NoEditTriggers);
    tree->setExpandsOnDoubleClick(false);
    updateBanner->setObjectName(QStringLiteral("updateBanner"));
    updateBanner->hide();
    status->setProperty("secondary", true);

    auto *column = new QVBoxLayout(this);
    column->setSpacing(0);
    column->addWidget(tree, 1);
    auto *bannerRow = new QVBoxLayout;
    bannerRow->addWidget(updateBanner);
    column->addLayout(bannerRow);
    column->addWidget(status);
    const auto size = [=, &appearance, this] {
        const int margin = appearance.px(8);
        column->setContentsMargins(0, margin, 0, margin);
        bannerRow->setContentsMargins(margin, 0, margin, 0);
        updateBanner->setFont(appearance.font(0.92));
        status->setContentsMargins(appearance.px(16), margin, margin, 0);
        status->setFont(appearance.font(0.92));
        tree->setIndentation(appearance.px(18));
        tree->doItemsLayout();
    };
    connect(&appearance, &Appearance::changed, this, size);
    size();

    connect(
        tree->selectionModel(), &QItemSelectionModel::currentChanged, this,
        [this](const QModelIndex &current) {
            if (!settingState && current.isValid())
                controller.select(model->selectionAt(current));
        });
    connect(tree, &QTreeView::expanded, this, &Sidebar::rememberExpansion);
    connect(tree, &QTreeView::collapsed, this, &Sidebar::rememberExpansion);
    connect(tree, &QTreeView::doubleClicked, this, [this](const QModelIndex &index) {
        if (!index.parent().isValid())
            tree->setExpanded(index, !tree->isExpanded(index));
    });
    connect(&controller, &MainWindowController::coursesDidChange, this, &Sidebar::reload);
    connect(&controller, &MainWindowController::rosterDidChange, this, &Sidebar::reload);
    connect(&controller, &MainWindowController::statusDidChange, this, &Sidebar::showStatus);
    reload();
    showStatus();
}

void Sidebar::showStatus() {
    status->setText(qstring(controller.status()));
}

void Sidebar::showUpdate(const QString &version) {
    updateBanner->setText(
        QStringLiteral("Ellwynd %1 is available. Your package manager installs it.").arg(version));
    updateBanner->setVisible(!version.isEmpty());
}

void Sidebar::reload() {
    const QScopedValueRollback guard(settingState, true);
    model->setTerms(controller.courses().sidebarTerms());
    restoreExpansion();
    if (const auto &selection = controller.selection()) {
        const QModelIndex index = model->indexOf(*selection);
        if (index != tree->currentIndex()) {
            // Selecting a course in a closed term does not open the term.
            tree->setAutoScroll(index.isValid() && tree->isExpanded(index.parent()));
            tree->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        }
    } else {
        tree->selectionModel()->clear();
    }
}

void Sidebar::restoreExpansion() {
    const bool saved = defaults.object(preferences::sidebarExpandedTerms.name).has_value();
    const IDList open = defaults.value(preferences::sidebarExpandedTerms);
    constexpr int first = SidebarModel::firstTerm;
    for (int row = first; row < model->rowCount(); ++row) {
        const auto term = model->termAt(row);
        const bool listed = std::ranges::count(open, term.value_or(0)) > 0;
        tree->setExpanded(model->index(row, 0), saved ? listed : row < first + openAtFirst);
    }
}

void Sidebar::rememberExpansion() {
    if (settingState)
        return;
    // Terms that are not listed now keep their state.
    IDList open = defaults.value(preferences::sidebarExpandedTerms);
    for (int row = SidebarModel::firstTerm; row < model->rowCount(); ++row) {
        // The courses without a term are kept as term 0, which Canvas gives to none.
        const std::int64_t id = model->termAt(row).value_or(0);
        std::erase(open, id);
        if (tree->isExpanded(model->index(row, 0)))
            open.push_back(id);
    }
    std::ranges::sort(open);
    defaults.set(preferences::sidebarExpandedTerms, open);
}

} // namespace ellwynd
