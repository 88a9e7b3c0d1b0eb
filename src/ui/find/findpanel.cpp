#include "ui/find/findpanel.h"

#include "base/text.h"
#include "ui/find/findlist.h"
#include "ui/support/announce.h"
#include "ui/support/appearance.h"
#include "uikit/labels.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace ellwynd {

namespace {

/// Lengths at text scale 1.
constexpr double panelWidth = 580;
constexpr double windowMargin = 16;
constexpr double distanceFromTop = 56;
constexpr int mostRows = 8;

bool movesSelection(int key) {
    return key == Qt::Key_Up || key == Qt::Key_Down || key == Qt::Key_PageUp ||
        key == Qt::Key_PageDown;
}

bool opens(int key) {
    return key == Qt::Key_Return || key == Qt::Key_Enter;
}

} // namespace

FindPanel::FindPanel(const Appearance &appearance, QWidget &window)
    : QFrame(&window),
      appearance(appearance),
      owner(window),
      field(new QLineEdit(this)),
      list(new FindList(appearance, this)),
      hint(secondaryLabel(this)) {
    setObjectName(QStringLiteral("findPanel"));
    setAccessibleName(QStringLiteral("Find"));
    hide();
    field->setObjectName(QStringLiteral("findField"));
    field->setAccessibleName(QStringLiteral("Find"));
    field->setPlaceholderText(QStringLiteral("Find students, courses and commands"));
    auto *column = new QVBoxLayout(this);
    column->addWidget(field);
    column->addWidget(list, 1);
    column->addWidget(hint);
    connect(field, &QLineEdit::textChanged, this, [this] { showResults({}); });
    connect(list, &QAbstractItemView::clicked, this, [this](const QModelIndex &row) {
        choose(list->at(row));
    });
    connect(&appearance, &Appearance::appearanceDidChange, this, &FindPanel::place);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget *, const QWidget *now) {
        focusDidChange(now);
    });
}

/// The focus moves while the field and the list are deleted.
FindPanel::~FindPanel() {
    disconnect(qApp, nullptr, this, nullptr);
}

void FindPanel::open(FindIndex newIndex) {
    if (!isVisible()) {
        focusBefore = QApplication::focusWidget();
        qApp->installEventFilter(this);
    }
    index = std::move(newIndex);
    {
        const QSignalBlocker blocker(field);
        field->clear();
    }
    show();
    raise();
    showResults({});
    field->setFocus(Qt::ShortcutFocusReason);
}

void FindPanel::setIndex(FindIndex newIndex) {
    index = std::move(newIndex);
    showResults(list->current());
}

void FindPanel::dismiss() {
    if (isHidden())
        return;
    const QPointer<QWidget> before = focusBefore;
    forget();
    if (before != nullptr && before->isVisible())
        before->setFocus(Qt::OtherFocusReason);
}

void FindPanel::forget() {
    qApp->removeEventFilter(this);
    focusBefore.clear();
    hide();
    index = {};
    list->show({}, {}, {});
}

void FindPanel::showResults(const std::optional<FindEntry> &current) {
    const std::string typed = field->text().toStdString();
    list->show(index.find(typed), typed, current);
    hint->setText(
        trim(typed).empty() ? QStringLiteral("Type how a name, a course or a command begins.")
                            : QStringLiteral("Nobody and nothing is named like that."));
    hint->setVisible(list->isEmpty());
    list->setVisible(!list->isEmpty());
    place();
    if (list->isEmpty() && !typed.empty())
        announce(*this, hint->text());
}

void FindPanel::choose(const std::optional<FindEntry> &entry) {
    if (!entry)
        return;
    dismiss();
    Q_EMIT entryRequested(*entry);
}

bool FindPanel::contains(const QObject *object) const {
    const auto *widget = qobject_cast<const QWidget *>(object);
    return widget != nullptr && (widget == this || isAncestorOf(widget));
}

/// The focus may move to another window, such as an alert, and come back.
void FindPanel::focusDidChange(const QWidget *now) {
    if (isVisible() && now != nullptr && now->window() == &owner && !contains(now))
        forget();
}

void FindPanel::place() {
    if (isHidden())
        return;
    const int margin = appearance.px(windowMargin);
    const int padding = appearance.px(10);
    layout()->setContentsMargins(padding, padding, padding, padding);
    layout()->setSpacing(appearance.px(6));
    const int width = std::min(appearance.px(panelWidth), owner.width() - 2 * margin);
    const int top = std::min(appearance.px(distanceFromTop), owner.height() / 8);
    const int below =
        list->isEmpty() ? hint->heightForWidth(width - 2 * padding) : list->heightOf(mostRows);
    const QMargins border = contentsMargins();
    const int wanted = border.top() + border.bottom() + 2 * padding + field->sizeHint().height() +
        layout()->spacing() + below;
    setGeometry(
        (owner.width() - width) / 2, top, width,
        std::min(wanted, std::max(0, owner.height() - top - margin)));
}

bool FindPanel::handleKey(QObject *watched, QKeyEvent &key) {
    if (key.key() == Qt::Key_Escape) {
        dismiss();
        return true;
    }
    if (opens(key.key())) {
        choose(list->current());
        return true;
    }
    if (watched == field && movesSelection(key.key())) {
        QApplication::sendEvent(list, &key);
        announce(*this, list->currentIndex().data(Qt::AccessibleTextRole).toString());
        return true;
    }
    if (watched == list && !key.text().isEmpty() && key.text().at(0).isPrint()) {
        field->setFocus(Qt::OtherFocusReason);
        QApplication::sendEvent(field, &key);
        return true;
    }
    return false;
}

bool FindPanel::eventFilter(QObject *watched, QEvent *event) {
    const auto *widget = qobject_cast<const QWidget *>(watched);
    switch (event->type()) {
    case QEvent::Resize:
        if (watched == &owner)
            place();
        break;
    case QEvent::MouseButtonPress:
        if (widget != nullptr && widget->window() == &owner && !contains(watched))
            dismiss();
        break;
    case QEvent::ShortcutOverride: {
        // The window's own commands have none of these keys while the panel is open.
        const int key = static_cast<QKeyEvent *>(event)->key();
        if (contains(watched) && (key == Qt::Key_Escape || opens(key) || movesSelection(key))) {
            event->accept();
            return true;
        }
        break;
    }
    case QEvent::KeyPress:
        if (watched == field || watched == list)
            return handleKey(watched, *static_cast<QKeyEvent *>(event));
        break;
    default:
        break;
    }
    return QFrame::eventFilter(watched, event);
}

} // namespace ellwynd
