// The pages of the welcome window.
#pragma once

#include <QString>

#include <vector>

class QLabel;
class QWidget;

namespace ellwynd {

class Appearance;

/// Building blocks of pages, and the pages without controls. Each is created without a parent and
/// takes ownership of the widgets passed to it. The appearance must outlive them.
namespace welcomePages {

[[nodiscard]] QLabel *text(const QString &text);
[[nodiscard]] QWidget *besideEachOther(QWidget *left, QWidget *right);
/// Aligns a widget to the left, at its preferred width.
[[nodiscard]] QWidget *leftAligned(QWidget *widget);
[[nodiscard]] QWidget *bulletList(const std::vector<QString> &items);
[[nodiscard]] QWidget *
card(const QString &title, const std::vector<QWidget *> &contents, const Appearance &appearance);
/// A page that scrolls, since large text may not fit on a small screen.
[[nodiscard]] QWidget *
page(const QString &title, const std::vector<QWidget *> &contents, const Appearance &appearance);

/// The first page: what the program is.
[[nodiscard]] QWidget *introduction(const QString &title, const Appearance &appearance);
/// The last page: what comes next.
/// @param results are shown first.
[[nodiscard]] QWidget *end(std::vector<QWidget *> results, const Appearance &appearance);

} // namespace welcomePages

} // namespace ellwynd
