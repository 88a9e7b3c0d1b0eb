#include "ui/support/stampline.h"

#include "uikit/labels.h"

#include <QEvent>
#include <QHBoxLayout>

namespace ellwynd {

StampLine::StampLine(QWidget *parent)
    : QWidget(parent),
      text(new ElidedLabel(this)),
      stamp(new ElidedLabel(this)),
      note(new ElidedLabel(this)) {
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    // Takes what the others leave, but not more than its text needs.
    text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    for (ElidedLabel *label : {stamp, note})
        label->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    for (ElidedLabel *label : {text, stamp, note})
        label->setProperty("secondary", true);
    row->addWidget(text, 1000);
    row->addWidget(stamp);
    row->addWidget(note);
    row->addStretch(1);
}

void StampLine::setTexts(const QString &newText, const QString &newStamp, const QString &newNote) {
    const QString separator = QStringLiteral(" · ");
    text->setFullText(newText);
    stamp->setFullText(newStamp.isEmpty() || newText.isEmpty() ? newStamp : separator + newStamp);
    stamp->setAccessibleName(newStamp);
    note->setFullText(newNote.isEmpty() ? newNote : separator + newNote);
    note->setAccessibleName(newNote);
    stamp->setVisible(!newStamp.isEmpty());
    note->setVisible(!newNote.isEmpty());
    limitText();
}

void StampLine::limitText() {
    text->setMaximumWidth(text->sizeHint().width());
}

void StampLine::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        limitText();
}

} // namespace ellwynd
