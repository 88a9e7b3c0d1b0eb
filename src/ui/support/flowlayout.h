// A layout that continues on a new line.
#pragma once

#include <QLayout>

#include <vector>

namespace ellwynd {

/// Places its items beside each other, each with the size of its hint, and in as many lines as the
/// width requires. Items of one line are centred vertically; one that is aligned to the right is at
/// the right edge.
class FlowLayout : public QLayout {
  public:
    explicit FlowLayout(QWidget *parent);
    ~FlowLayout() override;
    FlowLayout(const FlowLayout &) = delete;
    FlowLayout &operator=(const FlowLayout &) = delete;

    void addItem(QLayoutItem *item) override;
    [[nodiscard]] int count() const override { return int(items.size()); }
    [[nodiscard]] QLayoutItem *itemAt(int index) const override;
    QLayoutItem *takeAt(int index) override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSize() const override;
    [[nodiscard]] bool hasHeightForWidth() const override { return true; }
    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] Qt::Orientations expandingDirections() const override { return {}; }
    void setGeometry(const QRect &rect) override;

  private:
    /// Places the items, or only computes the height that they need.
    int place(const QRect &rect, bool apply) const;

    std::vector<QLayoutItem *> items;
};

} // namespace ellwynd
