#pragma once
// Edits not yet saved, kept on disk so that no way of ending the window loses
// them: one entry per style path in the user's state folder
// ($XDG_STATE_HOME/ombrevale/recovery, mode 0700), the edited document as a
// save would write it beside a note of what it was edited from. Every file
// is written whole under a fresh name and renamed into place, and nothing is
// ever opened through a link. Shared by the window and the command line.

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "style/problem.h"

class QLockFile;

namespace ombrevale::keptedits {

// A style file as it stood when it was loaded.
struct Origin {
    std::string path;
    std::int64_t size = -1;  // -1: it could not be read
    std::int64_t modifiedMs = 0;
    std::string sha1;  // of the whole file, in hex

    bool operator==(const Origin&) const = default;
};
Origin OriginOf(const std::string& path);

struct Entry {
    Origin from;
    std::int64_t keptMs = 0;
    // As the undo history names them, oldest first.
    std::vector<std::string> edits;
};

// True when the file at the entry's path is no longer the one the edits were made from.
bool ChangedSince(const Entry& entry);

// "Unsaved edits of NAME from TIME (3 edits: Import into tile 5, …)"
std::string Describe(const Entry& entry);

class Store {
public:
    // $XDG_STATE_HOME/ombrevale/recovery, else ~/.local/state/ombrevale/recovery.
    static std::string DefaultFolder();
    explicit Store(std::string folder = DefaultFolder());

    const std::string& Folder() const { return folder_; }
    Outcome Keep(const Entry& entry, const std::vector<std::uint8_t>& document) const;
    Outcome Discard(const std::string& stylePath) const;
    std::optional<Entry> Find(const std::string& stylePath) const;
    // Every entry, oldest path first by name.
    std::vector<Entry> List() const;
    Outcome ReadDocument(const std::string& stylePath, std::vector<std::uint8_t>& out) const;
    // The kept document's own file, for a load that reads it in place.
    std::string DocumentPath(const std::string& stylePath) const;
    // The entry of stylePath for this process alone while the lock lives: one
    // window keeps it, no other offers or touches it. Not locked, with
    // LockFailedError: another running process owns it. None: the folder cannot be used.
    std::unique_ptr<QLockFile> Own(const std::string& stylePath) const;

private:
    std::string folder_;
};

// Keeps entries on a thread of its own, so the window never waits for the
// disk; the newest request for a path replaces one that has not run yet.
class Writer {
public:
    // onDone runs on the writer's thread after each job, with what went wrong if anything did.
    Writer(Store store, std::function<void(const Outcome&)> onDone);
    ~Writer();
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    void Keep(Entry entry, std::vector<std::uint8_t> document);
    void Discard(const std::string& stylePath);
    // Returns once everything asked for so far is on disk.
    void Flush();
    const Store& store() const { return store_; }

private:
    struct Job {
        std::string path;
        std::optional<Entry> entry;  // none: discard
        std::vector<std::uint8_t> document;
    };
    void Work();

    Store store_;
    std::function<void(const Outcome&)> onDone_;
    std::mutex m_;
    std::condition_variable cv_;
    std::deque<Job> jobs_;
    bool running_ = false;
    bool stopping_ = false;
    std::thread thread_;
};

}  // namespace ombrevale::keptedits
