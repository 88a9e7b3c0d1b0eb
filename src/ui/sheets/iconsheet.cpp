#include "ui/sheets/iconsheet.h"

#include "theme/courseglyphs.h"
#include "theme/courseicon.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/labels.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScopedValueRollback>
#include <QVBoxLayout>

namespace ellwynd {

namespace {

constexpr int iconColumns = 9;
constexpr int iconCell = 38;
constexpr int colorCell = 30;
constexpr int gap = 4;
constexpr int previewSize = 64;

QString capitalised(std::string_view word) {
    const QString text = qstring(word);
    return text.left(1).toUpper() + text.mid(1);
}

/// One choice of a grid. It is a radio button in all but its looks: the arrow keys move within the
/// group, and Tab leaves it.
class Cell : public QRadioButton {
  public:
    Cell(std::string chosen, const QString &name, int side, const Appearance &look)
        : word(std::move(chosen)), appearance(look) {
        setAccessibleName(name);
        setToolTip(name);
        setFixedSize(look.px(side), look.px(side));
    }

    const std::string word;

  protected:
    [[nodiscard]] bool hitButton(const QPoint &position) const override {
        return rect().contains(position);
    }

    void paintEvent(QPaintEvent *) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF inside = QRectF(rect()).adjusted(3, 3, -3, -3);
        paintCell(painter, inside);
        if (hasFocus()) {
            painter.setBrush(Qt::NoBrush);
            painter.setPen(QPen(appearance.theme().accent, 2));
            const double radius = inside.width() * 0.3;
            painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius, radius);
        }
    }

    virtual void paintCell(QPainter &painter, const QRectF &box) const = 0;

    const Appearance &appearance;
};

/// A glyph, or the course's letters for the empty word. The one that is chosen is shown as the tile
/// itself.
class IconCell : public Cell {
  public:
    IconCell(const std::string &chosen, const QString &initials, const Appearance &look)
        : Cell(
              chosen, chosen.empty() ? QStringLiteral("Subject letters") : capitalised(chosen),
              iconCell, look),
          letters(initials) {}

    void setTileColor(const QColor &color) {
        tile = color;
        update();
    }

  protected:
    void paintCell(QPainter &painter, const QRectF &box) const override {
        const Theme &theme = appearance.theme();
        painter.setPen(Qt::NoPen);
        painter.setBrush(
            isChecked()        ? tile
                : underMouse() ? theme.controlPressed
                               : theme.controlHover);
        painter.drawRoundedRect(box, box.width() * 0.26, box.width() * 0.26);
        const QColor ink = isChecked() ? QColor(Qt::white) : theme.text;
        const int margin = int(box.width() * 0.2);
        if (drawCourseGlyph(painter, word, box.adjusted(margin, margin, -margin, -margin), ink))
            return;
        QFont font = appearance.font(1, QFont::Bold);
        font.setPixelSize(std::max(6, int(box.width() * 0.34)));
        painter.setFont(font);
        painter.setPen(ink);
        painter.drawText(box, Qt::AlignCenter, letters);
    }

  private:
    QString letters;
    QColor tile;
};

/// A colour; for the empty word the one that the course gets by itself, marked "A". The chosen one
/// carries a check mark.
class ColorCell : public Cell {
  public:
    ColorCell(const std::string &chosen, const QColor &shown, const Appearance &look)
        : Cell(
              chosen, chosen.empty() ? QStringLiteral("Automatic colour") : capitalised(chosen),
              colorCell, look),
          color(shown) {}

  protected:
    void paintCell(QPainter &painter, const QRectF &box) const override {
        painter.setPen(Qt::NoPen);
        painter.setBrush(color);
        painter.drawEllipse(box);
        if (isChecked()) {
            painter.setPen(
                QPen(Qt::white, box.width() / 9, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
            const auto at = [&box](double x, double y) {
                return QPointF(box.left() + box.width() * x, box.top() + box.height() * y);
            };
            painter.drawPolyline(QPolygonF{at(0.27, 0.53), at(0.43, 0.69), at(0.73, 0.34)});
        } else if (word.empty()) {
            QFont font = appearance.font(1, QFont::Bold);
            font.setPixelSize(std::max(6, int(box.width() * 0.5)));
            painter.setFont(font);
            painter.setPen(Qt::white);
            painter.drawText(box, Qt::AlignCenter, QStringLiteral("A"));
        }
    }

  private:
    QColor color;
};

QLabel *caption(const QString &text, QWidget *parent) {
    auto *label = plainLabel(parent);
    label->setProperty("secondary", true);
    label->setText(text);
    return label;
}

void check(const QButtonGroup &group, const std::string &word) {
    for (QAbstractButton *button : group.buttons()) {
        if (static_cast<const Cell *>(button)->word == word)
            button->setChecked(true);
    }
}

} // namespace

IconSheet::IconSheet(
    std::int64_t id, const std::string &name, UserDefaults &store, const Appearance &look,
    QWidget *parent)
    : Sheet(QStringLiteral("Course Icon"), QStringLiteral("Course Icon"), look, parent),
      courseID(id),
      courseName(name),
      defaults(store),
      appearance(look),
      preview(new QLabel(this)),
      description(caption({}, this)),
      icons(new QButtonGroup(this)),
      colors(new QButtonGroup(this)),
      followDefault(new QPushButton(QStringLiteral("Use Default"), this)),
      observing(store.observe([this](std::string_view key) {
          if (courseSettings::isIconKey(key))
              showChoice();
      })) {
    auto *course = new ElidedLabel(this);
    course->setFont(look.font(1, QFont::DemiBold));
    course->setFullText(qstring(courseName));
    auto *names = new QVBoxLayout;
    names->setSpacing(look.px(2));
    names->addStretch(1);
    names->addWidget(course);
    names->addWidget(description);
    names->addStretch(1);
    auto *shown = new QHBoxLayout;
    shown->setSpacing(look.px(14));
    shown->addWidget(preview);
    shown->addLayout(names, 1);

    auto *cancel = new QPushButton(QStringLiteral("Cancel"), this);
    auto *finished = new QPushButton(QStringLiteral("Done"), this);
    finished->setDefault(true);
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(followDefault);
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    buttons->addWidget(finished);

    column().addLayout(shown);
    column().addWidget(caption(QStringLiteral("Icon"), this));
    column().addLayout(makeGrid(*icons, courseSettings::icon));
    column().addWidget(caption(QStringLiteral("Colour"), this));
    column().addLayout(makeGrid(*colors, courseSettings::iconColor));
    column().addSpacing(look.px(8));
    column().addLayout(buttons);

    connect(followDefault, &QPushButton::clicked, this, &IconSheet::useDefault);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(finished, &QPushButton::clicked, this, &QDialog::accept);
    showChoice();
    icons->checkedButton()->setFocus();
}

QGridLayout *IconSheet::makeGrid(QButtonGroup &group, std::string_view suffix) {
    const bool isColor = suffix == courseSettings::iconColor;
    std::vector<std::string> words{{}};
    if (isColor)
        words.insert(
            words.end(), courseSettings::colorWords.begin(), courseSettings::colorWords.end());
    else
        words.insert(
            words.end(), courseSettings::iconWords.begin(), courseSettings::iconWords.end());
    const int columns = isColor ? int(words.size()) : iconColumns;
    auto *grid = new QGridLayout;
    grid->setSpacing(appearance.px(gap));
    for (int i = 0; i < int(words.size()); ++i) {
        const std::string &word = words[std::size_t(i)];
        Cell *cell = nullptr;
        if (isColor)
            cell = new ColorCell(word, courseColor(courseID, word), appearance);
        else
            cell = new IconCell(word, courseInitials(courseName), appearance);
        group.addButton(cell);
        grid->addWidget(cell, i / columns, i % columns);
        connect(cell, &QAbstractButton::toggled, this, [this, suffix, word](bool on) {
            if (on && !showing)
                write(suffix, word);
        });
    }
    grid->setColumnStretch(columns, 1);
    return grid;
}

void IconSheet::showChoice() {
    const CourseIcon chosen = courseIcon(defaults, courseID);
    const QScopedValueRollback rollback(showing, true);
    check(*icons, chosen.icon);
    check(*colors, chosen.color);
    for (QAbstractButton *button : icons->buttons())
        static_cast<IconCell *>(button)->setTileColor(courseColor(courseID, chosen.color));
    const int side = appearance.px(previewSize);
    preview->setPixmap(courseTile(courseID, courseName, side, devicePixelRatioF(), chosen));
    const QString icon =
        chosen.icon.empty() ? QStringLiteral("Subject letters") : capitalised(chosen.icon);
    description->setText(
        icon + QStringLiteral(" on ") +
        (chosen.color.empty() ? QStringLiteral("its automatic colour") : qstring(chosen.color)));
    preview->setAccessibleName(description->text());
    followDefault->setEnabled(
        courseSettings::has(defaults, courseID, courseSettings::icon) ||
        courseSettings::has(defaults, courseID, courseSettings::iconColor));
}

void IconSheet::write(std::string_view suffix, const std::string &word) {
    apply(
        {{courseSettings::key(courseID, suffix),
          word.empty() ? std::nullopt : std::optional<PreferenceValue>(word)}});
}

void IconSheet::useDefault() {
    apply(
        {{courseSettings::key(courseID, courseSettings::icon), std::nullopt},
         {courseSettings::key(courseID, courseSettings::iconColor), std::nullopt}});
    // The button is disabled now, and the focus would move on to Cancel.
    icons->checkedButton()->setFocus();
}

void IconSheet::apply(const PreferenceChanges &changes) {
    // Keeps the first value that each key had.
    before.merge(defaults.update(changes));
}

void IconSheet::reject() {
    defaults.update(before);
    Sheet::reject();
}

} // namespace ellwynd
