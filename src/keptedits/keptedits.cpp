#include "keptedits/keptedits.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QByteArray>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>

namespace ombrevale::keptedits {
namespace {

using ombrevale::Problem;

Outcome Fails(const std::string& what) {
    return Problem{Problem::Kind::Unwritable, what + " (" + std::strerror(errno) + ")"};
}

class Fd {
public:
    explicit Fd(int fd = -1) : fd_(fd) {}
    ~Fd() {
        if (fd_ >= 0) ::close(fd_);
    }
    Fd(const Fd&) = delete;
    Fd& operator=(const Fd&) = delete;
    int get() const { return fd_; }
    bool ok() const { return fd_ >= 0; }

private:
    int fd_;
};

// The same file under another name, or through a link, is the same entry.
std::string Canonical(const std::string& path) {
    const QString canonical = QFileInfo(QString::fromStdString(path)).canonicalFilePath();
    return canonical.isEmpty() ? path : canonical.toStdString();
}

std::string Key(const std::string& stylePath) {
    return QCryptographicHash::hash(QByteArray::fromStdString(Canonical(stylePath)), QCryptographicHash::Sha1)
        .toHex()
        .left(24)
        .toStdString();
}

// Our own folder, entered without following a link; made 0700 where missing.
int OpenOwnFolder(const std::string& folder, bool make) {
    const QFileInfo info(QString::fromStdString(folder));
    // The two folders of our own are checked link by link; what lies above them is the user's choice.
    const std::string state = QDir::cleanPath(info.absolutePath() + QStringLiteral("/..")).toStdString();
    const std::string names[2] = {QFileInfo(info.absolutePath()).fileName().toStdString(),
                                  info.fileName().toStdString()};
    if (make) QDir().mkpath(QString::fromStdString(state));
    int fd = ::open(state.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    for (const std::string& name : names) {
        if (fd < 0) return -1;
        if (make && ::mkdirat(fd, name.c_str(), 0700) != 0 && errno != EEXIST) {
            ::close(fd);
            return -1;
        }
        const int next = ::openat(fd, name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        ::close(fd);
        fd = next;
    }
    struct stat st {};
    if (fd >= 0 && (::fstat(fd, &st) != 0 || st.st_uid != ::geteuid())) {
        ::close(fd);
        errno = EPERM;
        return -1;
    }
    if (fd >= 0 && (st.st_mode & 0077) != 0) ::fchmod(fd, 0700);
    return fd;
}

bool WriteAll(int fd, const std::uint8_t* data, std::size_t n) {
    while (n > 0) {
        const ssize_t w = ::write(fd, data, n);
        if (w < 0 && errno == EINTR) continue;
        if (w <= 0) return false;
        data += w;
        n -= static_cast<std::size_t>(w);
    }
    return true;
}

// Written whole under a name no one else uses, then renamed over the old one.
// A failure names the folder, not the fresh name: one cause reads the same each time.
Outcome Replace(int dir, const std::string& folder, const std::string& name, const std::uint8_t* data, std::size_t n) {
    static std::atomic<unsigned> counter{0};
    const std::string temp = "." + name + "." + std::to_string(::getpid()) + "-" + std::to_string(counter++);
    const std::string failed = "cannot write in " + folder;
    Fd out(::openat(dir, temp.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (!out.ok()) return Fails(failed);
    if (!WriteAll(out.get(), data, n) || ::fsync(out.get()) != 0) {
        const Outcome problem = Fails(failed);
        ::unlinkat(dir, temp.c_str(), 0);
        return problem;
    }
    if (::renameat(dir, temp.c_str(), dir, name.c_str()) != 0) {
        const Outcome problem = Fails(failed);
        ::unlinkat(dir, temp.c_str(), 0);
        return problem;
    }
    return std::nullopt;
}

bool ReadAll(int dir, const std::string& name, std::vector<std::uint8_t>& out) {
    Fd in(::openat(dir, name.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    struct stat st {};
    if (!in.ok() || ::fstat(in.get(), &st) != 0 || !S_ISREG(st.st_mode)) return false;
    out.resize(static_cast<std::size_t>(st.st_size));
    std::size_t done = 0;
    while (done < out.size()) {
        const ssize_t r = ::read(in.get(), out.data() + done, out.size() - done);
        if (r < 0 && errno == EINTR) continue;
        if (r <= 0) return false;
        done += static_cast<std::size_t>(r);
    }
    return true;
}

QByteArray NoteOf(const Entry& e) {
    QJsonArray edits;
    for (const std::string& text : e.edits) edits.append(QString::fromStdString(text));
    return QJsonDocument(QJsonObject{{"style", QString::fromStdString(e.from.path)},
                                     {"size", static_cast<qint64>(e.from.size)},
                                     {"modified", static_cast<qint64>(e.from.modifiedMs)},
                                     {"sha1", QString::fromStdString(e.from.sha1)},
                                     {"kept", static_cast<qint64>(e.keptMs)},
                                     {"edits", edits}})
        .toJson();
}

std::optional<Entry> EntryOf(const std::vector<std::uint8_t>& note) {
    const auto doc = QJsonDocument::fromJson(
        QByteArray(reinterpret_cast<const char*>(note.data()), static_cast<qsizetype>(note.size())));
    const QJsonObject o = doc.object();
    if (!o.value("style").isString()) return std::nullopt;
    Entry e;
    e.from = {o.value("style").toString().toStdString(), o.value("size").toInteger(-1), o.value("modified").toInteger(),
              o.value("sha1").toString().toStdString()};
    e.keptMs = o.value("kept").toInteger();
    for (const auto& text : o.value("edits").toArray()) e.edits.push_back(text.toString().toStdString());
    return e;
}

}  // namespace

Origin OriginOf(const std::string& path) {
    Origin o{path, -1, 0, {}};
    QFile file(QString::fromStdString(path));
    const QFileInfo info(file);
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) return o;
    QCryptographicHash hash(QCryptographicHash::Sha1);
    if (!hash.addData(&file)) return o;
    o.size = info.size();
    o.modifiedMs = info.lastModified().toMSecsSinceEpoch();
    o.sha1 = hash.result().toHex().toStdString();
    return o;
}

bool ChangedSince(const Entry& entry) {
    const QFileInfo info(QString::fromStdString(entry.from.path));
    if (!info.isFile() || info.size() != entry.from.size) return true;
    // Touched but the same bytes is no change.
    return OriginOf(entry.from.path).sha1 != entry.from.sha1;
}

std::string Describe(const Entry& entry) {
    const QString name = QFileInfo(QString::fromStdString(entry.from.path)).fileName();
    const QString when = QDateTime::fromMSecsSinceEpoch(entry.keptMs).toString(QStringLiteral("yyyy-MM-dd HH:mm"));
    QStringList texts;
    for (std::size_t i = 0; i < entry.edits.size() && i < 2; ++i) {
        QString t = QString::fromStdString(entry.edits[i]);
        if (!t.isEmpty()) t[0] = t[0].toUpper();
        texts << t;
    }
    if (entry.edits.size() > 2) texts << QStringLiteral("…");
    const auto n = entry.edits.size();
    // One pass: a name or an edit's text may hold "%1" itself.
    return QStringLiteral("Unsaved edits of %1 from %2 (%3 %4: %5)")
        .arg(name, when, QString::number(n), n == 1 ? QStringLiteral("edit") : QStringLiteral("edits"),
             texts.join(QStringLiteral(", ")))
        .toStdString();
}

std::string Store::DefaultFolder() {
    QString state = qEnvironmentVariable("XDG_STATE_HOME");
    // Relative paths are to be ignored, as for every XDG base folder.
    if (state.isEmpty() || QDir::isRelativePath(state)) state = QDir::homePath() + QStringLiteral("/.local/state");
    return (state + QStringLiteral("/ombrevale/recovery")).toStdString();
}

Store::Store(std::string folder) : folder_(std::move(folder)) {}

Outcome Store::Keep(const Entry& entry, const std::vector<std::uint8_t>& document) const {
    Fd dir(OpenOwnFolder(folder_, true));
    if (!dir.ok()) return Fails("the folder " + folder_ + " cannot be used");
    const std::string key = Key(entry.from.path);
    // The document goes first: a note on disk always has its document.
    if (auto problem = Replace(dir.get(), folder_, key + ".sty", document.data(), document.size())) return problem;
    const QByteArray note = NoteOf(entry);
    return Replace(dir.get(), folder_, key + ".json", reinterpret_cast<const std::uint8_t*>(note.constData()),
                   static_cast<std::size_t>(note.size()));
}

Outcome Store::Discard(const std::string& stylePath) const {
    Fd dir(OpenOwnFolder(folder_, false));
    if (!dir.ok()) return std::nullopt;  // nothing was ever kept
    const std::string key = Key(stylePath);
    for (const std::string& name : {key + ".json", key + ".sty"})
        if (::unlinkat(dir.get(), name.c_str(), 0) != 0 && errno != ENOENT) return Fails("cannot remove " + name);
    return std::nullopt;
}

std::optional<Entry> Store::Find(const std::string& stylePath) const {
    Fd dir(OpenOwnFolder(folder_, false));
    std::vector<std::uint8_t> note;
    if (!dir.ok() || !ReadAll(dir.get(), Key(stylePath) + ".json", note)) return std::nullopt;
    auto entry = EntryOf(note);
    if (entry && Canonical(entry->from.path) != Canonical(stylePath)) return std::nullopt;
    return entry;
}

std::vector<Entry> Store::List() const {
    std::vector<Entry> entries;
    Fd dir(OpenOwnFolder(folder_, false));
    if (!dir.ok()) return entries;
    const QStringList notes =
        QDir(QString::fromStdString(folder_)).entryList({QStringLiteral("*.json")}, QDir::Files | QDir::NoSymLinks);
    for (const QString& name : notes) {
        std::vector<std::uint8_t> note;
        if (!ReadAll(dir.get(), name.toStdString(), note)) continue;
        if (auto entry = EntryOf(note)) entries.push_back(std::move(*entry));
    }
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.from.path < b.from.path; });
    return entries;
}

Outcome Store::ReadDocument(const std::string& stylePath, std::vector<std::uint8_t>& out) const {
    Fd dir(OpenOwnFolder(folder_, false));
    if (!dir.ok() || !Find(stylePath) || !ReadAll(dir.get(), Key(stylePath) + ".sty", out))
        return Problem{Problem::Kind::Unreadable, "no unsaved edits of " + stylePath + " are kept"};
    return std::nullopt;
}

std::string Store::DocumentPath(const std::string& stylePath) const { return folder_ + "/" + Key(stylePath) + ".sty"; }

std::unique_ptr<QLockFile> Store::Own(const std::string& stylePath) const {
    Fd dir(OpenOwnFolder(folder_, true));
    if (!dir.ok()) return nullptr;
    auto lock = std::make_unique<QLockFile>(QString::fromStdString(folder_ + "/" + Key(stylePath) + ".lock"));
    // Only a lock whose process has ended is stale, however old it is.
    lock->setStaleLockTime(0);
    lock->tryLock();
    return lock;
}

Writer::Writer(Store store, std::function<void(const Outcome&)> onDone)
    : store_(std::move(store)), onDone_(std::move(onDone)), thread_([this] { Work(); }) {}

Writer::~Writer() {
    {
        std::lock_guard lock(m_);
        stopping_ = true;
    }
    cv_.notify_all();
    thread_.join();
}

void Writer::Keep(Entry entry, std::vector<std::uint8_t> document) {
    const std::string path = entry.from.path;
    std::lock_guard lock(m_);
    std::erase_if(jobs_, [&](const Job& j) { return j.path == path; });
    jobs_.push_back({path, std::move(entry), std::move(document)});
    cv_.notify_all();
}

void Writer::Discard(const std::string& stylePath) {
    std::lock_guard lock(m_);
    std::erase_if(jobs_, [&](const Job& j) { return j.path == stylePath; });
    jobs_.push_back({stylePath, std::nullopt, {}});
    cv_.notify_all();
}

void Writer::Flush() {
    std::unique_lock lock(m_);
    cv_.wait(lock, [this] { return jobs_.empty() && !running_; });
}

void Writer::Work() {
    std::unique_lock lock(m_);
    for (;;) {
        // Whatever was asked for is still written on the way out.
        cv_.wait(lock, [this] { return !jobs_.empty() || stopping_; });
        if (jobs_.empty()) return;
        Job job = std::move(jobs_.front());
        jobs_.pop_front();
        running_ = true;
        lock.unlock();
        const Outcome problem = job.entry ? store_.Keep(*job.entry, job.document) : store_.Discard(job.path);
        if (onDone_) onDone_(problem);
        lock.lock();
        running_ = false;
        cv_.notify_all();
    }
}

}  // namespace ombrevale::keptedits
