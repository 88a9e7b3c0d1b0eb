#include "ui/details/studentdetails.h"

#include "app/courses/courselabel.h"
#include "app/explain/explaintexts.h"
#include "app/messages/messagetexts.h"
#include "app/roster/rostertexts.h"
#include "ui/details/explainedsentence.h"
#include "ui/details/signalbars.h"
#include "ui/details/termchart.h"
#include "ui/support/appearance.h"
#include "ui/support/flowlayout.h"
#include "ui/support/levelpill.h"
#include "uikit/convert.h"
#include "uikit/labels.h"
#include "uikit/textlink.h"

#include <QApplication>
#include <QMenu>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QTimer>
#include <QVBoxLayout>

#include <algorithm>
#include <tuple>
#include <utility>

namespace ellwynd {

namespace {

/// How many names of several students are shown.
constexpr std::size_t listed = 12;

/// Several students are compared by what is shown of them, besides their summary.
bool lookTheSame(const SharedList<RiskRow> &a, const SharedList<RiskRow> &b) {
    if (a.size() == 1 || a.size() != b.size())
        return a == b;
    const auto look = [](const RiskRow &row) { return std::tie(row.courseID, row.id, row.name); };
    return std::equal(
        a.begin(), a.begin() + std::min(a.size(), listed), b.begin(),
        [&look](const RiskRow &one, const RiskRow &other) { return look(one) == look(other); });
}

} // namespace

StudentDetails::StudentDetails(const Appearance &appearance, QWidget *parent)
    : QWidget(parent),
      appearance(appearance),
      head(new QWidget(this)),
      scroll(new QScrollArea(this)),
      page(new QWidget(scroll->viewport())),
      body(new QWidget(page)) {
    setObjectName(QStringLiteral("detailsPane"));
    page->setObjectName(QStringLiteral("detailsPane"));
    for (QWidget *part : {static_cast<QWidget *>(this), page})
        part->setAttribute(Qt::WA_StyledBackground);
    setAccessibleName(QStringLiteral("Student details"));
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setFocusPolicy(Qt::NoFocus);
    auto *pageColumn = new QVBoxLayout(page);
    pageColumn->setContentsMargins(0, 0, 0, 0);
    pageColumn->addWidget(body);
    scroll->setWidget(page);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(head);
    column->addWidget(scroll, 1);
    connect(
        &appearance, &Appearance::appearanceDidChange, this, &StudentDetails::contentsDidChange);
}

void StudentDetails::show(
    SharedList<RiskRow> newRows, StudentHistory newHistory, const SelectionSummary &newSummary) {
    const bool isSame =
        lookTheSame(newRows, rows) && newHistory == history && newSummary == summary;
    // Also when they are equal, since the old ones keep old data in memory.
    rows = std::move(newRows);
    if (isSame)
        return;
    history = std::move(newHistory);
    summary = newSummary;
    contentsDidChange();
}

void StudentDetails::setContactsEnabled(bool enabled) {
    if (std::exchange(contactsEnabled, enabled) != enabled)
        contentsDidChange();
}

void StudentDetails::focusContents() {
    rebuildIfOutdated();
    for (QWidget *part : {body, head}) {
        for (auto *link : part->findChildren<TextLink *>()) {
            link->setFocus(Qt::TabFocusReason);
            return;
        }
        for (auto *button : part->findChildren<QPushButton *>()) {
            button->setFocus(Qt::TabFocusReason);
            return;
        }
    }
}

void StudentDetails::showEvent(QShowEvent *event) {
    if (isOutdated) {
        // A pane that appears in a resize is painted before the next event.
        setUpdatesEnabled(false);
        contentsDidChange();
    }
    QWidget::showEvent(event);
}

/// The contents are rebuilt in an event of their own before the next paint, since that takes as
/// long as all else that a new roster changes. While the pane is hidden, that waits until it is
/// shown.
void StudentDetails::contentsDidChange() {
    isOutdated = true;
    if (!isHidden())
        QMetaObject::invokeMethod(this, &StudentDetails::rebuildIfOutdated, Qt::QueuedConnection);
}

void StudentDetails::rebuildIfOutdated() {
    if (isHidden() || !std::exchange(isOutdated, false))
        return;
    rebuild();
    setUpdatesEnabled(true);
}

void StudentDetails::rebuild() {
    auto *newHead = new QWidget(this);
    auto *newBody = new QWidget(page);
    auto *top = new QVBoxLayout(newHead);
    auto *column = new QVBoxLayout(newBody);
    const int margin = appearance.px(16);
    top->setContentsMargins(margin, margin, margin, appearance.px(4));
    top->setSpacing(appearance.px(7));
    column->setContentsMargins(margin, appearance.px(4), margin, margin);
    column->setSpacing(appearance.px(6));
    if (rows.size() == 1) {
        const RiskRow &row = rows.front();
        addHeading(*top, row);
        addButtons(*top);
        addFigures(*column, row);
        addReasons(*column, row);
        addTerm(*column, row);
        addOutreach(*column);
    } else if (!rows.empty()) {
        addSelectionHeading(*top);
        addButtons(*top);
        addSelection(*column);
    } else {
        auto *hint = secondaryLabel(
            newBody, QStringLiteral("Select a student to see why they are flagged."));
        hint->setAlignment(Qt::AlignCenter);
        column->addStretch(1);
        column->addWidget(hint);
    }
    column->addStretch(2);
    replace(newHead, newBody);
}

/// Deletes contents when control is back in the event loop, also in one that was started by hand,
/// where `deleteLater` has to wait.
void StudentDetails::deleteSoon(QWidget *contents) {
    contents->hide();
    replaced.emplace_back(contents);
    QTimer::singleShot(0, this, [this] { replaced.clear(); });
}

void StudentDetails::replace(QWidget *newHead, QWidget *newBody) {
    // The rebuild may come from the old contents: from their menu, or their focused button. They
    // are deleted later, and the new button of the same name gets the focus.
    const QWidget *focused = QApplication::focusWidget();
    const bool hadFocus = focused != nullptr && isAncestorOf(focused);
    const QString name = hadFocus ? focused->accessibleName() : QString();
    std::vector<StudentKey> students;
    for (const RiskRow &row : rows)
        students.push_back(keyOf(row));
    const bool isSame = std::exchange(builtFor, students) == students;
    const int scrolledTo = scroll->verticalScrollBar()->value();
    for (const auto &[current, next] : {std::pair(&head, newHead), std::pair(&body, newBody)}) {
        QWidget *old = std::exchange(*current, next);
        delete old->parentWidget()->layout()->replaceWidget(old, next);
        deleteSoon(old);
        next->show();
    }
    if (isSame)
        // The range of the scroll bar is otherwise computed later.
        page->adjustSize();
    scroll->verticalScrollBar()->setValue(isSame ? scrolledTo : 0);
    for (QWidget *part : {newHead, newBody}) {
        for (auto *candidate : part->findChildren<QWidget *>()) {
            if (hadFocus && candidate->accessibleName() == name &&
                candidate->focusPolicy() != Qt::NoFocus)
                candidate->setFocus();
        }
    }
}

QWidget *StudentDetails::explained(QWidget *sentence, const std::string &text, const char *topic) {
    auto *line = new ExplainedSentence(sentence, qstring(text), topic, appearance);
    connect(line, &ExplainedSentence::helpRequested, this, &StudentDetails::helpRequested);
    return line;
}

void StudentDetails::addHeading(QVBoxLayout &column, const RiskRow &row) {
    auto *name = plainLabel(nullptr, true);
    name->setFont(appearance.font(1.22, QFont::Bold));
    name->setText(qstring(collapsed(row.name)));
    name->setTextInteractionFlags(Qt::TextSelectableByMouse);
    column.addWidget(name);
    auto *course = secondaryLabel(nullptr, qstring(collapsed(row.courseName)));
    course->setFont(appearance.font(0.92));
    column.addWidget(course);
    auto *line = new QHBoxLayout;
    auto *pill = new LevelPill(appearance);
    pill->setLevel(row.level);
    pill->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    line->addWidget(pill, 0, Qt::AlignTop);
    if (history.change) {
        auto *moved = secondaryLabel(
            nullptr,
            qstring(arrowOf(*history.change)) + QStringLiteral(" ") +
                qstring(changeText(*history.change)));
        moved->setFont(appearance.font(0.92));
        moved->setAccessibleName(qstring(changeText(*history.change)));
        moved->setToolTip(qstring(arrowText(*history.change)));
        line->addWidget(explained(moved, changeText(*history.change), "movement"), 1);
    } else {
        line->addStretch(1);
    }
    column.addLayout(line);
    if (history.isNew) {
        auto *isNew = secondaryLabel(nullptr, qstring(newStudentText));
        isNew->setFont(appearance.font(0.92));
        column.addWidget(explained(isNew, std::string(newStudentText), "figures"));
    }
}

void StudentDetails::addFigures(QVBoxLayout &column, const RiskRow &row) {
    // Beside each other if they fit.
    auto *line = new QWidget;
    auto *flow = new FlowLayout(line);
    flow->setContentsMargins(0, 0, 0, 0);
    flow->setSpacing(appearance.px(13));
    for (const StudentFigure &figure : studentFigures(row, systemNow())) {
        auto *box = new QWidget(line);
        auto *cell = new QVBoxLayout(box);
        cell->setContentsMargins(0, 0, 0, 0);
        cell->setSpacing(0);
        auto *label = secondaryLabel(box, qstring(figure.shortName), false);
        label->setFont(appearance.font(0.86));
        auto *value = plainLabel(box);
        value->setFont(appearance.font(1, QFont::DemiBold));
        value->setText(qstring(figure.value));
        value->setAccessibleName(
            qstring(figure.name) + QStringLiteral(": ") + qstring(figure.value));
        box->setToolTip(qstring(figure.name));
        cell->addWidget(label);
        cell->addWidget(value);
        flow->addWidget(box);
    }
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    line->setSizePolicy(policy);
    column.addWidget(line);
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

void StudentDetails::addTerm(QVBoxLayout &column, const RiskRow &row) {
    if (!history.trend)
        return;
    addSection(column, QStringLiteral("This term"));
    ChartMarks marks{.levelDiffers = history.levelDiffers, .level = row.level};
    if (history.outreach)
        marks.wroteAt = history.outreach->contactedAt;
    column.addWidget(new TermChart(*history.trend, marks, appearance));
    const std::string story = termStory(*history.trend);
    column.addWidget(explained(secondaryLabel(nullptr, qstring(story)), story, "movement"));
    if (history.levelDiffers) {
        const std::string text = levelDiffersText(row.level, history.trend->points.back().level);
        auto *differs = plainLabel(nullptr, true);
        differs->setText(qstring(text));
        column.addWidget(explained(differs, text, "movement"));
    }
}

void StudentDetails::addOutreach(QVBoxLayout &column) {
    if (!history.outreach)
        return;
    addSection(column, QStringLiteral("Outreach"));
    const std::string text = outreachText(*history.outreach);
    auto *sentence = plainLabel(nullptr, true);
    sentence->setText(qstring(text));
    column.addWidget(explained(sentence, text, "contacts"));
}

void StudentDetails::addSelectionHeading(QVBoxLayout &column) {
    auto *heading = plainLabel(nullptr, true);
    heading->setFont(appearance.font(1.22, QFont::Bold));
    heading->setText(qstring(studentsText(rows.size())) + QStringLiteral(" selected"));
    column.addWidget(heading);
    auto *levels = plainLabel(nullptr, true);
    levels->setText(qstring(summary.levels));
    column.addWidget(levels);
    if (!summary.notReached.empty())
        column.addWidget(secondaryLabel(nullptr, qstring(summary.notReached)));
}

/// What all of them miss, and the first names.
void StudentDetails::addSelection(QVBoxLayout &column) {
    if (!summary.allMissing.empty()) {
        addSection(column, QStringLiteral("All of them miss"));
        addAssignments(column, summary.allMissing);
    }
    addSection(column, QStringLiteral("Students"));
    for (std::size_t i = 0; i < std::min(rows.size(), listed); ++i) {
        auto *name = plainLabel(nullptr, true);
        name->setText(qstring(collapsed(rows[i].name)));
        column.addWidget(name);
    }
    if (rows.size() > listed) {
        auto *more =
            secondaryLabel(nullptr, QStringLiteral("and %1 more").arg(rows.size() - listed), false);
        column.addWidget(more);
    }
}

/// Links to assignments of the first student's course.
void StudentDetails::addAssignments(
    QVBoxLayout &column, const std::vector<AssignmentRef> &assignments) {
    for (const AssignmentRef &assignment : assignments) {
        auto *link = new TextLink(qstring(collapsed(assignment.name)));
        link->setContentsMargins(appearance.px(10), 0, 0, 0);
        link->setToolTip(QStringLiteral("Open this assignment in Canvas"));
        connect(
            link, &QAbstractButton::clicked, this, [this, row = rows.front(), id = assignment.id] {
                Q_EMIT assignmentRequested(row, id);
            });
        column.addWidget(link);
    }
}

void StudentDetails::addButtons(QVBoxLayout &column) {
    const bool one = rows.size() == 1;
    auto *box = new QWidget;
    auto *flow = new FlowLayout(box);
    flow->setContentsMargins(0, 0, 0, 0);
    flow->setSpacing(appearance.px(6));
    const std::string writeTo = messagetexts::writeTo(rows);
    auto *write = new QPushButton(menuText(writeTo), box);
    write->setAccessibleName(qstring(writeTo));
    write->setProperty("primary", true);
    write->setToolTip(
        QStringLiteral("Fill in a message, and copy it for one student at a time (Ctrl+J)"));
    // A button applies to the students that it names, also while the pane is about to be rebuilt.
    connect(write, &QPushButton::clicked, this, [this, students = rows] {
        Q_EMIT writeRequested(students);
    });
    auto *copy = new QPushButton(QStringLiteral("Copy Message ▾"), box);
    copy->setAccessibleName(QStringLiteral("Copy Message"));
    copy->setToolTip(
        one ? QStringLiteral("Copy a message about this student to the clipboard")
            : QStringLiteral("Copy a message about each of them to the clipboard"));
    auto *messages = new QMenu(copy);
    copy->setMenu(messages);
    connect(messages, &QMenu::aboutToShow, this, [this, messages] {
        Q_EMIT messagesRequested(messages);
    });
    auto *contacted = new QPushButton(QStringLiteral("Mark as Contacted"), box);
    contacted->setAccessibleName(contacted->text());
    contacted->setToolTip(
        one ? QStringLiteral("Record that you wrote to this student just now")
            : QStringLiteral("Record that you wrote to these students just now"));
    contacted->setEnabled(contactsEnabled);
    connect(contacted, &QPushButton::clicked, this, [this, students = rows] {
        Q_EMIT contactsRequested(students);
    });
    for (QPushButton *button : {write, copy, contacted}) {
        button->setAutoDefault(false);
        button->setFont(appearance.font(0.94));
        button->setProperty("tight", true);
        flow->addWidget(button);
    }
    QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    box->setSizePolicy(policy);
    column.addWidget(box);
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
            connect(link, &QAbstractButton::clicked, this, [this, row] {
                Q_EMIT gradesRequested(row);
            });
            column.addWidget(explained(link, line.text, "reasons"));
            continue;
        }
        auto *sentence = plainLabel(nullptr, true);
        sentence->setText(qstring(line.text));
        column.addWidget(explained(sentence, line.text, "reasons"));
        if (line.role == ReasonRole::missingWork)
            addAssignments(column, missingAssignments(row));
    }
    column.addWidget(new SignalBars(row, appearance));
    if (row.floor) {
        const std::string text(floorText(*row.floor));
        auto *raised = secondaryLabel(nullptr, qstring(text));
        raised->setFont(appearance.font(0.92));
        column.addWidget(explained(raised, text, "figures"));
    }
    auto *grades = new TextLink(QStringLiteral("Open Grades"));
    grades->setToolTip(QStringLiteral("Open this student’s grades in Canvas"));
    connect(grades, &QAbstractButton::clicked, this, [this, row] { Q_EMIT gradesRequested(row); });
    column.addWidget(grades);
    for (const OtherCourse &other : history.otherCourses) {
        auto *link = new TextLink(qstring(alsoInText(other)));
        link->setToolTip(QStringLiteral("Show this student in that course"));
        connect(link, &QAbstractButton::clicked, this, [this, student = other.student] {
            Q_EMIT studentRequested(student);
        });
        column.addWidget(link);
    }
}

} // namespace ellwynd
