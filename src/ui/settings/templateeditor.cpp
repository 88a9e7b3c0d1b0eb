#include "ui/settings/templateeditor.h"

#include "app/courses/courselabel.h"
#include "app/messages/messagetexts.h"
#include "ui/settings/templatebody.h"
#include "ui/support/appearance.h"
#include "ui/support/editortext.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QComboBox>
#include <QEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace ellwynd {

namespace {

/// The student of the preview while no roster is displayed.
PreviewStudent inventedStudent() {
    constexpr double score = 64;
    constexpr double passing = 70;
    RiskRow row{
        .name = "Robin Example",
        .courseName = "Example Course",
        .level = RiskLevel::watch,
        .currentScore = score,
        .missingCount = 2};
    row.reasonLines = {
        {.text = {},
         .links = {{{}, AssignmentRef{1, "Essay 2"}}, {{}, AssignmentRef{2, "Quiz 4"}}}}};
    return {.row = row, .courseName = row.courseName, .passingScore = passing};
}

QLabel *titleOf(QWidget *field, const QString &text, QWidget *parent) {
    auto *label = plainLabel(parent);
    label->setText(text);
    label->setBuddy(field);
    field->setAccessibleName(text);
    return label;
}

} // namespace

TemplateEditor::TemplateEditor(PreviewSource source, const Appearance &appearance)
    : source(std::move(source)),
      appearance(appearance),
      nameField(new QLineEdit),
      bodyField(new TemplateBody(appearance)),
      previewTitle(plainLabel(nullptr)),
      studentChoice(new QComboBox),
      preview(new QPlainTextEdit),
      fields(new QBoxLayout(QBoxLayout::LeftToRight)),
      placeholderButton(makePlaceholders()),
      problems(plainLabel(nullptr, true)) {
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(titleOf(nameField, QStringLiteral("Name"), this));
    column->addWidget(nameField);
    column->addLayout(makeFields(), 1);
    problems->setProperty("attention", true);
    column->addWidget(problems);

    for (QWidget *field : std::initializer_list<QWidget *>{nameField, bodyField})
        field->installEventFilter(this);
    connect(nameField, &QLineEdit::textEdited, this, [this] {
        fillPreview();
        Q_EMIT templateDidChange();
    });
    connect(bodyField, &QPlainTextEdit::textChanged, this, [this] {
        fillPreview();
        Q_EMIT templateDidChange();
    });
    connect(studentChoice, &QComboBox::activated, this, [this](int index) {
        students.selected = std::size_t(index);
        chosenStudent = keyOf(students.all[students.selected].row);
        fillPreview();
    });
    connect(&appearance, &Appearance::appearanceDidChange, this, &TemplateEditor::applyAppearance);
    applyAppearance();
    show(nullptr);
}

/// The text, and the preview beside it.
QLayout *TemplateEditor::makeFields() {
    preview->setTabChangesFocus(true);
    preview->setReadOnly(true);
    preview->setPlaceholderText(qstring(messagetexts::emptyPreview));
    previewTitle->setText(QStringLiteral("Preview for"));
    previewTitle->setBuddy(studentChoice);
    studentChoice->setAccessibleName(QStringLiteral("Student of the preview"));
    studentChoice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    studentChoice->setMinimumContentsLength(6);
    auto *text = new QVBoxLayout;
    auto *textTitle = new QHBoxLayout;
    textTitle->addWidget(titleOf(bodyField, QStringLiteral("Message"), this), 1);
    textTitle->addWidget(placeholderButton);
    text->addLayout(textTitle);
    text->addWidget(bodyField);
    auto *filled = new QVBoxLayout;
    auto *title = new QHBoxLayout;
    title->addWidget(previewTitle);
    title->addWidget(studentChoice, 1);
    filled->addLayout(title);
    filled->addWidget(preview);
    fields->addLayout(text, 1);
    fields->addLayout(filled, 1);
    return fields;
}

/// A button whose menu inserts a placeholder into the text.
QPushButton *TemplateEditor::makePlaceholders() {
    auto *button = new QPushButton(QStringLiteral("Insert ▾"));
    button->setAutoDefault(false);
    button->setAccessibleName(QStringLiteral("Insert a placeholder"));
    button->setToolTip(QStringLiteral("Placeholders are filled in for each student. A line with an "
                                      "empty one is left out. Typing “{” "
                                      "offers them too."));
    auto *menu = new QMenu(button);
    for (const PlaceholderText &placeholder : placeholders) {
        const QString token = qstring(placeholder.token);
        const QAction *insert =
            menu->addAction(token + QStringLiteral(" – ") + qstring(placeholder.meaning));
        connect(insert, &QAction::triggered, this, [this, token] {
            bodyField->insertPlainText(token);
            bodyField->setFocus();
        });
    }
    button->setMenu(menu);
    return button;
}

/// Arranges the preview beside the text if it fits.
void TemplateEditor::arrange() {
    constexpr int twoColumnWidth = 400;
    fields->setDirection(
        width() >= appearance.px(twoColumnWidth) ? QBoxLayout::LeftToRight
                                                 : QBoxLayout::TopToBottom);
}

void TemplateEditor::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    arrange();
}

void TemplateEditor::applyAppearance() {
    constexpr int lines = 6;
    const int height = lines * QFontMetrics(appearance.font()).lineSpacing() + appearance.px(20);
    bodyField->setMinimumHeight(height);
    preview->setMinimumHeight(height);
    layout()->setSpacing(appearance.px(6));
    for (QLayout *each : fields->findChildren<QLayout *>())
        each->setSpacing(appearance.px(4));
    fields->setSpacing(appearance.px(10));
    arrange();
}

void TemplateEditor::show(const MessageTemplate *message) {
    for (QWidget *part : std::initializer_list<QWidget *>{
             nameField, bodyField, placeholderButton, preview, previewTitle, studentChoice})
        part->setEnabled(message != nullptr);
    if (message == nullptr) {
        shown.reset();
    } else {
        const bool sameText = shown && shown->id == message->id &&
            ((shown->name == message->name && shown->body == message->body) ||
             (name() == message->name && body() == message->body));
        shown = *message;
        if (sameText)
            return;
    }
    const QSignalBlocker quiet[] = {QSignalBlocker(nameField), QSignalBlocker(bodyField)};
    nameField->setText(message != nullptr ? qstring(message->name) : QString());
    bodyField->setPlainText(message != nullptr ? qstring(message->body) : QString());
    // It is not announced as a change of the text.
    bodyField->underlineUnknown();
    refreshPreview();
}

void TemplateEditor::refreshPreview() {
    students = source ? source() : PreviewStudents{};
    const bool invented = students.all.empty();
    if (invented)
        students = {.all = {inventedStudent()}};
    const auto found = std::ranges::find_if(students.all, [this](const PreviewStudent &each) {
        return chosenStudent == keyOf(each.row);
    });
    if (found != students.all.end())
        students.selected = std::size_t(found - students.all.begin());
    const QSignalBlocker quiet(studentChoice);
    studentChoice->clear();
    for (const PreviewStudent &each : students.all)
        studentChoice->addItem(
            qstring(collapsed(each.row.name)) +
            (invented ? QStringLiteral(", an invented student") : QString()));
    studentChoice->setCurrentIndex(int(students.selected));
    fillPreview();
}

void TemplateEditor::fillPreview() {
    const PreviewStudent &who = students.all[students.selected];
    preview->setAccessibleName(QStringLiteral("Preview for ") + studentChoice->currentText());
    const std::string text = body();
    QString filled = shown
        ? qstring(fill({.body = text}, who.row, who.courseName, who.passingScore))
        : QString();
    // Laying out more would take longer than a key press may.
    constexpr qsizetype maxLength = 20'000;
    if (filled.size() > maxLength)
        filled = filled.left(maxLength) + QStringLiteral("…");
    preview->setPlainText(filled);
    const std::string found = shown ? messagetexts::templateProblems(name(), text) : std::string();
    problems->setText(qstring(found));
    problems->setVisible(!found.empty());
}

void TemplateEditor::beginNaming() {
    nameField->setFocus();
    nameField->selectAll();
}

std::string TemplateEditor::name() const {
    return nameField->text().toStdString();
}

std::string TemplateEditor::body() const {
    return rawText(*bodyField).toStdString();
}

bool TemplateEditor::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::FocusOut)
        Q_EMIT saveRequested();
    return QWidget::eventFilter(watched, event);
}

} // namespace ellwynd
