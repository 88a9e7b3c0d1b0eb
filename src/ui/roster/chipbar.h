// The filters above a roster.
#pragma once

#include "app/roster/rosterquery.h"

#include <QWidget>

#include <array>

class QLabel;
class QPushButton;

namespace ellwynd {

class Appearance;
class FlowLayout;
class TextLink;

/// One button for each chip with its count, then the filter by an assignment and the order, each
/// with the command that ends it. Continues on more lines when the width is too small.
class ChipBar : public QWidget {
    Q_OBJECT

  public:
    ChipBar(const Appearance &appearance, QWidget *parent);

    void show(const RosterRows &roster, const RosterQuery &query);

  Q_SIGNALS:
    void queryRequested(const ellwynd::RosterQuery &query);

  private:
    void choose(std::size_t index);
    void applyAppearance();

    const Appearance &appearance;
    RosterQuery query;
    FlowLayout *flow;
    std::array<QPushButton *, allRosterChips.size()> chips{};
    QPushButton *missing;
    QWidget *order;
    QLabel *sortedBy;
    TextLink *worstFirst;
};

} // namespace ellwynd
