// A sentence with a way to its explanation.
#pragma once

#include <QWidget>

#include <string>

namespace ellwynd {

class Appearance;

/// A sentence with a small button beside it, "What does this mean?", that leads to the help topic
/// about it.
class ExplainedSentence : public QWidget {
    Q_OBJECT

  public:
    /// @param sentence shows the sentence; becomes a child of this widget.
    /// @param text what it says, for screen readers.
    /// @param topic the id of a help topic.
    /// @param appearance must outlive this object.
    ExplainedSentence(
        QWidget *sentence, const QString &text, std::string topic, const Appearance &appearance);

  Q_SIGNALS:
    void helpRequested(const std::string &topic);
};

} // namespace ellwynd
