// A page of Markdown in the program's style.
#pragma once

#include <QTextBrowser>

namespace ellwynd {

class Appearance;

/// Shows Markdown that is compiled into the program, in the current colours and text size. The page
/// loads no resources. https links open in the browser; others are emitted as `linkRequested`.
class MarkdownPage : public QTextBrowser {
    Q_OBJECT

  public:
    explicit MarkdownPage(const Appearance &appearance, QWidget *parent = nullptr);

    /// Shows a text and scrolls to its beginning.
    void showMarkdown(const QString &markdown);

    /// Highlights the words of the page that begin with a word of the query, and scrolls to the
    /// place where they occur as a phrase, or to the first. Single letters are ignored.
    void markWords(const QString &query);

  Q_SIGNALS:
    void linkRequested(const QUrl &link);

  private:
    void render();
    void follow(const QUrl &link);

    const Appearance &appearance;
    QString source;
    QString marked;
};

} // namespace ellwynd
