#include "ui/settings/templateeditor.h"

#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QEvent>
#include <QGridLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

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

TemplateEditor::TemplateEditor(PreviewSource student, const Appearance &appearance)
    : student(std::move(student)),
      appearance(appearance),
      nameField(new QLineEdit),
      bodyField(new QPlainTextEdit),
      preview(new QPlainTextEdit) {
    bodyField->setTabChangesFocus(true);
    preview->setTabChangesFocus(true);
    preview->setReadOnly(true);
    preview->setPlaceholderText(
        QStringLiteral("The message is empty: every line has a placeholder without a value."));

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(titleOf(nameField, QStringLiteral("Name"), this));
    column->addWidget(nameField);
    column->addWidget(titleOf(bodyField, QStringLiteral("Message"), this));
    column->addWidget(bodyField);
    placeholderButtons = makePlaceholders();
    column->addWidget(placeholderButtons);
    previewTitle = titleOf(preview, QStringLiteral("Preview"), this);
    previewTitle->setWordWrap(true);
    column->addWidget(previewTitle);
    column->addWidget(preview);

    for (QWidget *field : std::initializer_list<QWidget *>{nameField, bodyField})
        field->installEventFilter(this);
    connect(nameField, &QLineEdit::textEdited, this, &TemplateEditor::templateDidChange);
    connect(bodyField, &QPlainTextEdit::textChanged, this, [this] {
        refreshPreview();
        Q_EMIT templateDidChange();
    });
    connect(&appearance, &Appearance::appearanceDidChange, this, &TemplateEditor::applyAppearance);
    applyAppearance();
    show(nullptr);
}

QWidget *TemplateEditor::makePlaceholders() {
    auto *area = new QWidget;
    placeholderGrid = new QGridLayout(area);
    placeholderGrid->setContentsMargins(0, 0, 0, 0);
    auto *note = secondaryLabel(
        area,
        QStringLiteral("Placeholders are filled in for each student. A line with an empty "
                       "placeholder is left out."));
    placeholderGrid->addWidget(note, 0, 0, 1, 4);
    for (const PlaceholderText &placeholder : placeholders) {
        const QString token = qstring(placeholder.token);
        auto *insert = new QPushButton(token, area);
        insert->setAutoDefault(false);
        insert->setAccessibleName(
            QStringLiteral("Insert %1, %2").arg(token, qstring(placeholder.meaning)));
        connect(insert, &QPushButton::clicked, this, [this, token] {
            bodyField->insertPlainText(token);
            bodyField->setFocus();
        });
        auto *meaning = plainLabel(area, true);
        meaning->setText(qstring(placeholder.meaning));
        placeholderRows.emplace_back(insert, meaning);
    }
    return area;
}

/// Arranges the placeholders in two columns if they fit, else in one.
void TemplateEditor::arrangePlaceholders() {
    constexpr int twoColumnWidth = 560;
    const bool two = width() >= appearance.px(twoColumnWidth);
    const int rows = int(placeholderRows.size()) / (two ? 2 : 1) + (two ? 1 : 0);
    for (int i = 0; i < int(placeholderRows.size()); ++i) {
        const auto [insert, meaning] = placeholderRows[std::size_t(i)];
        const int column = 2 * (i / rows);
        placeholderGrid->addWidget(insert, 1 + i % rows, column);
        placeholderGrid->addWidget(meaning, 1 + i % rows, column + 1);
    }
    placeholderGrid->setColumnStretch(1, 1);
    placeholderGrid->setColumnStretch(3, two ? 1 : 0);
}

void TemplateEditor::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    arrangePlaceholders();
}

void TemplateEditor::applyAppearance() {
    constexpr int linesOfBody = 9;
    constexpr int linesOfPreview = 10;
    const QFontMetrics metrics(appearance.font());
    const int around = appearance.px(20);
    bodyField->setFixedHeight(linesOfBody * metrics.lineSpacing() + around);
    preview->setFixedHeight(linesOfPreview * metrics.lineSpacing() + around);
    layout()->setSpacing(appearance.px(6));
    placeholderGrid->setSpacing(appearance.px(6));
    arrangePlaceholders();
}

void TemplateEditor::show(const MessageTemplate *message) {
    for (QWidget *part : std::initializer_list<QWidget *>{
             nameField, bodyField, placeholderButtons, preview, previewTitle})
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
    refreshPreview();
}

void TemplateEditor::refreshPreview() {
    auto real = student ? student() : std::nullopt;
    const bool invented = !real;
    const PreviewStudent who = invented ? inventedStudent() : std::move(*real);
    const QString title = QStringLiteral("Preview for %1").arg(qstring(who.row.name)) +
        (invented ? QStringLiteral(", an invented student") : QString());
    previewTitle->setText(title);
    preview->setAccessibleName(title);
    preview->setPlainText(
        shown ? qstring(fill({.body = body()}, who.row, who.courseName, who.passingScore))
              : QString());
}

void TemplateEditor::beginNaming() {
    nameField->setFocus();
    nameField->selectAll();
}

std::string TemplateEditor::name() const {
    return nameField->text().toStdString();
}

std::string TemplateEditor::body() const {
    // toPlainText() would replace no-break spaces with spaces. The raw text has Unicode separators
    // for lines and paragraphs.
    QString text = bodyField->document()->toRawText();
    text.replace(QChar::ParagraphSeparator, u'\n');
    text.replace(QChar::LineSeparator, u'\n');
    return text.toStdString();
}

bool TemplateEditor::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::FocusOut)
        Q_EMIT saveRequested();
    return QWidget::eventFilter(watched, event);
}

} // namespace ellwynd
