// What windows say.
#pragma once

#include <QLabel>
#include <QModelIndex>

#include <gmock/gmock.h>

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

/// Whether a visible label of a window has a text, which may be a matcher.
template<class Text>
testing::AssertionResult says(const QWidget &window, const Text &text) {
    const std::vector<std::string> texts = shownTexts(window);
    return testing::AssertionResult(testing::Value(texts, testing::Contains(text)))
        << testing::PrintToString(texts);
}

/// What a screen reader says about a row of a view.
inline std::string spokenText(const QModelIndex &index) {
    return index.data(Qt::AccessibleTextRole).toString().toStdString();
}

} // namespace ellwynd::test
