// What a screen reader and a keyboard find in a window.
#pragma once

#include <QWidget>

#include <string>
#include <vector>

namespace ellwynd::test {

/// Every element below a window that somebody can act on and that has no name, as its role and
/// class, with what it lies in.
[[nodiscard]] std::vector<std::string> unnamedElements(QWidget &window);

/// Every control of a window that Tab should stop at and does not. The window comes to the front.
[[nodiscard]] std::vector<std::string> unreachableControls(QWidget &window);

} // namespace ellwynd::test
