#include "ui/sheets/lookbacksheet.h"

#include "app/courses/courselabel.h"
#include "base/calendar.h"
#include "ui/support/appearance.h"
#include "ui/support/levelpill.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QAbstractTableModel>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPainter>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QTableView>
#include <QVBoxLayout>

namespace ellwynd {

namespace {

/// One row for each student and one column for each day.
class LookBackModel : public QAbstractTableModel {
  public:
    LookBackModel(LookBack look, QObject *parent)
        : QAbstractTableModel(parent), look(std::move(look)) {}

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override {
        return parent.isValid() ? 0 : int(look.rows.size());
    }
    [[nodiscard]] int columnCount(const QModelIndex &parent = {}) const override {
        return parent.isValid() ? 0 : int(look.days.size());
    }
    [[nodiscard]] const RecordedLevel &at(const QModelIndex &index) const {
        return look.rows[std::size_t(index.row())].levels[std::size_t(index.column())];
    }
    [[nodiscard]] std::int64_t studentAt(int row) const {
        return look.rows[std::size_t(row)].studentID;
    }

    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override {
        if (!index.isValid())
            return {};
        const RecordedLevel &level = at(index);
        if (role == Qt::DisplayRole)
            return qstring(levelLetter(level));
        if (role != Qt::ToolTipRole && role != Qt::AccessibleTextRole)
            return {};
        const LookBack::Row &row = look.rows[std::size_t(index.row())];
        return qstring(
            collapsed(row.name) + ", " +
            calendar::shortDay(look.days[std::size_t(index.column())]) + ": " +
            (level.isKnown() ? std::string(levelName(level.level())) : "not recorded"));
    }
    [[nodiscard]] QVariant
    headerData(int section, Qt::Orientation orientation, int role) const override {
        if (role != Qt::DisplayRole)
            return {};
        return orientation == Qt::Horizontal
            ? qstring(calendar::shortDay(look.days[std::size_t(section)]))
            : qstring(collapsed(look.rows[std::size_t(section)].name));
    }

  private:
    LookBack look;
};

/// Draws the letter of a level on the level's colour.
class LookBackDelegate : public QStyledItemDelegate {
  public:
    LookBackDelegate(const LookBackModel &model, const Appearance &appearance, QObject *parent)
        : QStyledItemDelegate(parent), model(model), appearance(appearance) {}

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index)
        const override {
        const Theme &theme = appearance.theme();
        const RecordedLevel &level = model.at(index);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (option.state.testFlag(QStyle::State_Selected))
            painter->fillRect(option.rect, theme.selection);
        if (level.isKnown()) {
            const QRectF cell = QRectF(option.rect).adjusted(1.5, 1.5, -1.5, -1.5);
            painter->setPen(Qt::NoPen);
            if (level.level()) {
                painter->setBrush(levelColors(theme, *level.level()).fill);
                painter->drawRoundedRect(cell, 3, 3);
            }
            painter->setPen(
                level.level() ? levelColors(theme, *level.level()).text : theme.secondaryText);
            painter->setFont(appearance.font(0.86, QFont::DemiBold));
            painter->drawText(cell, Qt::AlignCenter, index.data().toString());
        }
        painter->restore();
    }

  private:
    const LookBackModel &model;
    const Appearance &appearance;
};

} // namespace

LookBackSheet::LookBackSheet(
    LookBack look, const QString &courseName, const QString &outreach, const Appearance &appearance,
    QWidget *parent)
    : Sheet(QStringLiteral("Look Back"), QStringLiteral("Look back"), appearance, parent) {
    auto *course = new ElidedLabel(this);
    course->setProperty("secondary", true);
    course->setFullText(courseName);
    column().addWidget(course);
    const bool isEmpty = look.days.empty();
    if (isEmpty) {
        auto *note = plainLabel(this, true);
        note->setText(QStringLiteral(
            "Nothing is recorded yet. Each day on which you open the course adds a column."));
        column().addWidget(note, 1);
    } else {
        auto *model = new LookBackModel(std::move(look), this);
        auto *grid = new QTableView(this);
        grid->setModel(model);
        grid->setItemDelegate(new LookBackDelegate(*model, appearance, grid));
        grid->setAccessibleName(QStringLiteral("Levels by student and day"));
        grid->setSelectionMode(QAbstractItemView::SingleSelection);
        grid->setTabKeyNavigation(false);
        grid->setShowGrid(false);
        grid->setCornerButtonEnabled(false);
        grid->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
        grid->horizontalHeader()->setHighlightSections(false);
        grid->horizontalHeader()->setDefaultSectionSize(appearance.px(62));
        grid->verticalHeader()->setDefaultSectionSize(appearance.px(24));
        constexpr int maxNameWidth = 200;
        grid->verticalHeader()->setMaximumWidth(appearance.px(maxNameWidth));
        grid->verticalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
        // The latest days are on the screen.
        grid->scrollTo(model->index(0, model->columnCount() - 1));
        connect(grid, &QTableView::activated, this, [this, model](const QModelIndex &index) {
            Q_EMIT studentRequested(model->studentAt(index.row()));
            accept();
        });
        column().addWidget(grid, 1);
        column().addWidget(secondaryLabel(
            this, QStringLiteral("R At Risk · C Concern · W Watch · – OK · empty: not recorded")));
    }
    auto *summary = plainLabel(this, true);
    summary->setText(outreach);
    column().addWidget(summary);
    auto *finished = new QPushButton(QStringLiteral("Done"), this);
    finished->setDefault(isEmpty);
    finished->setAutoDefault(isEmpty);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(finished);
    column().addLayout(buttons);
    connect(finished, &QPushButton::clicked, this, &QDialog::accept);
    const QSize wanted(appearance.px(760), appearance.px(520));
    resize(parent != nullptr ? wanted.boundedTo(parent->size() * 9 / 10) : wanted);
}

} // namespace ellwynd
