#include "ui/roster/chipbar.h"

#include "app/courses/courselabel.h"
#include "ui/support/appearance.h"
#include "ui/support/chip.h"
#include "ui/support/flowlayout.h"
#include "uikit/convert.h"
#include "uikit/labels.h"
#include "uikit/textlink.h"
#include "uikit/tooltip.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QShortcut>

#include <algorithm>

namespace ellwynd {

ChipBar::ChipBar(const Appearance &appearance, QWidget *parent)
    : QWidget(parent),
      appearance(appearance),
      flow(new FlowLayout(this)),
      missing(makeChip(this)),
      order(new QWidget(this)),
      sortedBy(secondaryLabel(order, {}, false)),
      worstFirst(new TextLink(QStringLiteral("Worst first"), order)) {
    for (std::size_t i = 0; i < chips.size(); ++i) {
        QPushButton *chip = makeChip(this);
        const QKeySequence key(int(Qt::ALT) | int(Qt::Key_1 + int(i)));
        chip->setToolTip(key.toString(QKeySequence::NativeText));
        connect(chip, &QPushButton::clicked, this, [this, i] { choose(i); });
        connect(new QShortcut(key, this), &QShortcut::activated, this, [this, i] {
            if (chips[i]->isVisible())
                choose(i);
        });
        chips[i] = chip;
        flow->addWidget(chip);
    }
    connect(missing, &QPushButton::clicked, this, [this] {
        RosterQuery wanted = query;
        wanted.missing.reset();
        Q_EMIT queryRequested(wanted);
    });
    flow->addWidget(missing);
    worstFirst->setWordWrap(false);
    connect(worstFirst, &QAbstractButton::clicked, this, [this] {
        RosterQuery wanted = query;
        wanted.sort = RosterSort::worstFirst;
        wanted.descending = false;
        Q_EMIT queryRequested(wanted);
    });
    auto *row = new QHBoxLayout(order);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(sortedBy);
    row->addWidget(worstFirst);
    flow->addWidget(order);
    flow->setContentsMargins(0, 0, 0, 0);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    connect(&appearance, &Appearance::appearanceDidChange, this, &ChipBar::applyAppearance);
    applyAppearance();
}

void ChipBar::choose(std::size_t index) {
    // A click on the chosen chip would uncheck it.
    chips[index]->setChecked(query.chip == allRosterChips[index]);
    RosterQuery wanted = query;
    wanted.chip = allRosterChips[index];
    Q_EMIT queryRequested(wanted);
}

void ChipBar::applyAppearance() {
    flow->setSpacing(appearance.px(5));
    for (QPushButton *chip : findChildren<QPushButton *>())
        chip->setFont(appearance.font(0.92));
    updateGeometry();
}

void ChipBar::show(const RosterRows &roster, const RosterQuery &newQuery) {
    query = newQuery;
    const std::vector<RosterChip> offered = roster.chips();
    for (std::size_t i = 0; i < chips.size(); ++i) {
        const RosterChip chip = allRosterChips[i];
        chips[i]->setVisible(std::ranges::count(offered, chip) > 0);
        showChip(*chips[i], chipName(chip), roster.count(chip), chip == query.chip);
    }
    missing->setVisible(query.missing.has_value());
    missing->setChecked(true);
    if (query.missing) {
        const QString name = qstring(collapsed(query.missing->name));
        const QString text = QStringLiteral("Missing ") + name;
        const QString shown = fontMetrics().elidedText(text, Qt::ElideMiddle, appearance.px(260));
        missing->setText(menuText(shown.toStdString()) + QStringLiteral(" ✕"));
        missing->setAccessibleName(text + QStringLiteral(", remove this filter"));
        missing->setToolTip(plainToolTip(text));
    }
    const QString sorted = qstring(sortedByText(query));
    order->setVisible(!sorted.isEmpty());
    sortedBy->setText(sorted + QStringLiteral(" · "));
    sortedBy->setAccessibleName(sorted);
    flow->invalidate();
    updateGeometry();
}

} // namespace ellwynd
