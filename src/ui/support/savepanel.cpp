#include "ui/support/savepanel.h"

#include "uikit/convert.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QStandardPaths>

namespace ellwynd {

namespace {

QString firstFolder(const UserDefaults &defaults) {
    for (const QString &folder :
         {qstring(defaults.value(preferences::exportFolder)),
          QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)}) {
        if (!folder.isEmpty() && QDir(folder).exists())
            return folder;
    }
    return QDir::homePath();
}

} // namespace

QFileDialog *savePanel(const SaveRequest &request, UserDefaults &defaults, QWidget &parent) {
    auto *panel = new QFileDialog(&parent, request.title);
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->setMimeTypeFilters({request.type});
    panel->setDefaultSuffix(request.suffix);
    panel->setDirectory(firstFolder(defaults));
    panel->selectFile(panelFileName(request.fileName));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(panel, &QFileDialog::fileSelected, panel, [&defaults](const QString &file) {
        defaults.set(preferences::exportFolder, QFileInfo(file).path().toStdString());
    });
    return panel;
}

} // namespace ellwynd
