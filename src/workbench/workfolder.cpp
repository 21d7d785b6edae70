#include "workbench/workfolder.h"

#include <QDir>
#include <QFileInfo>
#include <memory>

namespace ombrevale::workbench {
namespace {

QString Base() {
    // The per-user runtime folder is private and on memory; the temporary folder is the fallback.
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QFileInfo info(runtime);
    if (!runtime.isEmpty() && info.isDir() && info.isWritable()) return runtime;
    return QDir::tempPath();
}

}  // namespace

WorkFolder::WorkFolder() : started_(QDir::currentPath()) {
    const QString base = Base();
    auto dir = std::make_unique<QTemporaryDir>(QDir(base).filePath(QStringLiteral("ombrevale-XXXXXX")));
    if (!dir->isValid()) {
        problem_ = QStringLiteral("No working folder could be made in %1: %2").arg(base, dir->errorString());
        return;
    }
    if (!QDir::setCurrent(dir->path())) {
        problem_ = QStringLiteral("The working folder %1 cannot be entered.").arg(dir->path());
        return;
    }
    dir_ = std::move(dir);
}

WorkFolder::~WorkFolder() {
    if (dir_) QDir::setCurrent(started_);
}

}  // namespace ombrevale::workbench
