// The pages of the welcome window that have no controls of their own.
#pragma once

#include <QString>

#include <vector>

class QWidget;

namespace ellwynd {

class Appearance;

/// Each page is created without a parent. The appearance must outlive it.
namespace welcomePages {

/// The first page: what the program is.
[[nodiscard]] QWidget *introduction(const QString &title, const Appearance &appearance);
/// The last page: what comes next.
/// @param results are shown first; the page takes ownership.
[[nodiscard]] QWidget *end(std::vector<QWidget *> results, const Appearance &appearance);

} // namespace welcomePages

} // namespace ellwynd
