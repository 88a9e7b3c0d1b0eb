// Draws the rows of a roster and handles clicks on their sentences.
#pragma once

#include "ui/roster/reasonlayout.h"
#include "ui/roster/rostermodel.h"
#include "uikit/painting.h"

#include <QHash>
#include <QStyledItemDelegate>

#include <deque>
#include <memory>

class QTableView;

namespace ellwynd {

/// How rows are laid out in the current width. Lengths are pixels.
struct RowForm {
    /// One line for each student.
    bool compact = false;
    /// The figures are in a line below the name instead of columns.
    bool narrow = false;
    /// The rows are of several courses.
    bool severalCourses = false;
    /// The left edge of names.
    int nameLeft = 0;
    int nameWidth = 0;
    /// The left edge of reasons and, in a narrow row, of figures.
    int textLeft = 0;
    int textWidth = 0;
    /// The right edge of the text of the folded students' line.
    int right = 0;
    /// How many lines the reasons of every flagged student get.
    int reasonLines = 1;

    bool operator==(const RowForm &) const = default;
};

/// A row has the level, the name and the figures; below them, the reasons over the whole width,
/// which the view draws with `paintText` after its cells.
class RosterDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    RosterDelegate(const Appearance &appearance, const RosterModel &model, QTableView *view);

    /// Must be called when the width, the text size or the form of rows has changed.
    void setForm(const RowForm &form);
    /// Removes what is kept of the rows that were shown.
    void forgetTexts();
    [[nodiscard]] const RowForm &rowForm() const { return form; }
    /// The height of a flagged student's row whose name needs one line.
    [[nodiscard]] int normalHeight() const;
    [[nodiscard]] int heightOf(int row) const;
    /// The empty space above and below the text of a row.
    [[nodiscard]] int verticalPadding() const;
    /// The space beside the text of a column.
    [[nodiscard]] int horizontalPadding() const;
    /// The left edge of the levels.
    [[nodiscard]] int leftMargin() const;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index)
        const override;
    /// Draws the parts of a row that span several columns.
    void paintText(QPainter &painter, const QRect &rowRect, int row) const;
    bool editorEvent(
        QEvent *event, QAbstractItemModel *abstractModel, const QStyleOptionViewItem &option,
        const QModelIndex &index) override;
    bool helpEvent(
        QHelpEvent *event, QAbstractItemView *where, const QStyleOptionViewItem &option,
        const QModelIndex &index) override;

    /// Call when the pointer leaves the rows.
    void clearHover();

  Q_SIGNALS:
    void gradesRequested(const ellwynd::RiskRow &row);
    /// The names of a student's missing work should be shown.
    void detailsRequested(const ellwynd::RiskRow &row);
    /// The date of a contact was clicked: the contact mark should be removed.
    void contactRemovalRequested(const ellwynd::RiskRow &row);
    /// The folded students should be shown.
    void unfoldRequested();

  private:
    [[nodiscard]] int nameHeight(const QString &name) const;
    [[nodiscard]] std::shared_ptr<const ReasonLayout> reasonsOf(const RiskRow &row) const;
    [[nodiscard]] QPoint reasonsAt(const RiskRow &row, const QRect &rowRect) const;
    [[nodiscard]] QRect rowRect(int row) const;
    [[nodiscard]] std::optional<ReasonTarget> targetAt(QPoint position, int row) const;
    /// Whether the position is on the date of a contact, or on the word beside it.
    [[nodiscard]] bool
    isOnContact(QPoint position, const QRect &cell, const QModelIndex &index) const;
    void paintFold(QPainter &painter, const QRect &rect, int row) const;
    void drawName(QPainter &painter, const QRect &cell, const QString &name) const;
    void drawArrow(QPainter &painter, const QRect &line, const RosterChange &change) const;
    void drawContact(QPainter &painter, const QRect &line, const OutreachOutcome &outcome) const;

    /// Reasons that were drawn lately, since shaping their text takes most of the time of painting.
    struct LaidReasons {
        SharedList<ReasonLine> sentences;
        QString match;
        std::shared_ptr<const ReasonLayout> layout;
    };

    const Appearance &appearance;
    const RosterModel &model;
    QTableView *view;
    RowForm form;
    /// Those of a few windows full of rows, the latest last.
    mutable std::deque<LaidReasons> laidReasons;
    /// The heights of names that had to be measured.
    mutable QHash<QString, int> nameHeights;
    /// Of the font of names.
    CharacterWidths characterWidths;
    QFont measuredFont;
    /// The heights of a line with the level and of a line of reasons, so that rows need no metrics.
    int lineHeight = 0;
    int reasonHeight = 0;
    int hoveredRow = -1;
    std::optional<ReasonTarget> hovered;
    bool hoversContact = false;
    /// The row whose contact the mouse button was pressed on; -1 for none.
    int pressedContact = -1;
};

} // namespace ellwynd
