#include "widgets/widgetwindow.h"

#include "uikit/convert.h"
#include "uikit/labels.h"
#include "widgets/cardplaces.h"
#include "widgets/courserow.h"
#include "widgets/desktop/desktoplayer.h"
#include "widgets/summaryview.h"
#include "widgets/termbutton.h"
#include "widgets/textbutton.h"
#include "widgets/widgetlayout.h"
#include "widgets/windowdrag.h"

#include <QActionGroup>
#include <QContextMenuEvent>
#include <QPainter>

namespace ellwynd {

namespace {

QLabel *cardLabel(QWidget *card) {
    QLabel *label = plainLabel(card);
    // The card can be dragged by its labels too.
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    return label;
}

/// A window of the type desktop, which a card is while the desktop is shown, is not moved by window
/// managers.
bool moveWithPointer(QWidget &card) {
    return !card.testAttribute(Qt::WA_X11NetWmWindowTypeDesktop) &&
        WindowDrag::startSystemMove(card);
}

/// A term's name for a menu, elided if too long.
QString termText(const std::string &name, const QFontMetrics &metrics) {
    constexpr int maxCharacters = 36;
    const QString shown = metrics.elidedText(
        qstring(name), Qt::ElideRight, maxCharacters * metrics.averageCharWidth());
    return menuText(shown.toStdString());
}

} // namespace

WidgetWindow::WidgetWindow(
    const PlacedWidget &state, const VisualStyle &visualStyle, const UserDefaults &defaults,
    DesktopLayer &layer)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint),
      state(state),
      visualStyle(visualStyle),
      defaults(defaults),
      layer(layer),
      dragging(new WindowDrag(*this, moveWithPointer)),
      title(new TermButton(this)),
      asOf(cardLabel(this)),
      message(new TextButton(Qt::AlignCenter | Qt::TextWordWrap, this)),
      more(new TextButton(Qt::AlignLeft | Qt::AlignVCenter, this)),
      summary(new SummaryView(this)) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    // The cards of a session that starts do not take the keyboard from other programs.
    setAttribute(Qt::WA_ShowWithoutActivating);
    dragging->addHandle(*title);
    for (QAbstractButton *opener :
         {static_cast<QAbstractButton *>(summary), static_cast<QAbstractButton *>(message),
          static_cast<QAbstractButton *>(more)}) {
        dragging->addHandle(*opener);
        connect(opener, &QAbstractButton::clicked, this, [this] { Q_EMIT linkRequested({}); });
    }
    if (layer.movesOnRelease()) {
        dragging->moveOnRelease([this](QPoint distance) {
            if (const auto place = this->layer.placeOf(*this))
                this->layer.move(*this, *place + distance);
            storePlace();
        });
    }
    // No control shows a focus ring before the keyboard is used.
    setFocus();
    connect(title, &TermButton::clicked, this, [this] {
        QMenu *menu = makeTermMenu(this);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(title->mapToGlobal(QPoint(0, title->height())));
    });
}

void WidgetWindow::present(
    const std::optional<WidgetSnapshotFile> &file, const VisualStyle &newStyle, Date now) {
    visualStyle = newStyle;
    terms = widgetTermQuery(file);
    fitScreen();
    fill(widgetContent(file, state.termID, cardLayout().rowCapacity(), now));
    arrange();
    update();
}

void WidgetWindow::showFailure(const QString &what) {
    fill({.message = what.toStdString()});
    arrange();
    update();
}

void WidgetWindow::fitScreen() {
    setFixedSize(
        shownFrame(state.place, WidgetLayout::cardSize(state.size, visualStyle), connectedScreens())
            .size());
}

void WidgetWindow::putOnScreen() {
    dragging->end();
    fitScreen();
    if (state.place && layer.knowsPlaces())
        layer.move(*this, shownFrame(state.place, size(), connectedScreens()).topLeft());
}

void WidgetWindow::reshow() {
    const auto place = layer.placeOf(*this);
    hide();
    if (place)
        layer.move(*this, *place);
    show();
}

void WidgetWindow::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    // The window system only restored it.
    if (event->spontaneous())
        return;
    layer.prepare(*this);
    // The window is shown after this event.
    QMetaObject::invokeMethod(
        this,
        [this] {
            if (isVisible())
                layer.didShow(*this);
        },
        Qt::QueuedConnection);
}

/// Stores where the window is, unless it is there only because its screen is not connected.
void WidgetWindow::storePlace() {
    const auto place = layer.placeOf(*this);
    const bool isElsewhere = state.place && !isOnScreen(*state.place, size(), connectedScreens());
    if (!place || (isElsewhere && !dragging->isActive()))
        return;
    state.place = place;
    Q_EMIT placeDidChange();
}

void WidgetWindow::fill(const WidgetContent &content) {
    shown = content;
    const bool empty = !content.message.empty();
    const bool large = state.size == WidgetSize::large;
    message->setVisible(empty);
    message->present(qstring(content.message), visualStyle, 1.05);
    title->setVisible(!empty);
    title->present(qstring(content.title), visualStyle);
    asOf->setVisible(!empty);
    asOf->setText(qstring(content.asOf));
    summary->setVisible(!empty);
    summary->present(content, visualStyle, large);
    more->present(qstring(content.more), visualStyle, 0.86);
    more->setVisible(!content.more.empty() && state.size != WidgetSize::small);
    setWindowTitle(
        empty ? QStringLiteral("Ellwynd") : qstring(content.title) + QStringLiteral(" — Ellwynd"));
    setAccessibleName(qstring(empty ? content.message : content.headline));

    while (rowPool.size() < content.rows.size()) {
        auto *row = new CourseRow(this);
        dragging->addHandle(*row);
        connect(row, &CourseRow::clicked, this, [this, row] {
            Q_EMIT linkRequested(qstring(row->row().link));
        });
        rowPool.push_back(row);
    }
    for (std::size_t i = 0; i < rowPool.size(); ++i) {
        const bool used = i < content.rows.size();
        if (used)
            rowPool[i]->present(content.rows[i], tileIcon(content.rows[i]), visualStyle, large);
        rowPool[i]->setVisible(used);
    }
}

/// If names are hidden, the chosen glyph is too, since it would reveal the subject.
CourseIcon WidgetWindow::tileIcon(const WidgetRow &row) const {
    CourseIcon icon = courseIcon(defaults, row.courseID);
    if (row.nameHidden)
        icon.icon.clear();
    return icon;
}

std::vector<CourseRow *> WidgetWindow::rows() const {
    return {rowPool.begin(), rowPool.begin() + std::ptrdiff_t(shown.rows.size())};
}

WidgetLayout WidgetWindow::cardLayout() const {
    return {state.size, size(), visualStyle};
}

void WidgetWindow::arrange() {
    const WidgetLayout layout = cardLayout();
    const bool small = state.size == WidgetSize::small;
    message->setGeometry(layout.inner());
    asOf->setFont(visualStyle.font(0.86));
    // Text with a day needs two lines on a small card.
    asOf->setWordWrap(small);
    asOf->setAlignment(small ? Qt::AlignLeft | Qt::AlignBottom : Qt::AlignRight | Qt::AlignVCenter);
    const int asOfWidth = asOf->sizeHint().width();
    asOf->setGeometry(layout.asOf(asOfWidth));
    title->setGeometry(layout.title(title->sizeHint().width(), asOfWidth));
    const int ring = summary->outset();
    summary->setGeometry(layout.summary().adjusted(-ring, -ring, ring, ring));
    more->setGeometry(layout.footer());
    setTabOrder(title, summary);
    QWidget *before = summary;
    for (std::size_t i = 0; i < rowPool.size(); ++i) {
        rowPool[i]->setGeometry(layout.row(i));
        setTabOrder(before, rowPool[i]);
        before = rowPool[i];
    }
    setTabOrder(before, more);
    cutCorners();
    QPalette colors = asOf->palette();
    colors.setColor(QPalette::WindowText, visualStyle.theme.secondaryText);
    asOf->setPalette(colors);
}

QPainterPath WidgetWindow::outline(double inset) const {
    QPainterPath path;
    path.addRoundedRect(
        QRectF(rect()).adjusted(inset, inset, -inset, -inset), visualStyle.px(14),
        visualStyle.px(14));
    return path;
}

/// Gives the window itself round corners where it cannot be transparent.
void WidgetWindow::cutCorners() {
    if (layer.isComposited())
        clearMask();
    else
        setMask(QRegion(outline(0).toFillPolygon().toPolygon()));
}

void WidgetWindow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!mask().isEmpty())
        painter.fillRect(rect(), visualStyle.theme.outline);
    painter.setPen(visualStyle.theme.outline);
    painter.setBrush(visualStyle.theme.window);
    // The middle of a line of one pixel.
    painter.drawPath(outline(0.5));
    if (const auto line = cardLayout().separator(); line && shown.message.empty()) {
        painter.setPen(visualStyle.theme.separator);
        painter.drawLine(*line);
    }
}

QMenu *WidgetWindow::makeTermMenu(QWidget *parent) {
    const auto isShown = [this](const WidgetTermEntity &term) { return term.id == state.termID; };
    const bool chosen = std::ranges::any_of(terms, isShown);
    auto *menu = new QMenu(qstring(widgetTermParameter), parent);
    auto *group = new QActionGroup(menu);
    for (const WidgetTermEntity &term : terms) {
        QAction *action = menu->addAction(
            termText(term.title, menu->fontMetrics()), this, [this, id = term.id] { setTerm(id); });
        action->setCheckable(true);
        // A chosen term that is no longer listed falls back to "Automatic".
        action->setChecked(chosen ? isShown(term) : !term.id);
        group->addAction(action);
    }
    return menu;
}

QMenu *WidgetWindow::makeMenu() {
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Open Ellwynd"), this, [this] { Q_EMIT linkRequested({}); });
    menu->addSeparator();
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
    storePlace();
}

void WidgetWindow::closeEvent(QCloseEvent *event) {
    QWidget::closeEvent(event);
    if (event->spontaneous())
        Q_EMIT windowDidClose();
}

void WidgetWindow::contextMenuEvent(QContextMenuEvent *event) {
    makeMenu()->popup(event->globalPos());
}

} // namespace ellwynd
