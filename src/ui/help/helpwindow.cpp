#include "ui/help/helpwindow.h"

#include "ui/help/topiclist.h"
#include "ui/support/appearance.h"
#include "ui/support/markdownpage.h"
#include "ui/support/windowmemory.h"
#include "uikit/convert.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QUrl>
#include <QVBoxLayout>

namespace ellwynd {

namespace {

constexpr QLatin1StringView topicScheme("topic");

// The columns' shares of the window.
constexpr int sideShare = 1;
constexpr int pageShare = 2;

} // namespace

HelpWindow::HelpWindow(
    UserDefaults &defaults, const Appearance &appearance,
    const std::vector<ShortcutGroup> &shortcuts, QWidget *parent)
    : QDialog(parent, Qt::Window),
      book(shortcuts),
      query(new QLineEdit),
      topics(new TopicList(appearance)),
      back(new QPushButton(QStringLiteral("Back"))),
      page(new MarkdownPage(appearance)) {
    setWindowTitle(QStringLiteral("Ellwynd Help"));
    query->setPlaceholderText(QStringLiteral("Search help"));
    query->setAccessibleName(QStringLiteral("Search help"));
    query->setClearButtonEnabled(true);
    query->installEventFilter(this);
    back->setToolTip(QStringLiteral("Back to the previous topic (Alt+Left)"));
    back->setAutoDefault(false);
    page->setAccessibleName(QStringLiteral("Help topic"));

    auto *side = new QWidget;
    side->setObjectName(QStringLiteral("helpSide"));
    auto *column = new QVBoxLayout(side);
    auto *top = new QHBoxLayout;
    top->addWidget(query, 1);
    top->addWidget(back);
    column->addLayout(top);
    column->addWidget(topics, 1);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(side, sideShare);
    row->addWidget(page, pageShare);

    connect(query, &QLineEdit::textChanged, this, &HelpWindow::search);
    connect(topics, &QListWidget::currentRowChanged, this, [this](int chosen) {
        if (chosen >= 0)
            read(topics->selectedTopic(), true);
    });
    connect(back, &QPushButton::clicked, this, &HelpWindow::goBack);
    connect(page, &MarkdownPage::linkRequested, this, &HelpWindow::follow);
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this, [this] {
        query->setFocus(Qt::ShortcutFocusReason);
        query->selectAll();
    });
    connect(
        new QShortcut(Qt::ALT | Qt::Key_Left, this), &QShortcut::activated, this,
        &HelpWindow::goBack);

    auto *memory = new WindowMemory(*this, defaults, preferences::helpWindowGeometry);
    if (!memory->restoreGeometry())
        resize(appearance.px(920), appearance.px(620));
    search();
}

HelpWindow::~HelpWindow() = default;

// ---- Topics ------------------------------------------------------------------------------------

void HelpWindow::showTopic(const std::string &id) {
    query->clear();
    read(book.find(id) != nullptr ? id : book.topics().front().id, isVisible());
    show();
    raise();
    activateWindow();
    query->setFocus();
}

void HelpWindow::showReleaseNotes() {
    showTopic(std::string(HelpBook::releaseNotesID));
}

void HelpWindow::search() {
    const std::vector<HelpHit> hits = book.search(query->text().toStdString());
    const bool searching = !query->text().trimmed().isEmpty();
    {
        const QSignalBlocker quiet(topics);
        topics->setHits(hits);
        topics->selectTopic(searching && !hits.empty() ? hits.front().topic->id : current);
    }
    if (searching && !hits.empty())
        read(hits.front().topic->id, true);
    else
        render();
}

void HelpWindow::read(const std::string &id, bool remember) {
    if (id != current) {
        // Topics shown while a search is being typed do not count as visited.
        if (remember && !current.empty() && query->text().isEmpty())
            visited.push_back(current);
        current = id;
    }
    const QSignalBlocker quiet(topics);
    topics->selectTopic(id);
    render();
}

void HelpWindow::goBack() {
    if (visited.empty())
        return;
    const std::string id = visited.back();
    visited.pop_back();
    query->clear();
    read(id, false);
}

void HelpWindow::follow(const QUrl &link) {
    const std::string id = link.path().toStdString();
    if (link.scheme() != topicScheme || book.find(id) == nullptr)
        return;
    query->clear();
    read(id, true);
}

void HelpWindow::render() {
    back->setEnabled(!visited.empty());
    const HelpTopic *topic = book.find(current);
    if (topic == nullptr)
        return;
    page->showMarkdown(qstring("# " + topic->title + "\n\n" + topic->body));
    page->markWords(query->text());
}

// ---- Keys --------------------------------------------------------------------------------------

bool HelpWindow::eventFilter(QObject *watched, QEvent *event) {
    if (watched == query && event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        switch (key->key()) {
        case Qt::Key_Up:
        case Qt::Key_Down:
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            QCoreApplication::sendEvent(topics, event);
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            page->setFocus();
            return true;
        default:
            break;
        }
    }
    return QDialog::eventFilter(watched, event);
}

void HelpWindow::keyPressEvent(QKeyEvent *event) {
    if (event->matches(QKeySequence::Cancel) && !query->text().isEmpty())
        query->clear();
    else
        QDialog::keyPressEvent(event);
}

} // namespace ellwynd
