// What windows say.
#pragma once

#include <QLabel>
#include <QModelIndex>

#include <string>
#include <vector>

namespace ellwynd::test {

/// The texts of the visible labels of a window.
inline std::vector<std::string> shownTexts(const QWidget &window) {
    std::vector<std::string> texts;
    for (const QLabel *label : window.findChildren<QLabel *>()) {
        if (label->isVisible())
            texts.push_back(label->text().toStdString());
    }
    return texts;
}

/// What a screen reader says about a row of a view.
inline std::string spokenText(const QModelIndex &index) {
    return index.data(Qt::AccessibleTextRole).toString().toStdString();
}

} // namespace ellwynd::test
