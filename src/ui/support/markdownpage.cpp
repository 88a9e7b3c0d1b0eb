#include "ui/support/markdownpage.h"

#include "help/textsearch.h"
#include "ui/support/appearance.h"

#include <QDesktopServices>
#include <QPointer>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextTable>

#include <algorithm>

namespace ellwynd {

namespace {

// Lengths at text scale 1.
constexpr int pageMargin = 22;
constexpr int listIndent = 20;

constexpr int firstLevel = 1;
constexpr int secondLevel = 2;
constexpr double lineHeightPercent = 118;

double headingSize(int level) {
    return level == firstLevel ? 1.6 : level == secondLevel ? 1.25 : 1.05;
}

void formatBlock(const QTextBlock &block, const Appearance &appearance) {
    QTextCursor cursor(block);
    cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
    QTextBlockFormat format = block.blockFormat();
    QTextCharFormat characters;
    if (const int level = format.headingLevel(); level > 0) {
        const bool first = block == block.document()->begin();
        format.setTopMargin(first ? 0 : appearance.px(level == secondLevel ? 18 : 12));
        format.setBottomMargin(appearance.px(5));
        characters.setFont(
            appearance.font(headingSize(level), QFont::Bold),
            QTextCharFormat::FontPropertiesSpecifiedOnly);
    } else if (cursor.currentTable() == nullptr) {
        format.setTopMargin(0);
        format.setBottomMargin(appearance.px(block.textList() != nullptr ? 3 : 8));
        format.setLineHeight(lineHeightPercent, QTextBlockFormat::ProportionalHeight);
    }
    if (format.hasProperty(QTextFormat::BlockQuoteLevel))
        characters.setForeground(appearance.theme().secondaryText);
    cursor.mergeCharFormat(characters);
    cursor.setBlockFormat(format);
}

void formatTable(QTextTable &table, const Appearance &appearance) {
    QTextTableFormat format = table.format();
    format.setBorder(1);
    format.setBorderBrush(appearance.theme().separator);
    format.setBorderStyle(QTextFrameFormat::BorderStyle_Solid);
    format.setBorderCollapse(true);
    format.setCellPadding(appearance.px(5));
    format.setCellSpacing(0);
    format.setTopMargin(appearance.px(2));
    format.setBottomMargin(appearance.px(10));
    table.setFormat(format);
}

/// Converts UTF-8 offsets, in ascending order, to the document's UTF-16 positions.
class Positions {
  public:
    explicit Positions(std::string_view text) : text(text) {}

    int of(std::size_t bytes) {
        units += int(QString::fromUtf8(text.data() + done, qsizetype(bytes - done)).size());
        done = bytes;
        return units;
    }

  private:
    std::string_view text;
    std::size_t done = 0;
    int units = 0;
};

} // namespace

MarkdownPage::MarkdownPage(const Appearance &appearance, QWidget *parent)
    : QTextBrowser(parent), appearance(appearance) {
    setObjectName(QStringLiteral("markdownPage"));
    setFrameShape(QFrame::NoFrame);
    setOpenLinks(false);
    connect(this, &QTextBrowser::anchorClicked, this, &MarkdownPage::follow);
    connect(&appearance, &Appearance::appearanceDidChange, this, &MarkdownPage::render);
}

void MarkdownPage::showMarkdown(const QString &markdown) {
    source = markdown;
    marked.clear();
    render();
}

void MarkdownPage::render() {
    // Formatted before it is set, since each change of a displayed document lays it out again.
    auto *page = new QTextDocument(this);
    page->setDefaultFont(font());
    page->setMarkdown(source);
    page->setDocumentMargin(appearance.px(pageMargin));
    page->setIndentWidth(appearance.px(listIndent));
    for (QTextBlock block = page->begin(); block.isValid(); block = block.next())
        formatBlock(block, appearance);
    for (QTextFrame *frame : page->rootFrame()->childFrames()) {
        if (auto *table = qobject_cast<QTextTable *>(frame))
            formatTable(*table, appearance);
    }
    // Selections refer to the old document.
    setExtraSelections({});
    const QPointer<QTextDocument> old(document());
    setDocument(page);
    delete old;
    moveCursor(QTextCursor::Start);
    verticalScrollBar()->setValue(0);
    markWords(marked);
}

void MarkdownPage::markWords(const QString &query) {
    marked = query;
    std::vector<Word> wanted = wordsOf(query.toStdString());
    // A single letter would highlight half of the page.
    std::erase_if(wanted, [](const Word &word) { return word.folded.size() < 2; });
    QList<ExtraSelection> selections;
    if (!wanted.empty()) {
        const std::string text = document()->toPlainText().toStdString();
        const std::vector<Word> words = wordsOf(text);
        const std::size_t phrase = phraseAt(words, wanted);
        Positions positions(text);
        for (std::size_t i = 0; i < words.size(); ++i) {
            const bool found = std::ranges::any_of(wanted, [&word = words[i]](const Word &each) {
                return word.folded.starts_with(each.folded);
            });
            if (!found)
                continue;
            ExtraSelection selection;
            selection.cursor = QTextCursor(document());
            selection.cursor.setPosition(positions.of(words[i].begin));
            if (phrase < words.size() ? i == phrase : selections.isEmpty())
                setTextCursor(selection.cursor);
            selection.cursor.setPosition(positions.of(words[i].end), QTextCursor::KeepAnchor);
            selection.format.setBackground(appearance.theme().watch.fill);
            selection.format.setForeground(appearance.theme().watch.text);
            selections.push_back(selection);
        }
    }
    setExtraSelections(selections);
    if (!selections.isEmpty())
        ensureCursorVisible();
}

void MarkdownPage::follow(const QUrl &link) {
    if (link.scheme() == u"https")
        QDesktopServices::openUrl(link);
    else
        Q_EMIT linkRequested(link);
}

} // namespace ellwynd
