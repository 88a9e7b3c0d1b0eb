#include "ui/details/studentdetails.h"

#include "app/roster/rostertexts.h"
#include "ui/details/termchart.h"
#include "ui/support/appearance.h"
#include "ui/support/levelpill.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QGridLayout>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace ellwynd {

StudentDetails::StudentDetails(const Appearance &appearance, QWidget *parent)
    : QScrollArea(parent), appearance(appearance) {
    setObjectName(QStringLiteral("detailsPane"));
    setAccessibleName(QStringLiteral("Student details"));
    setWidgetResizable(true);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(&appearance, &Appearance::appearanceDidChange, this, &StudentDetails::rebuild);
    rebuild();
}

void StudentDetails::show(std::vector<RiskRow> newRows, StudentHistory newHistory) {
    if (newRows == rows && newHistory == history && widget() != nullptr)
        return;
    rows = std::move(newRows);
    history = std::move(newHistory);
    rebuild();
}

void StudentDetails::setContactsEnabled(bool enabled) {
    if (std::exchange(contactsEnabled, enabled) != enabled)
        rebuild();
}

void StudentDetails::rebuild() {
    auto *content = new QWidget;
    content->setObjectName(QStringLiteral("detailsPane"));
    content->setAttribute(Qt::WA_StyledBackground);
    auto *column = new QVBoxLayout(content);
    const int margin = appearance.px(16);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(appearance.px(6));
    if (rows.size() == 1) {
        const RiskRow &row = rows.front();
        addHeading(*column, row);
        addFigures(*column, row);
        addReasons(*column, row);
        addTerm(*column);
        addOutreach(*column);
        addButtons(*column);
    } else if (!rows.empty()) {
        addSelection(*column);
        addButtons(*column);
    } else {
        auto *hint = secondaryLabel(
            content, QStringLiteral("Select a student to see why they are flagged."));
        hint->setAlignment(Qt::AlignCenter);
        column->addStretch(1);
        column->addWidget(hint);
    }
    column->addStretch(2);
    // The rebuild may come from the old contents: from their menu, or their focused button. They
    // are deleted later, and the new button of the same name gets the focus.
    const QWidget *focused = focusWidget();
    const bool hadFocus = focused != nullptr && focused->hasFocus();
    const QString name = hadFocus ? focused->accessibleName() : QString();
    if (QWidget *old = takeWidget()) {
        old->hide();
        old->deleteLater();
    }
    setWidget(content);
    for (auto *button : content->findChildren<QPushButton *>()) {
        if (hadFocus && button->accessibleName() == name)
            button->setFocus();
    }
}

void StudentDetails::addHeading(QVBoxLayout &column, const RiskRow &row) {
    auto *name = plainLabel(nullptr, true);
    name->setFont(appearance.font(1.22, QFont::Bold));
    name->setText(qstring(row.name));
    name->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column.addWidget(name);
    auto *pill = new LevelPill(appearance);
    pill->setLevel(row.level);
    pill->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    column.addWidget(pill, 0, Qt::AlignLeft);
    if (history.change) {
        auto *moved = plainLabel(nullptr, true);
        moved->setText(
            qstring(arrowOf(*history.change)) + QStringLiteral(" ") +
            qstring(changeText(*history.change)));
        moved->setAccessibleName(qstring(changeText(*history.change)));
        moved->setToolTip(qstring(arrowText(*history.change)));
        column.addWidget(moved);
    }
    auto *course = secondaryLabel(nullptr, qstring(row.courseName));
    column.addWidget(course);
}

void StudentDetails::addFigures(QVBoxLayout &column, const RiskRow &row) {
    struct Figure {
        QString label;
        QString value;
    };
    QString score = qstring(scoreText(row.currentScore));
    if (row.currentGrade && !row.currentGrade->empty())
        score += QStringLiteral(" ") + qstring(*row.currentGrade);
    const std::vector<Figure> figures{
        {QStringLiteral("Score"), score},
        {QStringLiteral("Time in course"), qstring(timeInCourseText(row.totalActivityTime))},
        {QStringLiteral("Last active"), qstring(lastActiveText(row.lastActivityAt, systemNow()))},
        {QStringLiteral("Missing"), QString::number(row.missingCount)},
    };
    auto *grid = new QGridLayout;
    grid->setHorizontalSpacing(appearance.px(14));
    grid->setVerticalSpacing(appearance.px(8));
    for (std::size_t i = 0; i < figures.size(); ++i) {
        auto *cell = new QVBoxLayout;
        cell->setSpacing(0);
        auto *label = secondaryLabel(nullptr, figures[i].label);
        label->setFont(appearance.font(0.92));
        auto *value = plainLabel(nullptr, true);
        value->setFont(appearance.font(1.12, QFont::DemiBold));
        value->setText(figures[i].value);
        value->setAccessibleName(figures[i].label + QStringLiteral(": ") + figures[i].value);
        cell->addWidget(label);
        cell->addWidget(value);
        cell->addStretch(1);
        grid->addLayout(cell, int(i / 2), int(i % 2));
    }
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
    column.addSpacing(appearance.px(6));
    column.addLayout(grid);
}

void StudentDetails::addSection(QVBoxLayout &column, const QString &title) {
    auto *line = new QFrame;
    line->setObjectName(QStringLiteral("separator"));
    line->setFixedHeight(1);
    column.addSpacing(appearance.px(8));
    column.addWidget(line);
    column.addSpacing(appearance.px(4));
    auto *label = secondaryLabel(nullptr, title.toUpper(), false);
    label->setFont(appearance.font(0.86, QFont::DemiBold));
    label->setAccessibleName(title);
    column.addWidget(label);
}

void StudentDetails::addTerm(QVBoxLayout &column) {
    if (!history.trend)
        return;
    addSection(column, QStringLiteral("This term"));
    column.addWidget(new TermChart(*history.trend, appearance));
    auto *story = secondaryLabel(nullptr, qstring(termStory(*history.trend)));
    column.addWidget(story);
}

void StudentDetails::addOutreach(QVBoxLayout &column) {
    if (!history.outreach)
        return;
    addSection(column, QStringLiteral("Outreach"));
    auto *sentence = plainLabel(nullptr, true);
    sentence->setText(qstring(outreachText(*history.outreach)));
    column.addWidget(sentence);
}

/// The number of selected students and the first names.
void StudentDetails::addSelection(QVBoxLayout &column) {
    auto *heading = plainLabel(nullptr, true);
    heading->setFont(appearance.font(1.22, QFont::Bold));
    heading->setText(qstring(studentsText(rows.size())) + QStringLiteral(" selected"));
    column.addWidget(heading);
    constexpr std::size_t listed = 12;
    for (std::size_t i = 0; i < std::min(rows.size(), listed); ++i) {
        auto *name = new ElidedLabel;
        name->setFullText(qstring(rows[i].name));
        column.addWidget(name);
    }
    if (rows.size() > listed) {
        auto *more =
            secondaryLabel(nullptr, QStringLiteral("and %1 more").arg(rows.size() - listed), false);
        column.addWidget(more);
    }
}

void StudentDetails::addButtons(QVBoxLayout &column) {
    const bool one = rows.size() == 1;
    auto *contacted = new QPushButton(QStringLiteral("Mark as Contacted"));
    contacted->setAccessibleName(contacted->text());
    contacted->setToolTip(
        one ? QStringLiteral("Record that you wrote to this student just now")
            : QStringLiteral("Record that you wrote to these students just now"));
    contacted->setEnabled(contactsEnabled);
    connect(contacted, &QPushButton::clicked, this, [this] { Q_EMIT contactsRequested(rows); });
    auto *copy = new QPushButton(QStringLiteral("Copy Message ▾"));
    copy->setAccessibleName(QStringLiteral("Copy Message"));
    copy->setToolTip(
        one ? QStringLiteral("Copy a message about this student to the clipboard")
            : QStringLiteral("Copy a message about each of them to the clipboard"));
    auto *messages = new QMenu(copy);
    copy->setMenu(messages);
    connect(messages, &QMenu::aboutToShow, this, [this, messages] {
        Q_EMIT messagesRequested(messages);
    });
    column.addSpacing(appearance.px(10));
    column.addWidget(copy, 0, Qt::AlignLeft);
    column.addWidget(contacted, 0, Qt::AlignLeft);
    if (!one)
        return;
    auto *grades = new QPushButton(QStringLiteral("Open Grades"));
    grades->setToolTip(QStringLiteral("Open this student's grades in Canvas"));
    connect(grades, &QPushButton::clicked, this, [this] { Q_EMIT gradesRequested(rows.front()); });
    column.addWidget(grades, 0, Qt::AlignLeft);
}

void StudentDetails::addReasons(QVBoxLayout &column, const RiskRow &row) {
    addSection(column, QStringLiteral("Why"));
    if (row.reasonLines.empty()) {
        auto *none = plainLabel(nullptr, true);
        none->setText(QStringLiteral("No reasons for concern."));
        column.addWidget(none);
    }
    for (const ReasonLine &line : row.reasonLines) {
        if (line.role == ReasonRole::currentScore) {
            auto *link = new TextLink(qstring(line.text));
            link->setToolTip(QStringLiteral("Open the grades in Canvas"));
            connect(
                link, &TextLink::openRequested, this, [this, row] { Q_EMIT gradesRequested(row); });
            column.addWidget(link);
            continue;
        }
        auto *sentence = plainLabel(nullptr, true);
        sentence->setText(qstring(line.text));
        column.addWidget(sentence);
        for (const ReasonLink &reasonLink : line.links) {
            const auto *assignment = std::get_if<AssignmentRef>(&reasonLink.target);
            if (assignment == nullptr)
                continue;
            auto *link = new TextLink(qstring(assignment->name));
            link->setContentsMargins(appearance.px(12), 0, 0, 0);
            link->setToolTip(QStringLiteral("Open this assignment in Canvas"));
            connect(link, &TextLink::openRequested, this, [this, row, id = assignment->id] {
                Q_EMIT assignmentRequested(row, id);
            });
            column.addWidget(link);
        }
    }
}

} // namespace ellwynd
