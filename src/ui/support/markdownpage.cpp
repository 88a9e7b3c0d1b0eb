#include "ui/support/markdownpage.h"

#include "help/textsearch.h"
#include "ui/support/appearance.h"

#include <QDesktopServices>
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

void dressBlock(const QTextBlock &block, const Appearance &appearance) {
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

void dressTable(QTextTable &table, const Appearance &appearance) {
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

} // namespace

MarkdownPage::MarkdownPage(const Appearance &look, QWidget *parent)
    : QTextBrowser(parent), appearance(look) {
    setObjectName(QStringLiteral("markdownPage"));
    setFrameShape(QFrame::NoFrame);
    setOpenLinks(false);
    connect(this, &QTextBrowser::anchorClicked, this, &MarkdownPage::follow);
    connect(&look, &Appearance::changed, this, &MarkdownPage::render);
}

void MarkdownPage::showMarkdown(const QString &markdown) {
    source = markdown;
    marked.clear();
    render();
}

void MarkdownPage::render() {
    setMarkdown(source);
    document()->setDocumentMargin(appearance.px(pageMargin));
    document()->setIndentWidth(appearance.px(listIndent));
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next())
        dressBlock(block, appearance);
    for (QTextFrame *frame : document()->rootFrame()->childFrames()) {
        if (auto *table = qobject_cast<QTextTable *>(frame))
            dressTable(*table, appearance);
    }
    moveCursor(QTextCursor::Start);
    verticalScrollBar()->setValue(0);
    markWords(marked);
}

void MarkdownPage::markWords(const QString &query) {
    marked = query;
    const std::vector<Word> wanted = wordsOf(query.toStdString());
    const std::string text = document()->toPlainText().toStdString();
    const std::vector<Word> words = wordsOf(text);
    const std::size_t phrase = wanted.empty() ? words.size() : phraseAt(words, wanted);
    QList<ExtraSelection> selections;
    for (std::size_t i = 0; i < words.size(); ++i) {
        const Word &word = words[i];
        const bool found = std::ranges::any_of(
            wanted, [&word](const Word &each) { return word.folded.starts_with(each.folded); });
        if (!found)
            continue;
        const auto position = [&text](std::size_t bytes) {
            return int(QString::fromUtf8(text.data(), qsizetype(bytes)).size());
        };
        ExtraSelection selection;
        selection.cursor = QTextCursor(document());
        selection.cursor.setPosition(position(word.begin));
        selection.cursor.setPosition(position(word.end), QTextCursor::KeepAnchor);
        selection.format.setBackground(appearance.theme().watch.fill);
        selection.format.setForeground(appearance.theme().watch.text);
        const bool target = phrase < words.size() ? i == phrase : selections.isEmpty();
        selections.push_back(selection);
        if (target) {
            QTextCursor at = selection.cursor;
            at.clearSelection();
            setTextCursor(at);
            ensureCursorVisible();
        }
    }
    setExtraSelections(selections);
}

void MarkdownPage::follow(const QUrl &link) {
    if (link.scheme() == u"https")
        QDesktopServices::openUrl(link);
    else
        Q_EMIT linkFollowed(link);
}

} // namespace ellwynd
