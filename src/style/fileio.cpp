#include "style/fileio.h"

#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "style/messages.h"

#ifdef __linux__
#include <fcntl.h>
#include <sys/sendfile.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace fs = std::filesystem;

namespace ombrevale::styleio {

namespace {

using ombrevale::Outcome;
using ombrevale::Problem;

Outcome Unreadable(std::string why) { return Problem{Problem::Kind::Unreadable, std::move(why)}; }
Outcome Unwritable(std::string why) { return Problem{Problem::Kind::Unwritable, std::move(why)}; }

#ifdef __linux__
// O_EXCL refuses whatever stands at the path, a link included.
int CreateAnew(const std::string& path) {
    return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0666);
}
#endif

}  // namespace

Outcome InputFile::Open(const std::string& path) {
    std::error_code ec;
    const auto status = fs::status(path, ec);
    if (ec || !fs::exists(status)) return Unreadable("there is no such file");
    if (fs::is_directory(status)) return Unreadable("it is a folder, not a file");
    // A FIFO or a device would hold the open, or the read, for as long as nobody writes.
    if (!fs::is_regular_file(status)) return Unreadable("it is not a regular file");
    in_.open(path, std::ios::binary);
    if (!in_) return Unreadable("it cannot be opened for reading");
    in_.seekg(0, std::ios::end);
    const std::streamoff length = in_.tellg();
    in_.seekg(0, std::ios::beg);
    if (length < 0 || !in_) return Unreadable("its length cannot be read");
    if (static_cast<std::uintmax_t>(length) > kMaxStyleFileBytes)
        return Unreadable("it is " + GroupedNumber(length) + " bytes long, larger than any style file");
    length_ = static_cast<std::size_t>(length);
    return std::nullopt;
}

std::size_t InputFile::Read(std::uint8_t* to, std::size_t n) {
    if (!in_) return 0;
    in_.read(reinterpret_cast<char*>(to), static_cast<std::streamsize>(n));
    return static_cast<std::size_t>(in_.gcount());
}

bool InputFile::Seek(std::size_t offset) {
    in_.clear();
    in_.seekg(static_cast<std::streamoff>(offset));
    return static_cast<bool>(in_);
}

namespace {

bool CopyThroughStreams(const std::string& from, const std::string& to, std::string& why) {
    std::ifstream in(from, std::ios::binary);
    if (!in) {
        why = "the file cannot be opened for reading";
        return false;
    }
    std::ofstream out(to, std::ios::binary | std::ios::trunc);
    if (!out) {
        why = "the copy cannot be made";
        return false;
    }
    std::vector<char> chunk(1 << 16);
    while (in) {
        in.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
        const std::streamsize got = in.gcount();
        if (got > 0 && !out.write(chunk.data(), got)) {
            why = "writing the copy failed (is the disk full?)";
            return false;
        }
    }
    if (in.bad()) {
        why = "reading the file failed";
        return false;
    }
    out.flush();
    if (!out) {
        why = "writing the copy failed (is the disk full?)";
        return false;
    }
    return true;
}

#ifdef __linux__
// The kernel copies page to page, as the library's copy does, but an
// interrupted call is taken up again instead of failing the save.
bool CopyInKernel(const std::string& from, const std::string& to, std::string& why) {
    const int in = open(from.c_str(), O_RDONLY | O_CLOEXEC);
    if (in < 0) {
        why = "the file cannot be opened for reading";
        return false;
    }
    struct stat st {};
    const int out = fstat(in, &st) == 0 ? CreateAnew(to) : -1;
    if (out < 0) {
        close(in);
        why = "the copy cannot be made";
        return false;
    }
    bool ok = true;
    for (auto left = static_cast<std::size_t>(st.st_size); ok && left > 0;) {
        const ssize_t n = sendfile(out, in, nullptr, left);
        if (n < 0 && errno == EINTR) continue;
        // A file system that cannot: copy through user space instead.
        if (n < 0 && (errno == EINVAL || errno == ENOSYS) && left == static_cast<std::size_t>(st.st_size)) {
            close(in);
            close(out);
            return CopyThroughStreams(from, to, why);
        }
        // The file may have shrunk meanwhile: what is there is copied.
        if (n == 0) break;
        ok = n > 0;
        if (ok) left -= static_cast<std::size_t>(n);
    }
    if (!ok) why = "writing the copy failed (is the disk full?)";
    close(in);
    if (close(out) != 0 && ok) {
        why = "writing the copy failed (is the disk full?)";
        ok = false;
    }
    return ok;
}
#endif

}  // namespace

Outcome CopyWholeFile(const std::string& from, const std::string& to) {
    std::string why;
#ifdef __linux__
    const bool copied = CopyInKernel(from, to, why);
#else
    const bool copied = CopyThroughStreams(from, to, why);
#endif
    if (copied) return std::nullopt;
    return Unwritable(why);
}

#ifdef __linux__
namespace {
// Every byte, taken up again after a signal or a short write.
bool WriteAll(int fd, const std::vector<std::uint8_t>& bytes) {
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t n = write(fd, bytes.data() + done, bytes.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}
}  // namespace
#endif

Outcome ReplaceFileWith(const std::string& path, const std::vector<std::uint8_t>& bytes) {
    const std::string temp = path + ".saving";
    // A file left by a save that was cut off goes; unlink removes a link, not what it points at.
    std::remove(temp.c_str());
#ifdef __linux__
    const int fd = CreateAnew(temp);
    if (fd < 0) return Unwritable("a new file cannot be made beside it");
    const bool written = WriteAll(fd, bytes);
    if (close(fd) != 0 || !written) {
        std::remove(temp.c_str());
        return Unwritable("writing failed (is the disk full?)");
    }
#else
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        if (!out) return Unwritable("a new file cannot be made beside it");
        out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        out.flush();
        if (!out) {
            out.close();
            std::remove(temp.c_str());
            return Unwritable("writing failed (is the disk full?)");
        }
    }
#endif
    std::error_code ec;
    fs::rename(temp, path, ec);
    if (ec) {
        std::remove(temp.c_str());
        return Unwritable("the new file could not take its place: " + ec.message());
    }
    return std::nullopt;
}

}  // namespace ombrevale::styleio
