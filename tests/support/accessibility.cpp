#include "support/accessibility.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QMetaEnum>
#include <QRadioButton>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

namespace ellwynd::test {

namespace {

bool isActedOn(QAccessibleInterface &element) {
    static const std::set<QAccessible::Role> roles{
        QAccessible::Button,        QAccessible::CheckBox,     QAccessible::RadioButton,
        QAccessible::ComboBox,      QAccessible::EditableText, QAccessible::SpinBox,
        QAccessible::Slider,        QAccessible::Link,         QAccessible::MenuItem,
        QAccessible::PopupMenu,     QAccessible::PageTab,      QAccessible::List,
        QAccessible::ListItem,      QAccessible::Tree,         QAccessible::TreeItem,
        QAccessible::Table,         QAccessible::ColumnHeader, QAccessible::ButtonMenu,
        QAccessible::ButtonDropDown};
    return element.state().focusable || roles.contains(element.role());
}

std::string describe(QAccessibleInterface &element) {
    std::string text = QMetaEnum::fromType<QAccessible::Role>().valueToKey(int(element.role()));
    for (QAccessibleInterface *each = &element; each != nullptr; each = each->parent()) {
        if (each->object() != nullptr) {
            text += std::string(" in ") + each->object()->metaObject()->className();
            text += "(" + each->text(QAccessible::Name).toStdString() + ")";
        }
    }
    return text;
}

void walk(QAccessibleInterface &element, std::vector<std::string> &unnamed) {
    const QAccessible::State state = element.state();
    if (state.invisible)
        return;
    if (isActedOn(element) && element.text(QAccessible::Name).trimmed().isEmpty())
        unnamed.push_back(describe(element));
    for (int i = 0; i < element.childCount(); ++i) {
        if (QAccessibleInterface *child = element.child(i))
            walk(*child, unnamed);
    }
}

/// Tab stops only at the checked radio button of a group; arrow keys reach the others.
bool isReachedByArrows(const QWidget &control) {
    const auto *radio = qobject_cast<const QRadioButton *>(&control);
    return radio != nullptr && !radio->isChecked() &&
        std::ranges::any_of(
               radio->parentWidget()->findChildren<QRadioButton *>(Qt::FindDirectChildrenOnly),
               &QRadioButton::isChecked);
}

} // namespace

std::vector<std::string> unnamedElements(QWidget &window) {
    // Views announce row changes only while a screen reader is active. Without one, the rows that
    // they handed out earlier are out of date.
    for (QAbstractItemView *view : window.findChildren<QAbstractItemView *>()) {
        QAccessibleTableModelChangeEvent reset(view, QAccessibleTableModelChangeEvent::ModelReset);
        QAccessibleInterface *accessible = QAccessible::queryAccessibleInterface(view);
        if (accessible->tableInterface() != nullptr)
            accessible->tableInterface()->modelChange(&reset);
    }
    std::vector<std::string> unnamed;
    walk(*QAccessible::queryAccessibleInterface(&window), unnamed);
    return unnamed;
}

std::vector<std::string> unreachableControls(QWidget &window) {
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    std::set<QWidget *> wanted;
    for (QWidget *control : window.findChildren<QWidget *>()) {
        if (control->window() == &window && control->isVisible() && control->isEnabled() &&
            (control->focusPolicy() & Qt::TabFocus) == Qt::TabFocus &&
            control->focusProxy() == nullptr && !isReachedByArrows(*control))
            wanted.insert(control);
    }
    // A label is a tab stop once for each of its links.
    for (std::size_t presses = 2 * wanted.size(); presses > 0; --presses) {
        QWidget *at = window.focusWidget();
        wanted.erase(at);
        QTest::keyClick(at != nullptr ? at : &window, Qt::Key_Tab);
    }
    std::vector<std::string> missed;
    for (QWidget *control : wanted)
        missed.push_back(describe(*QAccessible::queryAccessibleInterface(control)));
    return missed;
}

} // namespace ellwynd::test
