#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <cstdio>
#include <memory>

#include "clierror.h"
#include "commands.h"
#include "style/clssty.h"

namespace ombrevale::cli {

LoadReport LoadStyle(clsSTY& doc, const std::string& path) {
    LoadReport report;
    if (doc.LoadSTY(path, report)) return report;
    using Kind = ombrevale::Problem::Kind;
    const std::string& why = report.problem->text;
    switch (report.problem->kind) {
        case Kind::NotAStyle:
            throw Failure(path, "not a style file (it does not begin with GBST)");
        case Kind::Unreadable:
            throw Failure(path, "cannot be read: " + why);
        case Kind::CutShort:
            throw Failure(path, "could not be read to its end: " + why);
        case Kind::Damaged:
        case Kind::Unwritable:
            break;
    }
    throw Failure(path, "is damaged: " + why);
}

void SaveStyle(const clsSTY& doc, const std::string& path) {
    if (auto problem = doc.TrySaveSTY(path)) throw Failure(path, "was not saved: " + problem->text);
}

void CheckRange(const std::string& file, const std::string& what, std::int64_t value, std::int64_t lo,
                std::int64_t hi) {
    if (value >= lo && value <= hi) return;
    if (hi < lo) throw Failure(file, what + " " + std::to_string(value) + " is out of range: there are none");
    throw Failure(file, what + " " + std::to_string(value) + " is out of range (" + std::to_string(lo) + ".." +
                            std::to_string(hi) + ")");
}

std::string ScratchFolder() {
    static const auto scratch = std::make_unique<QTemporaryDir>(QDir::tempPath() + "/ombrevale-cli-XXXXXX");
    if (!scratch->isValid()) throw Failure(QDir::tempPath().toStdString(), "has no room for a scratch folder");
    return scratch->path().toStdString();
}

void WriteThrough(const std::string& path, const std::function<bool(const std::string& temp)>& write,
                  Durability durability) {
    const std::string temp = ScratchFolder() + "/written";
    QFile made(QString::fromStdString(temp));
    bool ok = write(temp) && made.open(QIODevice::ReadOnly);
    if (ok && durability == Durability::Synced) {
        QSaveFile out(QString::fromStdString(path));
        ok = out.open(QIODevice::WriteOnly) && out.write(made.readAll()) == made.size() && out.commit();
    } else if (ok) {
        // A fresh name beside the file, then one rename: a link at the path is replaced, never written through.
        QTemporaryFile out(QFileInfo(QString::fromStdString(path)).absolutePath() +
                           QStringLiteral("/.ombrevale-XXXXXX"));
        ok = out.open() && out.write(made.readAll()) == made.size() && out.flush();
        ok = ok && std::rename(out.fileName().toLocal8Bit().constData(), path.c_str()) == 0;
    }
    made.remove();
    if (!ok) {
        // The engine names our scratch file; the line names the one asked for.
        DocumentVoice::Take({});
        throw Failure(path, "cannot be written");
    }
}

}  // namespace ombrevale::cli
