#include "generated/version.h"
#include "support/mainwindow.h"
#include "ui/about/aboutwindow.h"
#include "ui/help/helpwindow.h"
#include "ui/help/topiclist.h"
#include "ui/support/markdownpage.h"
#include "windowtexts.h"

#include <QDesktopServices>
#include <QLineEdit>
#include <QTextBlock>

namespace ellwynd {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

/// Collects the URLs that the program opens in the browser.
class Browser : public QObject {
    Q_OBJECT

  public:
    /// Qt forgets the handlers of an object that is destroyed.
    Browser() {
        for (const auto *scheme : {"https", "http", "file"})
            QDesktopServices::setUrlHandler(QString::fromUtf8(scheme), this, "open");
    }

    QList<QUrl> opened;

  public Q_SLOTS:
    void open(const QUrl &url) { opened.push_back(url); }
};

struct HelpWindowTest : test::WindowTest {
    HelpWindow window{defaults, appearance, {}};
    QLineEdit &query = *window.findChild<QLineEdit *>();
    TopicList &topics = *window.findChild<TopicList *>();
    MarkdownPage &page = *window.findChild<MarkdownPage *>();

    [[nodiscard]] std::string text() const { return page.toPlainText().toStdString(); }
    void type(const char *words) { QTest::keyClicks(&query, QString::fromUtf8(words)); }
    void link(const char *target) { Q_EMIT page.anchorClicked(QUrl(QString::fromUtf8(target))); }
};

TEST_F(HelpWindowTest, SearchingNeedsOnlyTheKeyboard) {
    window.showTopic("nowhere");
    EXPECT_THAT(text(), StartsWith("Getting Started\n"));
    const int all = topics.count();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    page.setFocus();
    QTest::keyClick(&window, Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(window.focusWidget(), &query);
    type("couldnt reach");
    EXPECT_LT(topics.count(), all);
    EXPECT_EQ(topics.selectedTopic(), "troubleshooting") << "the first hit is shown at once";
    EXPECT_THAT(text(), StartsWith("Messages and What to Do"));
    ASSERT_FALSE(page.extraSelections().isEmpty());
    EXPECT_THAT(
        page.textCursor().block().text().toStdString(),
        StartsWith("Couldn't reach canvas.example.edu"));
    EXPECT_THAT(
        topics.item(0)->data(Qt::AccessibleDescriptionRole).toString().toStdString(),
        HasSubstr("Couldn't reach"));

    query.clear();
    type("export");
    EXPECT_EQ(topics.currentRow(), 0);
    QTest::keyClick(&query, Qt::Key_Down);
    EXPECT_EQ(topics.currentRow(), 1) << "the arrow keys choose while the search has the focus";
    EXPECT_EQ(query.text(), QStringLiteral("export"));
    const std::string chosen = topics.selectedTopic();
    QTest::keyClick(&query, Qt::Key_Return);
    EXPECT_EQ(window.focusWidget(), &page);

    QTest::keyClick(&query, Qt::Key_Escape);
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(query.text(), QString());
    EXPECT_EQ(topics.count(), all);
    EXPECT_EQ(topics.selectedTopic(), chosen) << "the chosen topic stays open";
    EXPECT_TRUE(page.extraSelections().isEmpty());
    QTest::keyClick(&query, Qt::Key_Escape);
    EXPECT_FALSE(window.isVisible());
}

TEST_F(HelpWindowTest, ASearchWithoutHitsSaysSoAndKeepsThePage) {
    window.showTopic("privacy");
    query.setText(QStringLiteral("zzyzx"));
    EXPECT_EQ(topics.count(), 0);
    EXPECT_EQ(topics.accessibleDescription(), QStringLiteral("Nothing found"));
    EXPECT_THAT(text(), StartsWith("Privacy"));
    window.close();
    EXPECT_FALSE(window.isVisible()) << "a search does not keep the window open";
}

TEST_F(HelpWindowTest, LinksOpenTopicsAndOnlyHttpsOpensTheBrowser) {
    const Browser browser;
    auto &back = *window.findChild<QPushButton *>();
    window.showTopic("getting-started");
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_FALSE(back.isEnabled());
    link("topic:connecting");
    EXPECT_THAT(text(), StartsWith("Connecting to Canvas"));
    EXPECT_EQ(topics.selectedTopic(), "connecting");
    link("topic:keychain");
    link("topic:nowhere");
    EXPECT_THAT(text(), StartsWith("When the Keychain"));
    QTest::keyClick(&window, Qt::Key_Left, Qt::AltModifier);
    EXPECT_THAT(text(), StartsWith("Connecting"));
    back.click();
    EXPECT_THAT(text(), StartsWith("Getting Started"));
    EXPECT_FALSE(back.isEnabled());
    for (const char *target :
         {"http://h.example", "file:///etc/passwd", "/etc/passwd", "javascript:1", "ellwynd:x"})
        link(target);
    EXPECT_TRUE(browser.opened.isEmpty());
    link("https://h.example/");
    EXPECT_EQ(browser.opened, QList{QUrl(QStringLiteral("https://h.example/"))});
    EXPECT_THAT(text(), StartsWith("Getting Started"));
}

TEST_F(HelpWindowTest, FollowsTheAppearanceAndKeepsItsGeometry) {
    window.showReleaseNotes();
    EXPECT_THAT(text(), StartsWith("What's New in Ellwynd\nVersion " + std::string(version)));
    window.showTopic("signals");
    const auto headingSize = [this] {
        return page.document()->begin().begin().fragment().charFormat().font().pointSizeF();
    };
    const double normal = headingSize();
    settings.setTextScale(2);
    EXPECT_NEAR(headingSize(), normal * 2, 0.01);
    EXPECT_THAT(text(), StartsWith("How Students Are Scored"));
    EXPECT_EQ(page.findChildren<QTextDocument *>().size(), 1) << "earlier pages are deleted";

    window.resize(777, 555);
    window.close();
    HelpWindow again(defaults, appearance, {});
    EXPECT_EQ(again.size(), QSize(777, 555));
}

TEST_F(HelpWindowTest, AboutShowsVersionAndPromises) {
    AboutWindow about(appearance);
    about.show();
    EXPECT_TRUE(test::says(about, HasSubstr("Version " + std::string(version))));
    EXPECT_THAT(
        about.findChild<MarkdownPage *>()->toPlainText().toStdString(),
        testing::AllOf(HasSubstr("Nothing is ever sent"), HasSubstr("LGPL-2.1-or-later")));
    QTest::keyClick(&about, Qt::Key_Escape);
    EXPECT_FALSE(about.isVisible());
}

} // namespace
} // namespace ellwynd

#include "helpwindow_test.moc"
