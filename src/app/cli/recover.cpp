// recover: the edits the window keeps on disk until they are saved.
#include <QDateTime>
#include <QFileInfo>
#include <QLockFile>
#include <cstdio>

#include "clierror.h"
#include "commands.h"
#include "keptedits/keptedits.h"

namespace ombrevale::cli {
namespace {

// The window keys its entries by the absolute path it loaded.
std::string Absolute(const std::string& path) {
    return QFileInfo(QString::fromStdString(path)).absoluteFilePath().toStdString();
}

int List(const keptedits::Store& store) {
    for (const keptedits::Entry& e : store.List()) {
        const QString when = QDateTime::fromMSecsSinceEpoch(e.keptMs).toString(Qt::ISODate);
        std::printf("%s\t%s\t%zu edit%s\t%s\n", e.from.path.c_str(), when.toUtf8().constData(), e.edits.size(),
                    e.edits.size() == 1 ? "" : "s",
                    keptedits::ChangedSince(e) ? "file changed since" : "file unchanged since");
    }
    return kExitOk;
}

}  // namespace

int RunRecover(const Args& args) {
    const keptedits::Store store;
    if (args.words.empty()) return List(store);
    const std::string style = Absolute(args.words[0]);
    if (!store.Find(style)) throw Failure(style, "has no unsaved edits kept in " + store.Folder());
    if (args.discard) {
        // A running window writes the entry again at its next edit: its edits are its own to discard.
        const auto lock = store.Own(style);
        if (lock && lock->error() == QLockFile::LockFailedError)
            throw Failure(style, "is open in a running Ombrevale window, which keeps these edits; close it first");
        if (auto problem = store.Discard(style)) throw Failure(store.Folder(), problem->text);
        return kExitOk;
    }
    std::vector<std::uint8_t> document;
    if (auto problem = store.ReadDocument(style, document)) throw Failure(style, problem->text);
    WriteThrough(args.words[1], [&](const std::string& temp) {
        std::FILE* f = std::fopen(temp.c_str(), "wb");
        const bool ok = f && std::fwrite(document.data(), 1, document.size(), f) == document.size();
        return (f && std::fclose(f) == 0) && ok;
    });
    return kExitOk;
}

}  // namespace ombrevale::cli
