// Pages made of cards, for the welcome window and the pane of a program that is not connected.
#pragma once

#include <QString>

#include <vector>

class QLabel;
class QWidget;

namespace ellwynd {

class Appearance;

/// The parts of such a page. Each is created without a parent and takes ownership of the widgets
/// passed to it. The appearance must outlive them.
namespace cardPage {

[[nodiscard]] QLabel *text(const QString &text);
[[nodiscard]] QWidget *besideEachOther(QWidget *left, QWidget *right);
/// Aligns a widget to the left, at its preferred width.
[[nodiscard]] QWidget *leftAligned(QWidget *widget);
[[nodiscard]] QWidget *bulletList(const std::vector<QString> &items);
[[nodiscard]] QWidget *
card(const QString &title, const std::vector<QWidget *> &contents, const Appearance &appearance);
/// A page that scrolls, since large text may not fit on a small screen. Its contents are no wider
/// than a line of text may be.
[[nodiscard]] QWidget *
page(const QString &title, const std::vector<QWidget *> &contents, const Appearance &appearance);

} // namespace cardPage

} // namespace ellwynd
