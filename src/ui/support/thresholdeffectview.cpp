#include "ui/support/thresholdeffectview.h"

#include "app/explain/thresholdeffect.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QVBoxLayout>

namespace ellwynd {

ThresholdEffectView::ThresholdEffectView(
    const RosterCache &rosters, const Appearance &appearance, QWidget *parent)
    : QWidget(parent),
      rosters(rosters),
      title(plainLabel(this, true)),
      names(secondaryLabel(this)) {
    title->setFont(appearance.font(1, QFont::DemiBold));
    // Room for the names, so that a sheet does not grow with each step.
    names->setMinimumHeight(2 * QFontMetrics(appearance.font()).lineSpacing());
    names->setAlignment(Qt::AlignTop);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(title);
    column->addWidget(names);
}

void ThresholdEffectView::begin(
    const CourseThresholds &thresholds, std::optional<std::int64_t> courseID) {
    thresholdsBefore = thresholds;
    before = {};
    for (const auto &[id, course] : rosters.entries) {
        if (!courseID || id == *courseID)
            before.store(course);
    }
    showEffect(thresholds);
}

void ThresholdEffectView::end() {
    before = {};
}

void ThresholdEffectView::showEffect(const CourseThresholds &thresholds) {
    const bool isSame = thresholds.passingScore == thresholdsBefore.passingScore &&
        thresholds.inactivityDays == thresholdsBefore.inactivityDays;
    title->clear();
    names->clear();
    if (isSame || before.entries.empty())
        return;
    const ThresholdEffect effect = thresholdEffect(before, rosters);
    title->setText(qstring(effectLine(effect, thresholdsBefore, thresholds)));
    names->setText(qstring(effectDetails(effect)));
}

} // namespace ellwynd
