#include "workbench/workfolder.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <memory>

#if defined(Q_OS_UNIX)
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <filesystem>
#include <vector>
#endif

namespace ombrevale::workbench {
namespace {

QStringList Bases() {
    // The per-user runtime folder is private and on memory; the temporary folder is the fallback.
    QStringList bases;
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!runtime.isEmpty() && QFileInfo(runtime).isDir()) bases << runtime;
    if (!bases.contains(QDir::tempPath())) bases << QDir::tempPath();
    return bases;
}

#if defined(Q_OS_UNIX)
// Our working folders whose process no longer runs: a crash or a kill leaves
// them behind. Only real folders of this user go; a link is never followed.
void RemoveLeftOvers(const QString& base) {
    static const QRegularExpression ours(QStringLiteral("^ombrevale-(\\d{1,10})-[A-Za-z0-9]{6}$"));
    DIR* entries = ::opendir(QFile::encodeName(base).constData());
    if (!entries) return;
    const int at = ::dirfd(entries);
    std::vector<std::filesystem::path> ended;
    while (const dirent* entry = ::readdir(entries)) {
        const auto match = ours.match(QFile::decodeName(entry->d_name));
        const long long pid = match.hasMatch() ? match.captured(1).toLongLong() : 0;
        if (pid <= 0 || pid > INT_MAX || pid == QCoreApplication::applicationPid()) continue;
        struct stat st {};
        if (::fstatat(at, entry->d_name, &st, AT_SYMLINK_NOFOLLOW) != 0 || !S_ISDIR(st.st_mode) ||
            st.st_uid != ::getuid())
            continue;
        if (::kill(static_cast<pid_t>(pid), 0) == 0 || errno != ESRCH) continue;
        ended.push_back(std::filesystem::path(QFile::encodeName(base).toStdString()) / entry->d_name);
    }
    ::closedir(entries);
    for (const auto& folder : ended) {
        std::error_code ec;  // what cannot go stays for the next start
        std::filesystem::remove_all(folder, ec);
    }
}
#endif

}  // namespace

WorkFolder::WorkFolder() : started_(QDir::currentPath()) {
    const QStringList bases = Bases();
#if defined(Q_OS_UNIX)
    for (const QString& base : bases) RemoveLeftOvers(base);
#endif
    // The process id in the name tells a later start whether the folder's owner still runs.
    const QString name = QStringLiteral("ombrevale-%1-XXXXXX").arg(QCoreApplication::applicationPid());
    QStringList problems;
    for (const QString& base : bases) {
        auto dir = std::make_unique<QTemporaryDir>(QDir(base).filePath(name));
        if (!dir->isValid()) {
            problems << QStringLiteral("in %1: %2").arg(base, dir->errorString());
        } else if (!QDir::setCurrent(dir->path())) {
            problems << QStringLiteral("%1 cannot be entered").arg(dir->path());
        } else {
            dir_ = std::move(dir);
            return;
        }
    }
    problem_ = QStringLiteral("No working folder could be made: %1.").arg(problems.join(QStringLiteral("; ")));
}

WorkFolder::~WorkFolder() {
    if (dir_) QDir::setCurrent(started_);
}

}  // namespace ombrevale::workbench
