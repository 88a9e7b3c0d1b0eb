#include "ui/welcome/welcomewindow.h"

#include "canvas/connectioncheck.h"
#include "help/about.h"
#include "theme/applicationicon.h"
#include "ui/support/appearance.h"
#include "ui/welcome/stepdots.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QDesktopServices>
#include <QGridLayout>
#include <QLineEdit>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStackedWidget>
#include <QUrl>
#include <QVBoxLayout>

namespace ellwynd {

namespace {

constexpr int iconSize = 64;

QWidget *besideEachOther(QWidget *left, QWidget *right) {
    auto *both = new QWidget;
    auto *row = new QHBoxLayout(both);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(left);
    row->addWidget(right, 1);
    return both;
}

/// A button of its own width at the left.
QWidget *leftAligned(QPushButton *button) {
    return besideEachOther(button, new QWidget);
}

} // namespace

WelcomeWindow::WelcomeWindow(
    UserDefaults &store, ConnectionCheck &connection, const Appearance &look, QWidget *parent)
    : QDialog(parent),
      defaults(store),
      check(connection),
      appearance(look),
      dots(new StepDots(finished, look, this)),
      pages(new QStackedWidget(this)),
      address(new QLineEdit),
      token(new QLineEdit),
      status(makeText({})),
      connectedAs(makeText({})),
      progress(new QProgressBar),
      connectButton(new QPushButton(QStringLiteral("Connect"))),
      sampleButton(new QPushButton(QStringLiteral("Explore the Sample College"))),
      back(new QPushButton(QStringLiteral("Back"), this)),
      forward(new QPushButton(this)) {
    setWindowTitle(QStringLiteral("Welcome to Ellwynd"));
    setAttribute(Qt::WA_DeleteOnClose);
    pages->addWidget(makeIntroduction());
    pages->addWidget(makeChoice());
    pages->addWidget(makeEnd());

    auto *foot = new QHBoxLayout;
    foot->addWidget(dots);
    foot->addStretch(1);
    foot->addWidget(back);
    foot->addWidget(forward);
    auto *line = new QFrame(this);
    line->setObjectName(QStringLiteral("separator"));
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(pages, 1);
    column->addWidget(line);
    column->addLayout(foot);
    const auto size = [this, foot] {
        const int margin = appearance.px(14);
        foot->setContentsMargins(appearance.px(24), margin, margin, margin);
        foot->setSpacing(appearance.px(8));
    };
    connect(&appearance, &Appearance::changed, this, size);
    size();
    const QSize room = screen()->availableSize() * 9 / 10;
    resize(QSize(appearance.px(570), appearance.px(650)).boundedTo(room));

    connect(back, &QPushButton::clicked, this, [this] { showStep(introduction); });
    connect(forward, &QPushButton::clicked, this, [this] {
        if (current == introduction)
            showStep(choice);
        else
            accept();
    });
    connect(connectButton, &QPushButton::clicked, this, [this] { connectToCanvas(); });
    connect(sampleButton, &QPushButton::clicked, this, &WelcomeWindow::sampleRequested);
    const bool isUnderWay = defaults.value(preferences::onboardingStep) == choice;
    showStep(isUnderWay ? choice : introduction);
}

bool WelcomeWindow::isDue(const UserDefaults &defaults, bool connected) {
    return !connected && !defaults.value(preferences::sampleData) &&
        defaults.value(preferences::onboardingStep) < finished;
}

// ---- Pages -------------------------------------------------------------------------------------

QLabel *WelcomeWindow::makeText(const QString &text) {
    auto *label = plainLabel(this, true);
    label->setText(text);
    return label;
}

QWidget *WelcomeWindow::makePage(const QString &title, const std::vector<QWidget *> &contents) {
    auto *page = new QWidget;
    page->setObjectName(QStringLiteral("plain"));
    auto *heading = makeText(title);
    auto *column = new QVBoxLayout(page);
    column->addWidget(heading);
    for (QWidget *each : contents)
        column->addWidget(each);
    column->addStretch(1);
    const auto size = [this, heading, column] {
        const int margin = appearance.px(24);
        column->setContentsMargins(margin, margin, margin, margin);
        column->setSpacing(appearance.px(12));
        heading->setFont(appearance.font(1.5, QFont::Bold));
    };
    connect(&appearance, &Appearance::changed, page, size);
    size();
    // Large text needs more room than a small screen has.
    auto *scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setAccessibleName(title);
    scroll->setWidget(page);
    return scroll;
}

QWidget *WelcomeWindow::makeCard(const QString &title, const std::vector<QWidget *> &contents) {
    auto *card = new QFrame;
    card->setObjectName(QStringLiteral("card"));
    card->setAccessibleName(title);
    auto *heading = makeText(title);
    auto *column = new QVBoxLayout(card);
    column->addWidget(heading);
    for (QWidget *each : contents)
        column->addWidget(each);
    const auto size = [this, heading, column] {
        const int inset = appearance.px(16);
        column->setContentsMargins(inset, inset, inset, inset);
        column->setSpacing(appearance.px(9));
        heading->setFont(appearance.font(1.1, QFont::DemiBold));
    };
    connect(&appearance, &Appearance::changed, card, size);
    size();
    return card;
}

QWidget *WelcomeWindow::makeList(const std::vector<QString> &items) {
    auto *list = new QWidget;
    auto *rows = new QGridLayout(list);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setColumnStretch(1, 1);
    for (const QString &item : items) {
        const int row = rows->rowCount();
        rows->addWidget(makeText(QStringLiteral("•")), row, 0, Qt::AlignTop);
        rows->addWidget(makeText(item), row, 1);
    }
    return list;
}

QWidget *WelcomeWindow::makeIntroduction() {
    auto *picture = new QLabel;
    picture->setAccessibleName(QStringLiteral("The icon of Ellwynd"));
    const auto size = [this, picture] {
        const int side = appearance.px(iconSize);
        picture->setPixmap(applicationIcon().pixmap(QSize(side, side), devicePixelRatioF()));
    };
    connect(&appearance, &Appearance::changed, picture, size);
    size();
    std::vector<QString> promises;
    for (const std::string_view promise : about::promises())
        promises.push_back(qstring(promise));
    return makePage(
        windowTitle(),
        {besideEachOther(picture, makeText(qstring(about::purpose))),
         makeCard(
             QStringLiteral("What it looks at"),
             {makeList(
                 {QStringLiteral("Missing work, by its share of the final grade."),
                  QStringLiteral("The current score, against your passing score."),
                  QStringLiteral("Time in the course, against the rest of the class."),
                  QStringLiteral("Days without activity, against how quiet the class is."),
                  QStringLiteral("Work that is past due and not handed in.")})}),
         makeCard(QStringLiteral("What it never does"), {makeList(promises)})});
}

QWidget *WelcomeWindow::makeChoice() {
    const ConnectionState state = check.state();
    address->setText(qstring(state.address));
    address->setPlaceholderText(QStringLiteral("https://canvas.example.edu"));
    address->setAccessibleName(QStringLiteral("Canvas address"));
    token->setEchoMode(QLineEdit::Password);
    token->setPlaceholderText(qstring(state.placeholder));
    token->setAccessibleName(QStringLiteral("Access token"));
    // Nobody can tell whether a token is saved, so none is asked for.
    token->setEnabled(!state.keychainUnavailable);
    say(state.status);
    progress->setRange(0, 0);
    progress->setTextVisible(false);
    progress->setAccessibleName(QStringLiteral("Checking the connection"));
    progress->hide();
    auto *page = new TextLink(QStringLiteral("Open the page where access tokens are created"));
    connect(page, &TextLink::pressed, this, &WelcomeWindow::openTokenPage);

    auto *addressLabel = makeText(QStringLiteral("Canvas address"));
    addressLabel->setBuddy(address);
    auto *tokenLabel = makeText(QStringLiteral("Access token"));
    tokenLabel->setBuddy(token);
    return makePage(
        QStringLiteral("Choose where to begin"),
        {makeCard(
             QStringLiteral("Connect to Canvas"),
             {makeText(QStringLiteral(
                  "Enter the address you use to sign in to Canvas, and an access token, which lets "
                  "Ellwynd read Canvas as you without your password.")),
              addressLabel, address, tokenLabel, token, page, status, progress,
              leftAligned(connectButton)}),
         makeCard(
             QStringLiteral("Look around first"),
             {makeText(QStringLiteral(
                  "The sample college is invented: made-up courses and students, scored exactly as "
                  "real ones are. It needs no account, and you can leave it whenever you like.")),
              leftAligned(sampleButton)})});
}

QWidget *WelcomeWindow::makeEnd() {
    connectedAs->setProperty("secondary", true);
    return makePage(
        QStringLiteral("You are connected"),
        {connectedAs,
         makeCard(
             QStringLiteral("What comes next"),
             {makeList(
                 {QStringLiteral("Ellwynd is reading your courses. Open one at the left: the "
                                 "students who need attention stand on top, and each reason is a "
                                 "sentence."),
                  QStringLiteral("Students are scored against a passing score and an inactivity "
                                 "window. Set them for every course in Settings, or for one course "
                                 "in its header."),
                  QStringLiteral("From the second day on, Ellwynd can tell you who slipped and who "
                                 "improved since your last visit. Settings says what it remembers, "
                                 "and forgets it when you ask.")})})});
}

// ---- Steps -------------------------------------------------------------------------------------

void WelcomeWindow::showStep(Step step) {
    static_assert(std::int64_t(finished) == preferences::onboardingStep.row->range.maximum);
    current = step;
    // Whoever looks at it again after the end is not asked again at the next start.
    if (defaults.value(preferences::onboardingStep) < finished)
        defaults.set(preferences::onboardingStep, std::int64_t(step));
    dots->setStep(int(step));
    pages->setCurrentIndex(int(step) - 1);
    back->setVisible(step == choice);
    forward->setVisible(step != choice);
    forward->setText(step == finished ? QStringLiteral("Done") : QStringLiteral("Continue"));
    (step == choice ? connectButton : forward)->setDefault(true);
    if (step != choice)
        forward->setFocus();
    else if (address->text().isEmpty() || !token->isEnabled())
        address->setFocus();
    else
        token->setFocus();
}

void WelcomeWindow::say(const std::string &text, bool failed) {
    showStatus(*status, qstring(text), failed);
}

void WelcomeWindow::showChecking(bool isChecking) {
    // What is being checked is what will be saved.
    address->setReadOnly(isChecking);
    token->setReadOnly(isChecking);
    connectButton->setEnabled(!isChecking);
    back->setEnabled(!isChecking);
    sampleButton->setEnabled(!isChecking);
    progress->setVisible(isChecking);
}

QCoro::Task<> WelcomeWindow::connectToCanvas() {
    const QPointer<WelcomeWindow> self(this);
    const std::string typedAddress = address->text().toStdString();
    const std::string typedToken = token->text().toStdString();
    const QPointer<QWidget> focused(focusWidget());
    showChecking(true);
    say("Checking " + address->text().trimmed().toStdString() + "…");
    auto testing = check.test(typedAddress, typedToken);
    const ConnectionOutcome tested = co_await testing;
    // A window that was closed meanwhile has changed its mind.
    if (!self || !isVisible())
        co_return;
    showChecking(false);
    const ConnectionOutcome outcome =
        tested.succeeded ? check.save(typedAddress, typedToken) : tested;
    if (!outcome.succeeded) {
        say(outcome.status, true);
        if (focused)
            focused->setFocus();
        Q_EMIT announced(QStringLiteral("Connection test failed. ") + qstring(outcome.status));
        co_return;
    }
    token->clear();
    connectedAs->setText(qstring(tested.status));
    showStep(finished);
    Q_EMIT announced(QStringLiteral("Connection test succeeded. ") + qstring(tested.status));
    Q_EMIT connectionDidChange();
}

void WelcomeWindow::openTokenPage() {
    if (const auto page = ConnectionCheck::tokenPage(address->text().toStdString()))
        QDesktopServices::openUrl(QUrl(qstring(*page)));
    else
        say(std::string(tokenPageNeedsAddress), true);
}

} // namespace ellwynd
