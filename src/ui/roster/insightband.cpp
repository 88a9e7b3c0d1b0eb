#include "ui/roster/insightband.h"

#include "base/calendar.h"
#include "ui/support/appearance.h"
#include "ui/support/levelpill.h"
#include "ui/support/sparkline.h"
#include "uikit/convert.h"
#include "uikit/labels.h"
#include "uikit/tooltip.h"

#include <QGridLayout>
#include <QPainter>
#include <QToolButton>

#include <algorithm>

namespace ellwynd {

namespace {

/// A bar that shows an assignment's share of the class.
class ShareBar : public QWidget {
  public:
    ShareBar(double share, const Appearance &appearance, QWidget *parent)
        : QWidget(parent), share(share), appearance(appearance) {}

    [[nodiscard]] QSize sizeHint() const override { return {appearance.px(72), appearance.px(8)}; }

  protected:
    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        const double height = appearance.px(6);
        const QRectF bar(0, (rect().height() - height) / 2.0, rect().width(), height);
        painter.setBrush(appearance.theme().separator);
        painter.drawRoundedRect(bar, 2, 2);
        painter.setBrush(appearance.theme().accent);
        painter.drawRoundedRect(
            QRectF(bar.left(), bar.top(), bar.width() * share, bar.height()), 2, 2);
    }

  private:
    double share;
    const Appearance &appearance;
};

std::int64_t highestCount(const std::vector<DailyLevels> &days) {
    std::int64_t highest = 1;
    for (const DailyLevels &day : days)
        highest = std::max(highest, day.counts.max());
    return highest;
}

QLabel *label(const QString &text, const QFont &font, QWidget *parent, bool secondary = false) {
    QLabel *result = plainLabel(parent);
    result->setText(text);
    result->setFont(font);
    if (secondary)
        result->setProperty("secondary", true);
    return result;
}

} // namespace

InsightBand::InsightBand(const Appearance &appearance, QWidget *parent)
    : QFrame(parent),
      appearance(appearance),
      brief(new ElidedLabel(this)),
      toggle(new QToolButton(this)) {
    setObjectName(QStringLiteral("card"));
    setAccessibleName(qstring(bandLabel));
    auto *row = new QHBoxLayout(this);
    row->addWidget(brief, 1);
    row->addWidget(toggle, 0, Qt::AlignTop);
    toggle->setAutoRaise(true);
    connect(toggle, &QToolButton::clicked, this, [this] { Q_EMIT collapseRequested(!collapsed); });
    connect(&appearance, &Appearance::appearanceDidChange, this, &InsightBand::rebuild);
    rebuild();
}

void InsightBand::setInsight(const CourseInsight &newInsight) {
    if (insight == newInsight && whole != nullptr)
        return;
    insight = newInsight;
    rebuild();
}

void InsightBand::setCollapsed(bool on) {
    collapsed = on;
    arrange();
}

QSize InsightBand::minimumSizeHint() const {
    return {appearance.px(200), QFrame::minimumSizeHint().height()};
}

void InsightBand::resizeEvent(QResizeEvent *event) {
    QFrame::resizeEvent(event);
    arrange();
}

void InsightBand::rebuild() {
    delete whole;
    whole = new QWidget(this);
    auto *column = new QVBoxLayout(whole);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(appearance.px(5));
    auto *sections = new QHBoxLayout;
    sections->setSpacing(appearance.px(28));
    column->addLayout(sections);
    sections->addWidget(makeSection(QStringLiteral("Last two weeks"), makeTrend()), 0);
    sections->addWidget(makeSection(QStringLiteral("Outreach"), makeOutreach()), 1);
    if (!insight.mostMissed.empty())
        sections->addWidget(makeSection(QStringLiteral("Most missed"), makeMostMissed()), 1);
    if (insight.outreach) {
        auto *caption = new ElidedLabel(whole);
        caption->setFont(appearance.font(0.86));
        caption->setFullText(qstring(outreachCaption));
        caption->setProperty("secondary", true);
        column->addWidget(caption);
    }
    auto *row = static_cast<QHBoxLayout *>(layout());
    row->insertWidget(0, whole, 1);
    row->setContentsMargins(
        appearance.px(14), appearance.px(9), appearance.px(8), appearance.px(9));

    QStringList sentences;
    for (const std::string &sentence : insight.sentences)
        sentences << qstring(sentence);
    const QString all =
        sentences.join(u' ') + QStringLiteral(" Outreach: ") + qstring(insight.outreachLine);
    brief->setFont(appearance.font());
    brief->setFullText(all);
    setAccessibleDescription(all);
    arrange();
}

/// Shows the whole band if it fits, else the one-line form.
void InsightBand::arrange() {
    const int available = width() - layout()->contentsMargins().left() -
        layout()->contentsMargins().right() - toggle->sizeHint().width() - layout()->spacing();
    const bool fits = whole->minimumSizeHint().width() <= available;
    whole->setVisible(!collapsed && fits);
    brief->setVisible(collapsed || !fits);
    toggle->setVisible(fits);
    toggle->setText(collapsed ? QStringLiteral("▾") : QStringLiteral("▴"));
    const QString command = collapsed ? QStringLiteral("Show the whole course insight")
                                      : QStringLiteral("Show the course insight on one line");
    toggle->setToolTip(command);
    toggle->setAccessibleName(command);
}

QWidget *InsightBand::makeSection(const QString &title, QWidget *content) {
    auto *section = new QWidget(whole);
    auto *column = new QVBoxLayout(section);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(appearance.px(5));
    QLabel *heading = label(title.toUpper(), appearance.font(0.8, QFont::DemiBold), section, true);
    heading->setAccessibleName(title);
    column->addWidget(heading);
    column->addWidget(content);
    column->addStretch(1);
    return section;
}

QWidget *InsightBand::makeTrend() {
    auto *content = new QWidget(whole);
    auto *grid = new QGridLayout(content);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(appearance.px(14));
    grid->setVerticalSpacing(appearance.px(2));
    const std::int64_t highest = highestCount(insight.days);
    for (std::size_t i = 0; i < insight.sentences.size(); ++i) {
        const RiskLevel level = allRiskLevels[i];
        auto *line = new Sparkline(
            appearance, [level](const Theme &theme) { return levelColors(theme, level).text; },
            content);
        SparklineData trend{.days = trendDays, .highest = highest};
        for (const DailyLevels &day : insight.days) {
            const std::int64_t before = calendar::daysBetween(day.day, insight.days.back().day);
            trend.points.push_back({trendDays - before, day.counts[level]});
        }
        line->setLine(std::move(trend));
        grid->addWidget(line, int(i), 0);
        grid->addWidget(
            label(qstring(insight.sentences[i]), appearance.font(), content), int(i), 1);
    }
    grid->setColumnStretch(1, 1);
    return content;
}

QWidget *InsightBand::makeOutreach() {
    auto *content = new QWidget(whole);
    auto *grid = new QGridLayout(content);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(appearance.px(8));
    grid->setVerticalSpacing(appearance.px(2));
    if (!insight.outreach) {
        auto *sentence = secondaryLabel(content, qstring(insight.outreachLine));
        grid->addWidget(sentence, 0, 0);
        return content;
    }
    const OutreachCounts &counts = *insight.outreach;
    const std::pair<std::int64_t, QString> lines[] = {
        {counts.contacted, QStringLiteral("contacted")},
        {counts.awaitingFollowUp, QStringLiteral("awaiting follow-up")},
        {counts.notYetReached(), QStringLiteral("not yet reached")}};
    int row = 0;
    for (const auto &[count, text] : lines) {
        QLabel *number = label(QString::number(count), appearance.font(1, QFont::Bold), content);
        number->setAccessibleName(QStringLiteral("%1 %2").arg(count).arg(text));
        grid->addWidget(number, row, 0, Qt::AlignRight);
        grid->addWidget(label(text, appearance.font(), content), row, 1);
        ++row;
    }
    grid->setColumnStretch(1, 1);
    content->setAccessibleDescription(qstring(outreachCaption));
    return content;
}

QWidget *InsightBand::makeMostMissed() {
    auto *content = new QWidget(whole);
    auto *grid = new QGridLayout(content);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(appearance.px(10));
    grid->setVerticalSpacing(appearance.px(2));
    int row = 0;
    for (const MissedAssignment &assignment : insight.mostMissed) {
        auto *name = new ElidedLabel(content);
        name->setFullText(qstring(assignment.name));
        name->setMinimumWidth(appearance.px(80));
        const auto students = double(assignment.studentIDs.size());
        auto *bar = new ShareBar(
            assignment.rosterSize > 0 ? students / double(assignment.rosterSize) : 0, appearance,
            content);
        QLabel *count =
            label(QString::number(assignment.studentIDs.size()), appearance.font(), content);
        count->setAccessibleName(qstring(missedWorkDescription(assignment)));
        count->setToolTip(plainToolTip(qstring(missedWorkDescription(assignment))));
        grid->addWidget(name, row, 0);
        grid->addWidget(bar, row, 1, Qt::AlignVCenter);
        grid->addWidget(count, row, 2, Qt::AlignRight);
        ++row;
    }
    auto *link = new TextLink(QStringLiteral("Missing work by assignment"), content);
    link->setWordWrap(false);
    connect(link, &TextLink::openRequested, this, &InsightBand::missingWorkRequested);
    grid->addWidget(link, row, 0, 1, 3);
    grid->setColumnStretch(0, 1);
    return content;
}

} // namespace ellwynd
