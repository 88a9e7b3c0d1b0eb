#include "ui/mainwindow/statusnotes.h"

#include "ui/support/announce.h"

#include <QMainWindow>
#include <QPushButton>
#include <QStatusBar>

#include <utility>

namespace ellwynd {

namespace {

constexpr int noteMilliseconds = 6000;

} // namespace

StatusNotes::StatusNotes(QMainWindow &window) : QObject(&window), window(window) {
    QStatusBar *bar = window.statusBar();
    bar->setSizeGripEnabled(false);
    bar->hide();
    connect(bar, &QStatusBar::messageChanged, this, &StatusNotes::messageChanged);
}

void StatusNotes::show(const QString &note) {
    show(note, noteMilliseconds);
}

void StatusNotes::showUndoable(const QString &note, std::function<void()> undo) {
    show(note, 2 * noteMilliseconds);
    undoButton = new QPushButton(QStringLiteral("Undo"), &window);
    undoButton->setAccessibleName(QStringLiteral("Undo: ") + note);
    connect(undoButton, &QPushButton::clicked, this, [this, undo = std::move(undo)] {
        undo();
        window.statusBar()->clearMessage();
    });
    window.statusBar()->addPermanentWidget(undoButton);
}

void StatusNotes::show(const QString &note, int milliseconds) {
    delete std::exchange(undoButton, nullptr);
    window.statusBar()->show();
    window.statusBar()->showMessage(note, milliseconds);
    announce(window, note);
}

void StatusNotes::messageChanged(const QString &message) {
    window.statusBar()->setVisible(!message.isEmpty());
    if (!message.isEmpty())
        return;
    // The button may be emitting its own signal.
    if (QPushButton *button = std::exchange(undoButton, nullptr))
        button->deleteLater();
    window.setAccessibleDescription({});
}

} // namespace ellwynd
