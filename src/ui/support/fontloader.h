// Loads fonts before they are needed.
#pragma once

#include <QFont>
#include <QTimer>

#include <vector>

namespace ellwynd {

/// A font of another size or weight takes some milliseconds when text is first measured with it.
/// This does so with one font in each turn of the event loop.
class FontLoader : public QObject {
    Q_OBJECT

  public:
    explicit FontLoader(QObject *parent) : QObject(parent) {
        connect(&timer, &QTimer::timeout, this, &FontLoader::loadNext);
    }

    /// Replaces the fonts that are still to be loaded.
    void load(std::vector<QFont> fonts);

  private:
    void loadNext();

    std::vector<QFont> waiting;
    QTimer timer;
};

} // namespace ellwynd
