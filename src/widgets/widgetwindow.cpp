#include "widgets/widgetwindow.h"

#include "uikit/convert.h"
#include "uikit/labels.h"
#include "widgets/courserow.h"
#include "widgets/summaryview.h"
#include "widgets/termbutton.h"
#include "widgets/widgetlayout.h"
#include "widgets/windowdrag.h"

#include <QActionGroup>
#include <QContextMenuEvent>
#include <QPainter>
#include <QScreen>

namespace ellwynd {

namespace {

QLabel *cardLabel(QWidget *card) {
    QLabel *label = plainLabel(card);
    // The card can be dragged by its labels too.
    label->setAttribute(Qt::WA_TransparentForMouseEvents);
    return label;
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
    const PlacedWidget &state, const VisualStyle &visualStyle, const UserDefaults &defaults)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint),
      state(state),
      visualStyle(visualStyle),
      defaults(defaults),
      dragging(new WindowDrag(*this)),
      title(new TermButton(this)),
      asOf(cardLabel(this)),
      message(cardLabel(this)),
      more(cardLabel(this)),
      summary(new SummaryView(this)) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_QuitOnClose, false);
    summary->setAttribute(Qt::WA_TransparentForMouseEvents);
    message->setWordWrap(true);
    message->setAlignment(Qt::AlignCenter);
    dragging->addHandle(*title);
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
    setFixedSize(
        WidgetLayout::cardSize(state.size, visualStyle).boundedTo(screen()->availableSize()));
    fill(widgetContent(file, state.termID, cardLayout().rowCapacity(), now));
    arrange();
    update();
}

void WidgetWindow::fill(const WidgetContent &content) {
    shown = content;
    const bool empty = !content.message.empty();
    const bool large = state.size == WidgetSize::large;
    message->setVisible(empty);
    message->setText(qstring(content.message));
    title->setVisible(!empty);
    title->present(qstring(content.title), visualStyle);
    asOf->setVisible(!empty);
    asOf->setText(qstring(content.asOf));
    summary->setVisible(!empty);
    summary->present(content, visualStyle, large);
    more->setText(qstring(content.more));
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
    message->setFont(visualStyle.font(1.05));
    message->setGeometry(layout.inner());
    asOf->setFont(visualStyle.font(0.86));
    // Text with a day needs two lines on a small card.
    asOf->setWordWrap(small);
    asOf->setAlignment(small ? Qt::AlignLeft | Qt::AlignBottom : Qt::AlignRight | Qt::AlignVCenter);
    const int asOfWidth = asOf->sizeHint().width();
    asOf->setGeometry(layout.asOf(asOfWidth));
    title->setGeometry(layout.title(title->sizeHint().width(), asOfWidth));
    summary->setGeometry(layout.summary());
    more->setFont(visualStyle.font(0.86));
    more->setGeometry(layout.footer());
    QWidget *before = title;
    for (std::size_t i = 0; i < rowPool.size(); ++i) {
        rowPool[i]->setGeometry(layout.row(i));
        setTabOrder(before, rowPool[i]);
        before = rowPool[i];
    }
    for (QLabel *label : {asOf, more, message}) {
        QPalette colors = label->palette();
        colors.setColor(QPalette::WindowText, visualStyle.theme.secondaryText);
        label->setPalette(colors);
    }
}

void WidgetWindow::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(visualStyle.theme.outline);
    painter.setBrush(visualStyle.theme.window);
    painter.drawRoundedRect(
        QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), visualStyle.px(14), visualStyle.px(14));
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
    Q_EMIT placeDidChange();
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
