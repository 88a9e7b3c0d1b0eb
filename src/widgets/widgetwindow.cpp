#include "widgets/widgetwindow.h"

#include "widgets/courserow.h"
#include "widgets/summaryview.h"
#include "widgets/termbutton.h"

#include <QActionGroup>
#include <QApplication>
#include <QContextMenuEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QScreen>
#include <QWindow>

namespace ellwynd {

namespace {

// Lengths at text scale 1.
constexpr double padding = 16;
constexpr double headerHeight = 22;
constexpr double headerGap = 8;
constexpr double summaryWidth = 152;
constexpr double summaryHeight = 114;
constexpr double summaryHeightWide = 78;
constexpr double footerHeight = 18;
constexpr double columnGap = 14;
/// Around the line between the figures and the rows.
constexpr double bandGap = 20;
/// What a row's hover and focus reach beyond its text.
constexpr double outset = 6;

QSizeF cardSizeOf(WidgetSize size) {
    switch (size) {
    case WidgetSize::small:
        return {184, 210};
    case WidgetSize::medium:
        return {452, 210};
    case WidgetSize::large:
        break;
    }
    return {452, 450};
}

double rowHeight(WidgetSize size) {
    return size == WidgetSize::medium ? 40 : 45;
}

QLabel *plainLabel(QWidget *parent) {
    auto *label = new QLabel(parent);
    label->setTextFormat(Qt::PlainText);
    // The card is dragged by its texts too.
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    return label;
}

/// A name in a menu, where "&" marks a shortcut's letter.
QString menuText(const std::string &name, const QFontMetrics &metrics) {
    constexpr int longest = 36;
    QString text = metrics.elidedText(
        QString::fromStdString(name), Qt::ElideRight, longest * metrics.averageCharWidth());
    return text.replace(u'&', QStringLiteral("&&"));
}

} // namespace

WidgetWindow::WidgetWindow(
    const PlacedWidget &placed, const Look &newLook, const UserDefaults &preferences)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint),
      state(placed),
      look(newLook),
      defaults(preferences),
      title(new TermButton(this)),
      asOf(plainLabel(this)),
      message(plainLabel(this)),
      more(plainLabel(this)),
      summary(new SummaryView(this)) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    summary->setAttribute(Qt::WA_TransparentForMouseEvents);
    message->setWordWrap(true);
    message->setAlignment(Qt::AlignCenter);
    title->installEventFilter(this);
    // No part is marked before the keyboard is used.
    setFocus();
    connect(title, &TermButton::clicked, this, [this] {
        QMenu *menu = makeTermMenu(this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(title->mapToGlobal(QPoint(0, title->height())));
    });
}

void WidgetWindow::present(
    const std::optional<WidgetSnapshotFile> &file, const Look &newLook, Date now) {
    look = newLook;
    terms = widgetTermQuery(file);
    setFixedSize(cardSize());
    fill(widgetContent(file, state.termID, room(), now));
    arrange();
    update();
}

void WidgetWindow::fill(const WidgetContent &content) {
    shown = content;
    const bool empty = !content.message.empty();
    const bool large = state.size == WidgetSize::large;
    message->setVisible(empty);
    message->setText(QString::fromStdString(content.message));
    title->setVisible(!empty);
    title->present(QString::fromStdString(content.title), look);
    asOf->setVisible(!empty);
    asOf->setText(QString::fromStdString(content.asOf));
    summary->setVisible(!empty);
    summary->present(content, look, large);
    more->setText(QString::fromStdString(content.more));
    more->setVisible(!content.more.empty() && state.size != WidgetSize::small);
    setWindowTitle(
        empty ? QStringLiteral("Ellwynd")
              : QString::fromStdString(content.title) + QStringLiteral(" — Ellwynd"));
    setAccessibleName(QString::fromStdString(empty ? content.message : content.headline));

    while (rowPool.size() < content.rows.size()) {
        auto *row = new CourseRow(this);
        row->installEventFilter(this);
        connect(row, &CourseRow::clicked, this, [this, row] {
            Q_EMIT linkActivated(QString::fromStdString(row->row().link));
        });
        rowPool.push_back(row);
    }
    for (std::size_t i = 0; i < rowPool.size(); ++i) {
        const bool used = i < content.rows.size();
        if (used)
            rowPool[i]->present(content.rows[i], tileIcon(content.rows[i]), look, large);
        rowPool[i]->setVisible(used);
    }
}

/// Where names are hidden a drawing would tell the subject.
CourseIcon WidgetWindow::tileIcon(const WidgetRow &row) const {
    CourseIcon icon = courseIcon(defaults, row.courseID);
    if (row.nameHidden)
        icon.icon.clear();
    return icon;
}

std::vector<CourseRow *> WidgetWindow::rows() const {
    return {rowPool.begin(), rowPool.begin() + std::ptrdiff_t(shown.rows.size())};
}

QSize WidgetWindow::cardSize() const {
    const QSizeF size = cardSizeOf(state.size);
    const QSize wanted(look.px(size.width()), look.px(size.height()));
    return wanted.boundedTo(screen()->availableSize());
}

QRect WidgetWindow::rowsRect() const {
    const int pad = look.px(padding);
    const int top = pad + look.px(headerHeight + headerGap);
    QRect area(pad, top, width() - 2 * pad, height() - top - pad);
    if (state.size == WidgetSize::medium)
        area.setLeft(area.left() + look.px(summaryWidth + columnGap));
    else
        area.setTop(area.top() + look.px(summaryHeightWide + bandGap));
    return area.adjusted(-look.px(outset), 0, look.px(outset), 0);
}

std::size_t WidgetWindow::room() const {
    if (state.size == WidgetSize::small)
        return 0;
    const int free = rowsRect().height() - look.px(footerHeight);
    return std::size_t(std::max(0, free / look.px(rowHeight(state.size))));
}

void WidgetWindow::arrange() {
    const int pad = look.px(padding);
    const int header = look.px(headerHeight);
    const bool small = state.size == WidgetSize::small;
    const QRect inner = rect().adjusted(pad, pad, -pad, -pad);
    message->setFont(look.font(1.05));
    message->setGeometry(inner);

    const int top = inner.top() + header + look.px(headerGap);
    asOf->setFont(look.font(0.86));
    // With a day it takes two lines of a small card.
    asOf->setWordWrap(small);
    asOf->setAlignment(small ? Qt::AlignLeft | Qt::AlignBottom : Qt::AlignRight | Qt::AlignVCenter);
    const int asOfWidth = asOf->sizeHint().width();
    if (small)
        asOf->setGeometry(inner.adjusted(0, top - inner.top() + look.px(summaryHeight), 0, 0));
    else
        asOf->setGeometry(inner.right() + 1 - asOfWidth, inner.top(), asOfWidth, header);
    const int titleRoom = small ? inner.width() : inner.width() - asOfWidth - look.px(columnGap);
    const int inset = look.px(4);
    title->setGeometry(
        inner.left() - inset, inner.top(), std::min(title->sizeHint().width(), titleRoom + inset),
        header);

    if (state.size == WidgetSize::large)
        summary->setGeometry(inner.left(), top, inner.width(), look.px(summaryHeightWide));
    else
        summary->setGeometry(inner.left(), top, look.px(summaryWidth), look.px(summaryHeight));

    QRect row = rowsRect();
    more->setFont(look.font(0.86));
    more->setGeometry(
        row.left() + look.px(outset), row.bottom() + 1 - look.px(footerHeight), row.width(),
        look.px(footerHeight));
    row.setHeight(look.px(rowHeight(state.size)));
    QWidget *before = title;
    for (CourseRow *each : rowPool) {
        each->setGeometry(row);
        row.translate(0, row.height());
        setTabOrder(before, each);
        before = each;
    }
    for (QLabel *label : {asOf, more, message}) {
        QPalette colors = label->palette();
        colors.setColor(QPalette::WindowText, look.theme.secondaryText);
        label->setPalette(colors);
    }
}

void WidgetWindow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(look.theme.outline);
    painter.setBrush(look.theme.window);
    painter.drawRoundedRect(
        QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), look.px(14), look.px(14));
    if (state.size == WidgetSize::large && shown.message.empty()) {
        const int y = rowsRect().top() - look.px(bandGap / 2);
        painter.setPen(look.theme.separator);
        painter.drawLine(look.px(padding), y, width() - look.px(padding), y);
    }
}

QMenu *WidgetWindow::makeTermMenu(QWidget *parent) {
    const auto isShown = [this](const WidgetTermEntity &term) { return term.id == state.termID; };
    const bool chosen = std::ranges::any_of(terms, isShown);
    auto *menu = new QMenu(
        QString::fromUtf8(widgetTermParameter.data(), qsizetype(widgetTermParameter.size())),
        parent);
    auto *group = new QActionGroup(menu);
    for (const WidgetTermEntity &term : terms) {
        QAction *action = menu->addAction(
            menuText(term.title, menu->fontMetrics()), this, [this, id = term.id] { setTerm(id); });
        action->setCheckable(true);
        // A choice that aged out shows the automatic term, and says so.
        action->setChecked(chosen ? isShown(term) : !term.id);
        group->addAction(action);
    }
    return menu;
}

QMenu *WidgetWindow::makeMenu() {
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addMenu(makeTermMenu(menu));
    QMenu *sizes = menu->addMenu(tr("Size"));
    auto *group = new QActionGroup(menu);
    for (const auto &[name, size] :
         {std::pair(tr("Small"), WidgetSize::small), std::pair(tr("Medium"), WidgetSize::medium),
          std::pair(tr("Large"), WidgetSize::large)}) {
        QAction *action = sizes->addAction(name, this, [this, size = size] { setSize(size); });
        action->setCheckable(true);
        action->setChecked(size == state.size);
        group->addAction(action);
    }
    menu->addSeparator();
    menu->addAction(tr("Add Another Widget"), this, &WidgetWindow::addRequested);
    menu->addAction(tr("Remove Widget"), this, &WidgetWindow::removeRequested);
    menu->addSeparator();
    menu->addAction(tr("Quit"), this, &WidgetWindow::quitRequested);
    return menu;
}

void WidgetWindow::setTerm(const std::optional<std::int64_t> &termID) {
    state.termID = termID;
    Q_EMIT choiceDidChange();
}

void WidgetWindow::setSize(WidgetSize size) {
    state.size = size;
    Q_EMIT choiceDidChange();
}

void WidgetWindow::moveEvent(QMoveEvent *event) {
    QWidget::moveEvent(event);
    state.place = pos();
    Q_EMIT moved();
}

void WidgetWindow::closeEvent(QCloseEvent *event) {
    QWidget::closeEvent(event);
    // The program closes its windows as it quits; those stay on the desktop for the next time.
    if (event->spontaneous())
        Q_EMIT removeRequested();
}

void WidgetWindow::contextMenuEvent(QContextMenuEvent *event) {
    makeMenu()->popup(event->globalPos());
}

bool WidgetWindow::drag(const QMouseEvent &event) {
    const QPoint pointer = event.globalPosition().toPoint();
    if (grip) {
        move(pointer - *grip);
        return true;
    }
    if (!pressedAt || !event.buttons().testFlag(Qt::LeftButton) ||
        (pointer - *pressedAt).manhattanLength() < QApplication::startDragDistance())
        return false;
    // Where the window system moves windows itself, it takes the pointer from here on.
    if (!windowHandle()->startSystemMove())
        grip = *pressedAt - pos();
    pressedAt.reset();
    return true;
}

void WidgetWindow::mousePressEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton)
        pressedAt = event->globalPosition().toPoint();
}

void WidgetWindow::mouseMoveEvent(QMouseEvent *event) {
    drag(*event);
}

void WidgetWindow::mouseReleaseEvent(QMouseEvent *) {
    endDrag();
}

void WidgetWindow::endDrag() {
    pressedAt.reset();
    grip.reset();
}

bool WidgetWindow::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        mousePressEvent(static_cast<QMouseEvent *>(event));
        break;
    case QEvent::MouseMove:
        if (drag(*static_cast<QMouseEvent *>(event))) {
            // A drag that began on a button is no click.
            static_cast<QAbstractButton *>(watched)->setDown(false);
            return true;
        }
        break;
    case QEvent::MouseButtonRelease:
        endDrag();
        break;
    default:
        break;
    }
    return false;
}

} // namespace ellwynd
