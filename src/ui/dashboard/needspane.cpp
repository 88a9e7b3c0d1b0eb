#include "ui/dashboard/needspane.h"

#include "app/dashboard/dashboardtexts.h"
#include "ui/dashboard/studentlist.h"
#include "ui/support/appearance.h"
#include "ui/support/chip.h"
#include "ui/support/flowlayout.h"
#include "uikit/convert.h"
#include "uikit/labels.h"
#include "uikit/textlink.h"

#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

namespace ellwynd {

NeedsPane::NeedsPane(const Appearance &appearance, QWidget *parent)
    : QWidget(parent),
      appearance(appearance),
      title(plainLabel(this)),
      heading(new QWidget(this)),
      flow(new FlowLayout(heading)),
      all(new TextLink({}, heading)),
      empty(secondaryLabel(this)),
      everyone(new TextLink(QStringLiteral("Show all flagged students"), this)),
      students(new StudentList(appearance, this)) {
    title->setText(QStringLiteral("Needs you first"));
    flow->addWidget(title);
    for (std::size_t i = 0; i < chips.size(); ++i) {
        QPushButton *chip = makeChip(heading);
        connect(chip, &QPushButton::clicked, this, [this, i](bool checked) {
            choose(checked ? std::optional(allDashboardChips[i]) : std::nullopt);
        });
        chips[i] = chip;
        flow->addWidget(chip);
    }
    flow->setContentsMargins(0, 0, 0, 0);
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    heading->setSizePolicy(policy);
    all->setWordWrap(false);
    connect(all, &QAbstractButton::clicked, this, [this] { Q_EMIT termRequested(term.id); });
    connect(everyone, &QAbstractButton::clicked, this, [this] { choose(std::nullopt); });

    flow->addWidget(all);
    flow->setAlignment(all, Qt::AlignRight);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(heading);
    column->addWidget(empty);
    column->addWidget(everyone);
    column->addWidget(students);
    connect(&appearance, &Appearance::appearanceDidChange, this, &NeedsPane::applyAppearance);
    applyAppearance();
}

void NeedsPane::setTerm(const DashboardTerm &newTerm) {
    // The model also changes with each course of a pass.
    if (newTerm == term)
        return;
    if (newTerm.id != term.id)
        chosen.reset();
    term = newTerm;
    showStudents();
}

void NeedsPane::choose(std::optional<DashboardChip> chip) {
    chosen = chip;
    showStudents();
}

void NeedsPane::showStudents() {
    for (std::size_t i = 0; i < chips.size(); ++i) {
        const DashboardChip chip = allDashboardChips[i];
        const auto count = std::ranges::count_if(
            term.students, [&](const DashboardStudent &each) { return belongs(each, chip); });
        showChip(*chips[i], chipName(chip), std::size_t(count), chosen == chip);
        chips[i]->setVisible(
            !term.students.empty() &&
            (term.remembersContacts || chip == DashboardChip::worse ||
             chip == DashboardChip::atRisk));
    }
    SharedList<DashboardStudent> shown = term.students;
    if (chosen) {
        std::vector<DashboardStudent> belonging;
        std::ranges::copy_if(shown, std::back_inserter(belonging), [this](const auto &each) {
            return belongs(each, *chosen);
        });
        shown = std::move(belonging);
    }
    empty->setVisible(shown.empty());
    empty->setText(qstring(emptyText(chosen)));
    everyone->setVisible(shown.empty() && chosen.has_value());
    all->setLink(qstring(allFlaggedText(term)));
    all->setVisible(!term.students.empty());
    flow->invalidate();
    students->setVisible(!shown.empty());
    students->setStudents(std::move(shown), term.remembersContacts);
}

void NeedsPane::applyAppearance() {
    title->setFont(appearance.font(1.1, QFont::Bold));
    title->setContentsMargins(0, 0, appearance.px(12), 0);
    for (QPushButton *chip : chips)
        chip->setFont(appearance.font(0.92));
    all->setFont(appearance.font());
    flow->setSpacing(appearance.px(6));
    layout()->setSpacing(appearance.px(9));
    updateGeometry();
}

} // namespace ellwynd
