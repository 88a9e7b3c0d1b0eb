#include "ui/roster/insightband.h"

#include "app/courses/courselabel.h"
#include "app/explain/explaintexts.h"
#include "base/calendar.h"
#include "ui/support/appearance.h"
#include "ui/support/levelpill.h"
#include "ui/support/sparkline.h"
#include "uikit/convert.h"
#include "uikit/labels.h"
#include "uikit/textlink.h"
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
    : QFrame(parent), appearance(appearance), toggle(new QToolButton(this)) {
    setObjectName(QStringLiteral("card"));
    setAccessibleName(qstring(bandLabel));
    auto *row = new QHBoxLayout(this);
    row->addWidget(toggle, 0, Qt::AlignTop);
    toggle->setAutoRaise(true);
    connect(toggle, &QToolButton::clicked, this, [this] { Q_EMIT collapseRequested(!collapsed); });
    connect(&appearance, &Appearance::appearanceDidChange, this, &InsightBand::rebuild);
    rebuild();
}

void InsightBand::setInsight(const CourseInsight &newInsight) {
    if (insight == newInsight)
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
    delete std::exchange(whole, nullptr);
    delete std::exchange(line, nullptr);
    lessImportant.clear();
    QStringList sentences;
    for (const std::string &sentence : insight.sentences)
        sentences << qstring(sentence);
    setAccessibleDescription(
        sentences.join(u' ') + QStringLiteral(" Outreach: ") + qstring(insight.outreachLine));
    arrange();
}

void InsightBand::makeWhole() {
    whole = new QWidget(this);
    auto *column = new QVBoxLayout(whole);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(appearance.px(5));
    sections = new QBoxLayout(QBoxLayout::LeftToRight);
    sections->setSpacing(appearance.px(20));
    column->addLayout(sections);
    sections->addWidget(makeSection(QStringLiteral("Last two weeks"), makeTrend()), 0);
    sections->addWidget(makeSection(QStringLiteral("Outreach"), makeOutreach()), 1);
    if (!insight.mostMissed.empty())
        sections->addWidget(makeSection(QStringLiteral("Most missed"), makeMostMissed()), 1);
    if (insight.outreach) {
        auto *caption = secondaryLabel(whole, qstring(outreachCaption));
        caption->setFont(appearance.font(0.86));
        column->addWidget(caption);
    }
    if (!insight.coverage.empty())
        column->addWidget(makeCoverage(whole), 0, Qt::AlignLeft);
    static_cast<QHBoxLayout *>(layout())->insertWidget(0, whole, 1);
}

/// The levels with their trends, and the most missed assignment.
void InsightBand::makeLine() {
    line = new QWidget(this);
    auto *row = new QHBoxLayout(line);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(appearance.px(6));
    QLabel *heading = label(QStringLiteral("Two weeks"), appearance.font(0.92), line, true);
    row->addWidget(heading);
    std::vector<QWidget *> sparklines;
    for (std::size_t i = 0; i < insight.sentences.size(); ++i) {
        const RiskLevel level = allRiskLevels[i];
        QWidget *trend = makeSparkline(level, line);
        trend->setFixedWidth(appearance.px(48));
        sparklines.push_back(trend);
        QLabel *now = label(qstring(levelBrief(insight, level)), appearance.font(0.94), line);
        now->setAccessibleName(qstring(insight.sentences[i]));
        now->setToolTip(plainToolTip(qstring(insight.sentences[i])));
        row->addWidget(trend);
        row->addWidget(now);
        row->addSpacing(appearance.px(6));
    }
    if (isLimited(insight.coverage)) {
        TextLink *coverage = makeCoverage(line);
        row->addWidget(coverage);
        lessImportant.push_back({coverage});
    }
    row->addStretch(1);
    if (!insight.mostMissed.empty()) {
        const MissedAssignment &most = insight.mostMissed.front();
        QLabel *title = label(QStringLiteral("Most missed:"), appearance.font(0.94), line, true);
        TextLink *link = makeAssignmentLink(most, qstring(mostMissedText(most)), line);
        row->addWidget(title);
        row->addWidget(link);
        lessImportant.insert(lessImportant.end(), {{heading}, sparklines, {title}, {link}});
    } else {
        lessImportant.insert(lessImportant.end(), {{heading}, sparklines});
    }
    static_cast<QHBoxLayout *>(layout())->insertWidget(0, line, 1);
}

/// A link to the list of the signals that count.
TextLink *InsightBand::makeCoverage(QWidget *parent) {
    auto *link = new TextLink(qstring(coverageLine(insight.coverage)), parent);
    link->setFont(appearance.font(0.92));
    link->setWordWrap(false);
    QStringList lines;
    for (const SignalCoverage &entry : insight.coverage)
        lines << qstring(coverageText(entry));
    link->setToolTip(plainToolTip(lines.join(u'\n')));
    connect(link, &QAbstractButton::clicked, this, &InsightBand::coverageRequested);
    return link;
}

/// A link that shows the students who are missing an assignment.
TextLink *InsightBand::makeAssignmentLink(
    const MissedAssignment &assignment, const QString &text, QWidget *parent) {
    const QFontMetrics metrics(appearance.font(0.94));
    auto *link =
        new TextLink(metrics.elidedText(text, Qt::ElideMiddle, appearance.px(230)), parent);
    link->setFont(appearance.font(0.94));
    link->setWordWrap(false);
    link->setAccessibleName(qstring(missedWorkDescription(assignment)));
    link->setToolTip(plainToolTip(
        qstring(missedWorkDescription(assignment)) + QStringLiteral(". Shows these students.")));
    const AssignmentRef target{.id = assignment.id, .name = assignment.name};
    connect(link, &QAbstractButton::clicked, this, [this, target] {
        Q_EMIT assignmentRequested(target);
    });
    return link;
}

/// Shows the whole band or the line. In a narrow window the sections of the band are below each
/// other, and the line is shortened.
void InsightBand::arrange() {
    auto *row = static_cast<QHBoxLayout *>(layout());
    const int vertical = appearance.px(collapsed ? 3 : 9);
    row->setContentsMargins(appearance.px(12), vertical, appearance.px(6), vertical);
    const int available = width() - row->contentsMargins().left() - row->contentsMargins().right() -
        toggle->sizeHint().width() - row->spacing();
    if (collapsed)
        fitLine(available);
    else
        fitWhole(available);
    if (whole != nullptr)
        whole->setVisible(!collapsed);
    if (line != nullptr)
        line->setVisible(collapsed);
    toggle->setText(collapsed ? QStringLiteral("▾") : QStringLiteral("▴"));
    const QString command = collapsed ? QStringLiteral("Show the whole course insight")
                                      : QStringLiteral("Show the course insight on one line");
    toggle->setToolTip(command);
    toggle->setAccessibleName(command);
}

void InsightBand::fitWhole(int available) {
    if (whole == nullptr)
        makeWhole();
    sections->setDirection(QBoxLayout::LeftToRight);
    if (sections->minimumSize().width() > available)
        sections->setDirection(QBoxLayout::TopToBottom);
}

void InsightBand::fitLine(int available) {
    if (line == nullptr)
        makeLine();
    const auto setVisible = [this](const std::vector<QWidget *> &parts, bool on) {
        for (QWidget *part : parts)
            part->setVisible(on);
        line->layout()->invalidate();
    };
    for (const auto &parts : lessImportant)
        setVisible(parts, true);
    for (const auto &parts : lessImportant) {
        if (line->layout()->minimumSize().width() <= available)
            break;
        setVisible(parts, false);
    }
}

QWidget *InsightBand::makeSparkline(RiskLevel level, QWidget *parent) const {
    auto *sparkline = new Sparkline(
        appearance, [level](const Theme &theme) { return levelColors(theme, level).text; }, parent);
    SparklineData trend{.days = trendDays, .highest = highestCount(insight.days)};
    for (const DailyLevels &day : insight.days) {
        const std::int64_t before = calendar::daysBetween(day.day, insight.days.back().day);
        trend.points.push_back({trendDays - before, day.counts[level]});
    }
    sparkline->setLine(std::move(trend));
    return sparkline;
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
    for (std::size_t i = 0; i < insight.sentences.size(); ++i) {
        grid->addWidget(makeSparkline(allRiskLevels[i], content), int(i), 0);
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
        TextLink *name =
            makeAssignmentLink(assignment, qstring(ellwynd::collapsed(assignment.name)), content);
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
    connect(link, &QAbstractButton::clicked, this, &InsightBand::missingWorkRequested);
    grid->addWidget(link, row, 0, 1, 3);
    grid->setColumnStretch(0, 1);
    return content;
}

} // namespace ellwynd
