// The list of help topics.
#pragma once

#include "help/helpbook.h"

#include <QListWidget>

namespace ellwynd {

class Appearance;

/// Titles, each with the place where a search found it below.
class TopicList : public QListWidget {
    Q_OBJECT

  public:
    explicit TopicList(const Appearance &appearance, QWidget *parent = nullptr);

    /// Shows these topics and selects none.
    void setHits(const std::vector<HelpHit> &hits);

    /// Selects a topic, if it is in the list.
    void selectTopic(const std::string &id);

    /// Empty when none is selected.
    [[nodiscard]] std::string selectedTopic() const;

  protected:
    /// Says so where there is nothing to list.
    void paintEvent(QPaintEvent *event) override;

  private:
    class Delegate;

    const Appearance &appearance;
};

} // namespace ellwynd
