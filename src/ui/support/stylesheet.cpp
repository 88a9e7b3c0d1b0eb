#include "ui/support/stylesheet.h"

#include "ui/support/appearance.h"

#include <QHash>
#include <QRegularExpression>

namespace ellwynd {

namespace {

// "@name" is a colour of the theme, "$n" a length at text scale 1.
constexpr auto source = R"(
QMainWindow, QDialog { background: @window; }
QToolTip { background: @surface; color: @text; border: 1px solid @outline; padding: $4; }

QMenuBar { background: @sidebar; border-bottom: 1px solid @separator; padding: 1px $4; }
QMenuBar::item { padding: $4 $8; border-radius: 4px; background: transparent; }
QMenuBar::item:selected { background: @controlPressed; }
QMenu { background: @control; border: 1px solid @outline; padding: $4; }
QMenu::item { padding: $5 $28 $5 $24; border-radius: 4px; }
QMenu::item:selected { background: @accent; color: @accentText; }
QMenu::item:disabled { color: @disabledText; }
QMenu::separator { height: 1px; background: @separator; margin: $4 $6; }

QPushButton {
    background: @control; color: @text; border: 1px solid @outline; border-radius: 6px;
    padding: $5 $12; min-height: $16;
}
QPushButton:hover { background: @controlHover; }
QPushButton:pressed { background: @controlPressed; }
QPushButton:disabled { color: @disabledText; border-color: @separator; }
QPushButton:focus { border: 2px solid @accent; padding: $4 $11; }
QPushButton:default { background: @accent; color: @accentText; border-color: @accent; }
QPushButton:default:focus { border: 2px solid @text; }
QPushButton::menu-indicator { image: none; width: 0; }
QPushButton[quiet="true"] { padding: $5 $8; }
QPushButton[chip="true"] { border-radius: $10; padding: $2 $8; min-height: $16; }
QPushButton[chip="true"]:checked { background: @selection; border-color: @accent; }
QPushButton[chip="true"]:focus { border: 2px solid @accent; padding: $1 $7; }
QPushButton[tight="true"] { padding: $4 $6; }
QPushButton[tight="true"]:focus { padding: $3 $5; }
QPushButton[primary="true"] { background: @accent; color: @accentText; border-color: @accent; }
QPushButton[primary="true"]:focus { border: 2px solid @text; }
QPushButton:default:disabled, QPushButton[primary="true"]:disabled {
    background: @surface; color: @disabledText; border-color: @separator;
}

QLineEdit {
    background: @control; color: @text; border: 1px solid @outline; border-radius: 6px;
    padding: $4 $8; min-height: $18; selection-background-color: @accent;
    selection-color: @accentText;
}
QLineEdit:focus { border: 2px solid @accent; padding: $3 $7; }

QPlainTextEdit {
    background: @control; color: @text; border: 1px solid @outline; border-radius: 6px;
    padding: $3 $4; selection-background-color: @accent; selection-color: @accentText;
}
QPlainTextEdit:focus { border: 2px solid @accent; padding: $2 $3; }
QPlainTextEdit[readOnly="true"] { background: @surface; }

QTableView, QTreeView, QListView#students { border: none; background: @window; outline: none; }
QTableView { gridline-color: @separator; }
QTreeView#sidebar { background: @sidebar; selection-background-color: transparent; }
QHeaderView { background: @surface; }
QHeaderView::section {
    background: @surface; color: @secondaryText; border: none;
    border-bottom: 1px solid @separator; padding: $5 $10; font-weight: 600;
}
QTableView#roster QHeaderView::section:first { padding-left: $18; }
QTableCornerButton::section { background: @surface; border: none; border-bottom: 1px solid @separator; }
QHeaderView::section:hover { color: @text; }
QHeaderView::section:focus { color: @text; }

QSplitter::handle { background: @separator; }
QSplitter::handle:horizontal { width: 1px; }
QScrollArea, QScrollArea > QWidget > QWidget#plain { background: transparent; border: none; }
QScrollBar:vertical { background: transparent; width: 10px; margin: 1px; }
QScrollBar:horizontal { background: transparent; height: 10px; margin: 1px; }
QScrollBar::handle { background: @outline; border-radius: 4px; min-height: 28px; min-width: 28px; }
QScrollBar::handle:hover { background: @secondaryText; }
QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }
QScrollBar::add-page, QScrollBar::sub-page { background: transparent; }

QListWidget#settingsPages { background: @sidebar; border: none; border-right: 1px solid @separator; padding: $8; outline: none; }
QListWidget#settingsPages::item { border-radius: 6px; padding-left: $8; color: @text; }
QListWidget#settingsPages::item:selected { background: @selection; color: @text; }
QWidget#helpSide { background: @sidebar; border-right: 1px solid @separator; }
QListWidget#helpTopics { background: transparent; border: none; outline: none; }
QTextBrowser#markdownPage { background: @window; color: @text; border: none; selection-background-color: @accent; selection-color: @accentText; }
QListWidget#templates, QListWidget#courses, QListView#writeStudents { background: @control; border: 1px solid @outline; border-radius: 6px; padding: $3; outline: none; }
QListWidget#templates:focus, QListWidget#courses:focus, QListView#writeStudents:focus { border: 2px solid @accent; padding: $2; }
QListWidget#templates::item, QListWidget#courses::item { border-radius: 4px; padding: $3 $6; color: @text; }
QListWidget#courses::item:disabled { color: @secondaryText; }
QListWidget#templates::item:selected, QListWidget#courses::item:selected { background: @selection; color: @text; }
QFrame#card { border: 1px solid @separator; border-radius: 8px; background: @surface; }

QFrame#findPanel { background: @window; border: 1px solid @outline; border-radius: 10px; }
QListView#findResults { background: transparent; border: none; outline: none; }
QFrame#statusNote { background: @control; border: 1px solid @outline; border-radius: 8px; }
QFrame#separator { background: @separator; max-height: 1px; border: none; }
QLabel[secondary="true"] { color: @secondaryText; }
QLabel[attention="true"] { color: @attention; }
QWidget#sidebarPane, QWidget#sidebarFooter { background: @sidebar; }
QLabel#updateBanner { background: @selection; color: @text; border-radius: 6px; padding: $8; }
QWidget#detailsPane { background: @window; }
)";

QHash<QString, QColor> colors(const Theme &theme) {
    return {
        {QStringLiteral("window"), theme.window},
        {QStringLiteral("sidebar"), theme.sidebar},
        {QStringLiteral("surface"), theme.surface},
        {QStringLiteral("control"), theme.control},
        {QStringLiteral("controlHover"), theme.controlHover},
        {QStringLiteral("controlPressed"), theme.controlPressed},
        {QStringLiteral("separator"), theme.separator},
        {QStringLiteral("outline"), theme.outline},
        {QStringLiteral("text"), theme.text},
        {QStringLiteral("secondaryText"), theme.secondaryText},
        {QStringLiteral("disabledText"), theme.disabledText},
        {QStringLiteral("accent"), theme.accent},
        {QStringLiteral("accentText"), theme.accentText},
        {QStringLiteral("attention"), theme.attention},
        {QStringLiteral("selection"), theme.selection},
    };
}

} // namespace

QString styleSheet(const Appearance &appearance) {
    const auto palette = colors(appearance.theme());
    const QString text = QString::fromUtf8(source);
    static const QRegularExpression token(QStringLiteral("@([a-zA-Z]+)|\\$([0-9]+)"));
    QString result;
    qsizetype copied = 0;
    for (auto matches = token.globalMatch(text); matches.hasNext();) {
        const auto match = matches.next();
        result += QStringView(text).mid(copied, match.capturedStart() - copied);
        if (match.hasCaptured(1))
            result += palette.value(match.captured(1)).name();
        else
            result += QString::number(appearance.px(match.capturedView(2).toInt())) +
                QStringLiteral("px");
        copied = match.capturedEnd();
    }
    result += QStringView(text).mid(copied);
    return result;
}

} // namespace ellwynd
