// Accessibility checks of a window.
#pragma once

#include <QWidget>

#include <string>
#include <vector>

namespace ellwynd::test {

/// The interactive elements of a window without an accessible name, each as its role and class with
/// those of its parents.
[[nodiscard]] std::vector<std::string> unnamedElements(QWidget &window);

/// The controls of a window with a tab focus policy that Tab does not reach. Activates the window.
[[nodiscard]] std::vector<std::string> unreachableControls(QWidget &window);

} // namespace ellwynd::test
