// A page of Markdown in the program's own style.
#pragma once

#include <QTextBrowser>

namespace ellwynd {

class Appearance;

/// Shows Markdown that is compiled into the program, in its colours and text size. Nothing is ever
/// loaded into the page; links that are https open in the browser, all others are announced.
class MarkdownPage : public QTextBrowser {
    Q_OBJECT

  public:
    explicit MarkdownPage(const Appearance &appearance, QWidget *parent = nullptr);

    /// Shows a text from its beginning.
    void showMarkdown(const QString &markdown);

    /// Marks the words of the page that begin with one of the query's words, and scrolls to the
    /// first of them, or to the place where they follow each other. Single letters mark nothing.
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
