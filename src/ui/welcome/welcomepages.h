// What the pages of the first-run steps are made of.
#pragma once

#include <QString>

#include <vector>

class QLabel;
class QWidget;

namespace ellwynd {

class Appearance;

/// Building blocks of pages, and the pages that only tell something. Each is made without a parent
/// and takes over the widgets it is given. The appearance must outlive them all.
namespace welcomePages {

[[nodiscard]] QLabel *text(const QString &text);
[[nodiscard]] QWidget *besideEachOther(QWidget *left, QWidget *right);
/// A widget of its own width at the left.
[[nodiscard]] QWidget *leftAligned(QWidget *widget);
[[nodiscard]] QWidget *bulletList(const std::vector<QString> &items);
[[nodiscard]] QWidget *
card(const QString &title, const std::vector<QWidget *> &contents, const Appearance &appearance);
/// A page that scrolls: large text needs more room than a small screen has.
[[nodiscard]] QWidget *
page(const QString &title, const std::vector<QWidget *> &contents, const Appearance &appearance);

/// What the program is.
[[nodiscard]] QWidget *introduction(const QString &title, const Appearance &appearance);
/// What comes next.
/// @param connectedAs says who is connected.
[[nodiscard]] QWidget *end(QLabel *connectedAs, const Appearance &appearance);

} // namespace welcomePages

} // namespace ellwynd
