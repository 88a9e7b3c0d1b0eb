// The list of help topics.
#pragma once

#include "help/helpbook.h"

#include <QListWidget>

namespace ellwynd {

class Appearance;

/// Titles, each with the text that a search found below it.
class TopicList : public QListWidget {
    Q_OBJECT

  public:
    explicit TopicList(const Appearance &appearance, QWidget *parent = nullptr);

    /// Shows these topics and selects none.
    void setHits(const std::vector<HelpHit> &hits);

    /// Selects a topic, or nothing when it is not in the list.
    void selectTopic(const std::string &id);

    /// Empty when none is selected.
    [[nodiscard]] std::string selectedTopic() const;

  protected:
    /// Draws "Nothing found" when the list is empty.
    void paintEvent(QPaintEvent *event) override;

  private:
    class Delegate;

    const Appearance &appearance;
};

} // namespace ellwynd
