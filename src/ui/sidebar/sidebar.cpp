#include "ui/sidebar/sidebar.h"

#include "app/mainwindowcontroller.h"
#include "ui/sidebar/sidebardelegate.h"
#include "ui/sidebar/sidebarmodel.h"
#include "ui/sidebar/sidebartree.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QScopedValueRollback>
#include <QVBoxLayout>

namespace ellwynd {

Sidebar::Sidebar(
    MainWindowController &controller, UserDefaults &defaults, const Appearance &appearance,
    QWidget *parent)
    : QWidget(parent),
      controller(controller),
      defaults(defaults),
      model(new SidebarModel(
          [&controller](std::int64_t courseID) { return controller.levels(courseID); }, this)),
      tree(new SidebarTree(appearance, this)),
      updateBanner(plainLabel(this, true)),
      status(plainLabel(this, true)),
      observing(defaults.observe([this](std::string_view key) {
          if (courseSettings::isIconKey(key))
              tree->viewport()->update();
          else if (key == preferences::sidebarExpandedTerms.name)
              restoreExpansion();
      })) {
    setObjectName(QStringLiteral("sidebarPane"));
    setAttribute(Qt::WA_StyledBackground);
    tree->setObjectName(QStringLiteral("sidebar"));
    tree->setAccessibleName(QStringLiteral("Terms and courses"));
    tree->setModel(model);
    tree->setItemDelegate(new SidebarDelegate(defaults, appearance, tree));
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
    connect(&appearance, &Appearance::appearanceDidChange, this, size);
    size();

    connect(
        tree->selectionModel(), &QItemSelectionModel::currentChanged, this,
        [this](const QModelIndex &current) {
            // A tree that gets the focus makes its first row current, even while nothing can be
            // selected.
            if (!settingState && current.isValid() && this->controller.selection())
                this->controller.select(model->selectionAt(current));
        });
    tree->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(tree, &QTreeView::customContextMenuRequested, this, [this](const QPoint &position) {
        const QModelIndex index = tree->indexAt(position);
        if (index.isValid())
            Q_EMIT menuRequested(
                model->selectionAt(index), tree->viewport()->mapToGlobal(position));
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
        QStringLiteral("Ellwynd %1 is available. Install it with your package manager.")
            .arg(version));
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

/// The terms of the sidebar, as they are in the tree.
std::vector<TermExpansion> Sidebar::shownExpansion() const {
    std::vector<TermExpansion> terms;
    for (int row = SidebarModel::firstTerm; row < model->rowCount(); ++row)
        terms.push_back(
            {.termID = model->termAt(row), .expanded = tree->isExpanded(model->index(row, 0))});
    return terms;
}

/// Shows the saved expansion, which another process or machine may have changed.
void Sidebar::restoreExpansion() {
    const QScopedValueRollback guard(settingState, true);
    std::vector<std::optional<std::int64_t>> termIDs;
    for (const TermExpansion &term : shownExpansion())
        termIDs.push_back(term.termID);
    int row = SidebarModel::firstTerm;
    for (const TermExpansion &term :
         expansionOf(defaults.value(preferences::sidebarExpandedTerms), termIDs))
        tree->setExpanded(model->index(row++, 0), term.expanded);
}

void Sidebar::rememberExpansion() {
    if (settingState)
        return;
    defaults.set(
        preferences::sidebarExpandedTerms,
        withExpansion(defaults.value(preferences::sidebarExpandedTerms), shownExpansion()));
}

} // namespace ellwynd
