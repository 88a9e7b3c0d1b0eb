#include "ui/write/writesheet.h"

#include "app/courses/courselabel.h"
#include "app/messages/messagetexts.h"
#include "ui/support/alert.h"
#include "ui/support/announce.h"
#include "ui/support/appearance.h"
#include "ui/support/editortext.h"
#include "ui/support/levelpill.h"
#include "ui/support/messageclipboard.h"
#include "ui/support/windowmemory.h"
#include "ui/write/writelist.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QComboBox>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <utility>

namespace ellwynd {

namespace {

using Progress = WriteSession::Progress;
using CopyResult = WriteSession::CopyResult;

QString factsOf(const RiskRow &row, const std::optional<OutreachOutcome> &outreach) {
    const QString course = qstring(collapsed(row.courseName));
    return outreach ? course + QStringLiteral(" · ") + qstring(outreachText(*outreach)) : course;
}

QPushButton *quietButton(const QString &text, const QString &toolTip) {
    auto *button = new QPushButton(text);
    button->setAutoDefault(false);
    button->setToolTip(toolTip);
    return button;
}

} // namespace

WriteSheet::WriteSheet(
    const SharedList<RiskRow> &students, UserDefaults &defaults, Stores &stores, UndoStack &undo,
    const Appearance &appearance, const QWidget &over)
    // Without a parent, since a dialog is kept above its parent, and so above the browser.
    : QDialog(nullptr, Qt::Window),
      defaults(defaults),
      undo(undo),
      templates(stores.templates),
      appearance(appearance),
      clipboard(new MessageClipboard(this)),
      session(std::make_unique<WriteSession>(
          students, defaults, stores, undo,
          [this](const std::string &text) { return clipboard->copy(text); })),
      panes(new QBoxLayout(QBoxLayout::LeftToRight)),
      list(new WriteList(*session, appearance)),
      pages(new QStackedWidget),
      clipboardLine(plainLabel(nullptr, true)),
      problem(plainLabel(nullptr, true)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setAttribute(Qt::WA_QuitOnClose, false);
    pages->addWidget(makeLetterPage());
    pages->addWidget(makeEndPage());
    panes->addWidget(list);
    panes->addWidget(pages, 1);
    problem->setProperty("attention", true);
    auto *column = new QVBoxLayout(this);
    column->addLayout(panes, 1);
    column->addWidget(problem);
    column->addWidget(clipboardLine);
    buttons = makeButtons();
    column->addLayout(buttons);
    connectSession();
    addKeys();
    connect(&appearance, &Appearance::appearanceDidChange, this, &WriteSheet::applyAppearance);
    applyAppearance();
    showSession();
    placeOver(over);
    copyButton->setFocus();
}

QWidget *WriteSheet::makeLetterPage() {
    auto *page = new QWidget;
    name = new ElidedLabel;
    level = new LevelPill(appearance);
    level->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    facts = new ElidedLabel;
    facts->setProperty("secondary", true);
    templateTitle = plainLabel(nullptr);
    templateTitle->setText(QStringLiteral("Template"));
    templateChoice = new QComboBox;
    templateChoice->setAccessibleName(QStringLiteral("Template"));
    templateChoice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    templateChoice->setMinimumContentsLength(8);
    templateTitle->setBuddy(templateChoice);
    noTemplates =
        quietButton(qstring(messagetexts::noTemplates), QStringLiteral("Open Settings ▸ Messages"));
    editor = new QPlainTextEdit;
    editor->setTabChangesFocus(true);

    auto *top = new QHBoxLayout;
    top->addWidget(name, 1);
    top->addWidget(level);
    auto *choice = new QHBoxLayout;
    choice->addWidget(templateTitle);
    choice->addWidget(templateChoice, 1);
    choice->addWidget(noTemplates, 1);
    auto *column = new QVBoxLayout(page);
    column->addLayout(top);
    column->addWidget(facts);
    column->addLayout(choice);
    column->addWidget(editor, 1);
    connect(noTemplates, &QPushButton::clicked, this, &WriteSheet::templatesRequested);
    connect(templateChoice, &QComboBox::activated, this, [this](int index) {
        session->chooseTemplate(templateChoice->itemData(index).toString().toStdString());
    });
    connect(editor, &QPlainTextEdit::textChanged, this, [this] {
        shownText = rawText(*editor);
        session->edit(shownText.toStdString());
    });
    return page;
}

QWidget *WriteSheet::makeEndPage() {
    auto *page = new QWidget;
    endTitle = plainLabel(nullptr, true);
    endNote = secondaryLabel(nullptr);
    undoButton = quietButton(
        QStringLiteral("Undo"),
        QStringLiteral("Take the contact marks of these copies back (Ctrl+Z)"));
    auto *column = new QVBoxLayout(page);
    column->addStretch(1);
    for (QLabel *label : {endTitle, endNote}) {
        label->setAlignment(Qt::AlignCenter);
        column->addWidget(label);
    }
    column->addWidget(undoButton, 0, Qt::AlignHCenter);
    column->addStretch(2);
    connect(undoButton, &QPushButton::clicked, this, [this] { undo.undo(); });
    return page;
}

QBoxLayout *WriteSheet::makeButtons() {
    copyAllButton = quietButton(
        QStringLiteral("Copy All Together"),
        QStringLiteral("Copy the messages of all who are left, one below the other"));
    skipButton =
        quietButton(QStringLiteral("Skip"), QStringLiteral("Go on without copying this message"));
    copyButton = quietButton(
        QStringLiteral("Copy and Next"),
        QStringLiteral("Copy this message alone, and go on to the next student (Return, or "
                       "Ctrl+Return while you edit the message)"));
    doneButton = quietButton(QStringLiteral("Done"), QStringLiteral("Close this window (Esc)"));
    auto *row = new QBoxLayout(QBoxLayout::LeftToRight);
    row->addWidget(copyAllButton);
    auto *main = new QHBoxLayout;
    main->addStretch(1);
    for (QPushButton *button : {skipButton, copyButton, doneButton})
        main->addWidget(button);
    row->addLayout(main, 1);
    connect(copyAllButton, &QPushButton::clicked, this, [this] { report(session->copyAll()); });
    connect(skipButton, &QPushButton::clicked, session.get(), &WriteSession::skip);
    connect(copyButton, &QPushButton::clicked, this, &WriteSheet::copyCurrent);
    connect(doneButton, &QPushButton::clicked, this, &WriteSheet::reject);
    return row;
}

void WriteSheet::connectSession() {
    connect(session.get(), &WriteSession::sessionDidChange, this, &WriteSheet::showSession);
    connect(session.get(), &WriteSession::sessionDidExpire, this, &WriteSheet::finish);
    connect(
        clipboard, &MessageClipboard::messageWasReplaced, session.get(),
        &WriteSession::clipboardDidChange);
    connect(list, &WriteList::studentRequested, session.get(), &WriteSession::setCurrent);
}

void WriteSheet::addKeys() {
    for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
        const auto *copy = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key(key)), this);
        connect(copy, &QShortcut::activated, this, &WriteSheet::copyCurrent);
    }
    const auto *undoKey = new QShortcut(QKeySequence::Undo, this);
    connect(undoKey, &QShortcut::activated, this, [this] {
        if (session->canUndo())
            undo.undo();
    });
}

// ---- Geometry ----------------------------------------------------------------------------------

void WriteSheet::placeOver(const QWidget &window) {
    auto *memory = new WindowMemory(*this, defaults, preferences::writeWindowGeometry);
    if (memory->restoreGeometry())
        return;
    const int around = appearance.px(20);
    const QSize wanted(appearance.px(640), appearance.px(520));
    resize(wanted.boundedTo(window.size() - QSize(2 * around, 2 * around)));
    const QRect frame(window.mapToGlobal(QPoint()), window.size());
    move(frame.center() - rect().center());
}

void WriteSheet::applyAppearance() {
    name->setFont(appearance.font(1.22, QFont::Bold));
    facts->setFont(appearance.font(0.92));
    endTitle->setFont(appearance.font(1.22, QFont::Bold));
    const int margin = appearance.px(14);
    const int spacing = appearance.px(8);
    layout()->setContentsMargins(margin, margin, margin, margin);
    for (QLayout *each : findChildren<QLayout *>())
        each->setSpacing(spacing);
    for (QWidget *page : {pages->widget(0), pages->widget(1)})
        page->layout()->setContentsMargins(0, 0, 0, 0);
    arrange();
}

void WriteSheet::resizeEvent(QResizeEvent *event) {
    QDialog::resizeEvent(event);
    arrange();
}

/// Puts the students beside the message, or above it in a tall or very narrow sheet.
void WriteSheet::arrange() {
    constexpr int tooNarrow = 300;
    const bool narrow = height() > width() || width() < appearance.px(tooNarrow);
    const auto direction = narrow ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight;
    panes->setDirection(direction);
    buttons->setDirection(narrow ? QBoxLayout::BottomToTop : QBoxLayout::LeftToRight);
    constexpr int narrowRows = 3;
    constexpr int listWidth = 220;
    const int rows = list->heightOf(std::min(narrowRows, list->model()->rowCount()));
    list->setMinimumSize(1, 1);
    list->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
    if (narrow)
        list->setFixedHeight(rows);
    else
        list->setFixedWidth(std::min(appearance.px(listWidth), width() * 2 / 5));
    editor->setMinimumHeight(2 * QFontMetrics(appearance.font()).lineSpacing());
}

// ---- What is shown -----------------------------------------------------------------------------

void WriteSheet::add(const SharedList<RiskRow> &students) {
    session->add(students);
    copyButton->setFocus();
}

void WriteSheet::showSession() {
    problem->hide();
    list->update();
    const WriteSession::Student *student = session->currentStudent();
    if (student != nullptr)
        showStudent(*student);
    else
        showEnd();
    const QString held = qstring(messagetexts::onClipboard(session->onClipboard()));
    clipboardLine->setText(held.isEmpty() ? held : QStringLiteral("✓ ") + held);
    clipboardLine->setVisible(!held.isEmpty());
    showButtons();
}

void WriteSheet::showStudent(const WriteSession::Student &student) {
    pages->setCurrentIndex(0);
    const QString shortName = qstring(collapsed(student.row.name));
    setWindowTitle(QStringLiteral("Write to ") + shortName);
    name->setFullText(shortName);
    level->setLevel(student.row.level);
    facts->setFullText(factsOf(student.row, session->outreach()));
    editor->setAccessibleName(QStringLiteral("Message to ") + shortName);
    showTemplates();
    const bool isSame = shownStudent == keyOf(student.row);
    const QString text = qstring(session->text());
    if (isSame && text == shownText)
        return;
    if (!isSame) {
        // What was typed for one student cannot be undone in the message to another.
        const QSignalBlocker quiet(editor);
        editor->setPlainText(text);
    } else {
        showText(text);
    }
    shownStudent = keyOf(student.row);
    shownText = text;
}

/// Replaces the text so that Undo in the editor brings the replaced one back.
void WriteSheet::showText(const QString &text) {
    const QSignalBlocker quiet(editor);
    QTextCursor cursor(editor->document());
    cursor.select(QTextCursor::Document);
    cursor.insertText(text);
    editor->moveCursor(QTextCursor::Start);
}

void WriteSheet::showTemplates() {
    const std::vector<MessageTemplate> &all = templates.templates();
    const MessageTemplate *used = session->message();
    templateChoice->clear();
    for (const MessageTemplate &each : all) {
        templateChoice->addItem(qstring(titleOf(each)), qstring(each.id));
        if (used != nullptr && each.id == used->id)
            templateChoice->setCurrentIndex(templateChoice->count() - 1);
    }
    templateChoice->setVisible(!all.empty());
    noTemplates->setVisible(all.empty());
}

void WriteSheet::showEnd() {
    pages->setCurrentIndex(1);
    shownStudent.reset();
    const std::size_t copied = session->count(Progress::copied);
    const QString title = copied > 0 ? qstring(messagetexts::copiedFor(copied))
                                     : QStringLiteral("No message was copied");
    setWindowTitle(title);
    endTitle->setText(title);
    const QString skipped = qstring(messagetexts::skipped(session->count(Progress::skipped)));
    endNote->setText(skipped);
    endNote->setVisible(!skipped.isEmpty());
    undoButton->setVisible(session->canUndo());
}

void WriteSheet::showButtons() {
    const bool writing = isUnfinished();
    const bool hadFocus =
        doneButton->hasFocus() || undoButton->hasFocus() || copyButton->hasFocus();
    for (QPushButton *button : {skipButton, copyButton})
        button->setVisible(writing);
    copyAllButton->setVisible(writing && session->count(Progress::waiting) > 1);
    doneButton->setVisible(!writing);
    QPushButton *main = writing ? copyButton : doneButton;
    main->setDefault(true);
    if (hadFocus || !writing)
        main->setFocus();
}

// ---- Commands ----------------------------------------------------------------------------------

void WriteSheet::copyCurrent() {
    report(session->copyAndNext());
}

void WriteSheet::report(CopyResult result) {
    QString text;
    switch (result) {
    case CopyResult::copied:
        announce(*this, qstring(messagetexts::onClipboard(session->onClipboard())));
        return;
    case CopyResult::empty:
        text = qstring(messagetexts::emptyMessage);
        break;
    case CopyResult::tooLong:
        text = qstring(messagetexts::tooLong);
        break;
    case CopyResult::clipboardFailed:
        text = qstring(messagetexts::clipboardFailed);
        break;
    }
    problem->setText(text);
    problem->show();
    announce(*this, text);
}

void WriteSheet::finish() {
    session->finish();
    QDialog::reject();
}

void WriteSheet::reject() {
    const std::size_t edited = session->uncopiedEdits();
    if (edited == 0)
        return finish();
    QMessageBox *box = plainAlert(
        this, QStringLiteral("Close without copying?"), qstring(messagetexts::uncopied(edited)));
    box->addButton(QStringLiteral("Keep Writing"), QMessageBox::RejectRole);
    const auto *discard =
        box->addButton(QStringLiteral("Close Without Copying"), QMessageBox::DestructiveRole);
    connect(discard, &QPushButton::clicked, this, &WriteSheet::finish);
    box->open();
}

} // namespace ellwynd
