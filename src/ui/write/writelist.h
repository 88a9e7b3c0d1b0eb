// The list of students in the Write sheet.
#pragma once

#include "app/messages/writesession.h"

#include <QAbstractListModel>
#include <QListView>

namespace ellwynd {

class Appearance;

/// The students of a session, each with the level and what was done.
class WriteModel : public QAbstractListModel {
    Q_OBJECT

  public:
    /// @param session must outlive this object.
    explicit WriteModel(const WriteSession &session, QObject *parent = nullptr);

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] const WriteSession::Student &at(int row) const {
        return session.students()[std::size_t(row)];
    }
    /// Call when the session has changed.
    void update();

  private:
    const WriteSession &session;
    int rows;
};

/// Shows the model, with a tick for each student for whom a message was copied.
class WriteList : public QListView {
    Q_OBJECT

  public:
    /// The arguments must outlive this object.
    WriteList(const WriteSession &session, const Appearance &appearance, QWidget *parent = nullptr);

    /// Shows the session's state, and selects its current student.
    void update();
    /// The height of that many rows.
    [[nodiscard]] int heightOf(int count) const;

  Q_SIGNALS:
    void studentRequested(std::size_t index);

  protected:
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

  private:
    const WriteSession &session;
    WriteModel *students;
    bool isUpdating = false;
};

} // namespace ellwynd
