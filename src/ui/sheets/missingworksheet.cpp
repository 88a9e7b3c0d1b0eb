#include "ui/sheets/missingworksheet.h"

#include "ui/sheets/missingworkmodel.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QPainter>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

namespace ellwynd {

namespace {

/// Draws the share of the class as a bar with its percentage, excluded rows in orange.
class MissingWorkDelegate : public QStyledItemDelegate {
  public:
    MissingWorkDelegate(const Appearance &appearance, QObject *parent)
        : QStyledItemDelegate(parent), appearance(appearance) {}

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index)
        const override {
        const Theme &theme = appearance.theme();
        const bool classWide = index.data(MissingWorkModel::classWideRole).toBool();
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (option.state.testFlag(QStyle::State_Selected))
            painter->fillRect(option.rect, theme.selection);
        painter->fillRect(
            QRect(option.rect.left(), option.rect.bottom(), option.rect.width(), 1),
            theme.separator);
        QRect cell = option.rect.adjusted(appearance.px(10), 0, -appearance.px(10), -1);
        painter->setFont(appearance.font());
        painter->setPen(classWide ? theme.attention : theme.text);
        QString text = index.data().toString();
        auto align = index.column() == MissingWorkModel::missing ? Qt::AlignRight : Qt::AlignLeft;
        if (index.column() == MissingWorkModel::share) {
            const int label = painter->fontMetrics().horizontalAdvance(QStringLiteral("100% "));
            const int thickness = appearance.px(7);
            const QRectF bar(
                cell.left(), cell.center().y() - thickness / 2.0, cell.width() - label, thickness);
            painter->setBrush(theme.controlPressed);
            painter->setPen(Qt::NoPen);
            painter->drawRoundedRect(bar, thickness / 2.0, thickness / 2.0);
            QRectF filled = bar;
            const double share = index.data(MissingWorkModel::shareRole).toDouble();
            filled.setWidth(std::max(double(thickness), bar.width() * std::min(1.0, share)));
            painter->setBrush(classWide ? theme.attention : theme.accent);
            painter->drawRoundedRect(filled, thickness / 2.0, thickness / 2.0);
            painter->setPen(classWide ? theme.attention : theme.text);
            align = Qt::AlignRight;
        } else if (index.column() == MissingWorkModel::assignment) {
            text.replace(u'\n', u' ');
            text = painter->fontMetrics().elidedText(text, Qt::ElideRight, cell.width());
        }
        painter->drawText(cell, int(align | Qt::AlignVCenter), text);
        painter->restore();
    }

  private:
    const Appearance &appearance;
};

} // namespace

MissingWorkSheet::MissingWorkSheet(
    std::vector<MissedAssignment> work, std::int64_t rosterSize, const Appearance &appearance,
    QWidget *parent)
    : Sheet(
          QStringLiteral("Assignments with missing work"),
          QStringLiteral("Missing work by assignment"), appearance, parent),
      model(new MissingWorkModel(std::move(work), this)),
      table(new QTableView(this)),
      showStudents(new QPushButton(QStringLiteral("Show Students"), this)) {
    auto *summary = secondaryLabel(
        this, qstring(missedWorkSummary(std::size_t(model->rowCount()), rosterSize)));

    table->setModel(model);
    table->setItemDelegate(new MissingWorkDelegate(appearance, table));
    table->setAccessibleName(QStringLiteral("Assignments with missing work"));
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->setSelectionMode(QAbstractItemView::SingleSelection);
    table->setTabKeyNavigation(false);
    table->setShowGrid(false);
    table->verticalHeader()->hide();
    table->verticalHeader()->setDefaultSectionSize(appearance.px(32));
    table->horizontalHeader()->setHighlightSections(false);
    table->horizontalHeader()->setSectionResizeMode(
        MissingWorkModel::assignment, QHeaderView::Stretch);
    table->setColumnWidth(MissingWorkModel::share, appearance.px(190));
    table->setColumnWidth(MissingWorkModel::missing, appearance.px(80));

    auto *finished = new QPushButton(QStringLiteral("Done"), this);
    showStudents->setEnabled(false);
    showStudents->setToolTip(QStringLiteral("Select the students missing this assignment"));
    finished->setAutoDefault(false);
    showStudents->setDefault(true);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(finished);
    buttons->addWidget(showStudents);

    column().addWidget(summary);
    column().addWidget(table, 1);
    column().addLayout(buttons);
    resize(appearance.px(580), appearance.px(460));

    connect(finished, &QPushButton::clicked, this, &QDialog::reject);
    connect(showStudents, &QPushButton::clicked, this, &MissingWorkSheet::choose);
    connect(table, &QTableView::doubleClicked, this, &MissingWorkSheet::choose);
    connect(table->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        showStudents->setEnabled(table->selectionModel()->hasSelection());
    });
    if (model->rowCount() > 0)
        table->selectRow(0);
    table->setFocus();
}

void MissingWorkSheet::choose() {
    const QModelIndexList selected = table->selectionModel()->selectedRows();
    if (selected.isEmpty())
        return;
    const std::vector<std::int64_t> students = model->at(selected.front().row()).studentIDs;
    accept();
    Q_EMIT studentsRequested(students);
}

} // namespace ellwynd
