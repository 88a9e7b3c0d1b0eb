// The results below the field that finds students, courses and commands.
#pragma once

#include "app/find/findindex.h"

#include <QAbstractListModel>
#include <QListView>

namespace ellwynd {

class Appearance;

/// The results of one query.
class FindModel : public QAbstractListModel {
    Q_OBJECT

  public:
    explicit FindModel(QObject *parent = nullptr) : QAbstractListModel(parent) {}

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] const FindEntry &at(int row) const { return entries[std::size_t(row)]; }
    /// What was typed, to mark it.
    [[nodiscard]] const std::string &query() const { return typed; }
    void show(std::vector<FindEntry> results, std::string query);

  private:
    std::vector<FindEntry> entries;
    std::string typed;
};

/// Shows results in two lines each. The field above keeps the keyboard focus unless Tab is pressed.
class FindList : public QListView {
    Q_OBJECT

  public:
    /// @param appearance must outlive this object.
    explicit FindList(const Appearance &appearance, QWidget *parent = nullptr);

    /// Replaces the results.
    /// @param current selected if it is still among them; otherwise the first is. Absent for the
    ///        first.
    void show(
        std::vector<FindEntry> entries, std::string query, const std::optional<FindEntry> &current);
    [[nodiscard]] bool isEmpty() const { return results->rowCount() == 0; }
    /// The selected result; absent without results.
    [[nodiscard]] std::optional<FindEntry> current() const;
    [[nodiscard]] std::optional<FindEntry> at(const QModelIndex &index) const;
    /// The height of all rows, but at most of that many.
    [[nodiscard]] int heightOf(int most) const;

  private:
    FindModel *results;
};

} // namespace ellwynd
