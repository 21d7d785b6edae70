#include "style/fileio.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "style/messages.h"

namespace fs = std::filesystem;

namespace styleio {

bool InputFile::Open(const std::string& path, std::string& why) {
    std::error_code ec;
    const auto status = fs::status(path, ec);
    if (ec || !fs::exists(status)) {
        why = "there is no such file";
        return false;
    }
    if (fs::is_directory(status)) {
        why = "it is a folder, not a file";
        return false;
    }
    in_.open(path, std::ios::binary);
    if (!in_) {
        why = "it cannot be opened for reading";
        return false;
    }
    in_.seekg(0, std::ios::end);
    const std::streamoff length = in_.tellg();
    in_.seekg(0, std::ios::beg);
    if (length < 0 || !in_) {
        why = "its length cannot be read";
        return false;
    }
    if (static_cast<std::uintmax_t>(length) > kMaxStyleFileBytes) {
        why = "it is " + GroupedNumber(length) + " bytes long, larger than any style file";
        return false;
    }
    length_ = static_cast<std::size_t>(length);
    return true;
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

bool CopyWholeFile(const std::string& from, const std::string& to, std::string& why) {
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
    std::vector<char> chunk(1 << 20);
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

bool ReplaceFileWith(const std::string& path, const std::vector<std::uint8_t>& bytes, std::string& why) {
    const std::string temp = path + ".saving";
    {
        std::ofstream out(temp, std::ios::binary | std::ios::trunc);
        if (!out) {
            why = "a new file cannot be made beside it";
            return false;
        }
        out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        out.flush();
        if (!out) {
            out.close();
            std::remove(temp.c_str());
            why = "writing failed (is the disk full?)";
            return false;
        }
    }
    std::error_code ec;
    fs::rename(temp, path, ec);
    if (ec) {
        std::remove(temp.c_str());
        why = "the new file could not take its place: " + ec.message();
        return false;
    }
    return true;
}

}  // namespace styleio
