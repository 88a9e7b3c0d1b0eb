#include "ui/support/statusnotes.h"

#include "ui/support/announce.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QPushButton>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr std::chrono::seconds noteDuration{6};
constexpr std::chrono::seconds undoDuration{15};

} // namespace

StatusNotes::StatusNotes(
    QWidget &area, UndoStack &undo, const Appearance &appearance, std::function<bool()> isInFront)
    : QFrame(area.window()),
      area(area),
      undo(undo),
      appearance(appearance),
      isInFront(std::move(isInFront)),
      label(plainLabel(this, true)),
      undoButton(new QPushButton(QStringLiteral("Undo"), this)) {
    setObjectName(QStringLiteral("statusNote"));
    undoButton->setAutoDefault(false);
    auto *row = new QHBoxLayout(this);
    row->addWidget(label, 1);
    row->addWidget(undoButton);
    hide();
    timer.setSingleShot(true);
    connect(&timer, &QTimer::timeout, this, &StatusNotes::expire);
    connect(undoButton, &QPushButton::clicked, &undo, &UndoStack::undo);
    connect(&undo, &UndoStack::newestDidChange, this, [this] {
        if (step != 0 && step != this->undo.newestID())
            dismiss();
    });
    connect(&undo, &UndoStack::stepDidOccur, this, &StatusNotes::showStep);
    connect(&undo, &UndoStack::undoDidEnd, this, [this](const QString &note) {
        if (this->isInFront())
            showNote(note);
    });
    connect(qApp, &QApplication::focusChanged, this, &StatusNotes::focusDidChange);
    connect(&appearance, &Appearance::appearanceDidChange, this, &StatusNotes::applyAppearance);
    area.installEventFilter(this);
    applyAppearance();
}

void StatusNotes::showNote(const QString &note) {
    step = 0;
    returnFocus();
    undoButton->hide();
    present(note, noteDuration);
    announce(*window(), note);
}

/// A step that is extended again and again is announced once.
void StatusNotes::showStep() {
    if (!isInFront())
        return;
    const UndoStep &newest = *undo.newest();
    if (step == undo.newestID() && isVisible()) {
        timer.start(undoDuration);
        return;
    }
    // The note on screen may have announced the same, without a button.
    const bool isAnnounced = step == 0 && text() == qstring(newest.texts.note);
    step = undo.newestID();
    undoButton->setAccessibleName(QStringLiteral("Undo ") + qstring(newest.texts.name));
    undoButton->show();
    present(qstring(newest.texts.note), undoDuration);
    if (!isAnnounced)
        announce(*window(), label->text());
}

void StatusNotes::present(const QString &note, std::chrono::milliseconds duration) {
    label->setText(note);
    setAccessibleName(note);
    place();
    setVisible(true);
    raise();
    timer.start(duration);
}

QString StatusNotes::text() const {
    return isHidden() ? QString() : label->text();
}

void StatusNotes::expire() {
    if (underMouse() || isAncestorOf(QApplication::focusWidget()))
        timer.start(noteDuration);
    else
        dismiss();
}

void StatusNotes::dismiss() {
    step = 0;
    timer.stop();
    returnFocus();
    hide();
    window()->setAccessibleDescription({});
}

/// Before the button is hidden, which would move the focus to another control.
void StatusNotes::returnFocus() {
    if (focusBefore != nullptr && isAncestorOf(QApplication::focusWidget()))
        focusBefore->setFocus();
}

/// Centres the note over the lower edge of the area, as wide as its text needs.
void StatusNotes::place() {
    // The sizes depend on the style sheet.
    label->ensurePolished();
    undoButton->ensurePolished();
    const int margin = appearance.px(12);
    const QMargins around = layout()->contentsMargins();
    // The width of the text on one line.
    label->setWordWrap(false);
    int wanted = around.left() + label->sizeHint().width() + around.right() + 2 * frameWidth() + 4;
    label->setWordWrap(true);
    if (!undoButton->isHidden())
        wanted += layout()->spacing() + undoButton->sizeHint().width();
    const int widest = std::min(area.width() - 2 * margin, appearance.px(620));
    const int noteWidth = std::max(std::min(wanted, widest), layout()->minimumSize().width());
    resize(noteWidth, layout()->totalHeightForWidth(noteWidth));
    const QPoint origin = area.mapTo(window(), QPoint());
    move(origin.x() + (area.width() - width()) / 2, origin.y() + area.height() - height() - margin);
}

void StatusNotes::applyAppearance() {
    const int side = appearance.px(14);
    const int above = appearance.px(8);
    layout()->setContentsMargins(side, above, above, above);
    layout()->setSpacing(appearance.px(14));
    place();
}

bool StatusNotes::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Resize || event->type() == QEvent::Move)
        place();
    return QFrame::eventFilter(watched, event);
}

void StatusNotes::focusDidChange(QWidget *from, QWidget *to) {
    if (to != nullptr && isAncestorOf(to) && from != nullptr && !isAncestorOf(from))
        focusBefore = from;
}

} // namespace ellwynd
