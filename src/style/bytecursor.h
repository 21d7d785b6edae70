#pragma once
// Reads little-endian numbers from bytes in memory or from a stream, and
// always knows how many bytes are left. Callers check Remaining() before a
// read; a read past the end anyway yields zeros and marks the cursor as
// overrun instead of reading on.
//
// From a stream only a window of the bytes is held, grown to the largest
// single Take, so a style file is never in memory twice. A stream that
// delivers fewer bytes than it promised marks the cursor as failed as well.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class ByteSource {
public:
    virtual ~ByteSource() = default;
    // Up to n bytes into to; fewer only at the end or on failure.
    virtual std::size_t Read(std::uint8_t* to, std::size_t n) = 0;
    // Moves to an offset from the start; false on failure.
    virtual bool Seek(std::size_t offset) = 0;
};

class ByteCursor {
public:
    explicit ByteCursor(std::span<const std::uint8_t> bytes) : window_(bytes), length_(bytes.size()) {}
    // The source holds length bytes, read from its start.
    ByteCursor(ByteSource& source, std::size_t length) : source_(&source), length_(length) {}
    // The window may point into the cursor's own buffer.
    ByteCursor(const ByteCursor&) = delete;
    ByteCursor& operator=(const ByteCursor&) = delete;

    std::size_t Position() const { return base_ + pos_; }
    std::size_t Remaining() const { return length_ - Position(); }
    bool AtEnd() const { return Position() >= length_; }
    bool Overrun() const { return overrun_; }
    // The stream gave out before its length.
    bool Failed() const { return failed_; }

    std::uint8_t U8() {
        if (!Has(1)) return 0;
        return window_[pos_++];
    }
    std::uint16_t U16() {
        if (!Has(2)) return 0;
        const auto v = static_cast<std::uint16_t>(window_[pos_] | (window_[pos_ + 1] << 8));
        pos_ += 2;
        return v;
    }
    std::int16_t I16() { return static_cast<std::int16_t>(U16()); }
    std::int32_t I32() {
        if (!Has(4)) return 0;
        const std::uint32_t v = static_cast<std::uint32_t>(window_[pos_]) |
                                (static_cast<std::uint32_t>(window_[pos_ + 1]) << 8) |
                                (static_cast<std::uint32_t>(window_[pos_ + 2]) << 16) |
                                (static_cast<std::uint32_t>(window_[pos_ + 3]) << 24);
        pos_ += 4;
        return static_cast<std::int32_t>(v);
    }
    // The next n bytes, or an empty span (and overrun) if fewer are left.
    // Valid until the next read.
    std::span<const std::uint8_t> Take(std::size_t n) {
        if (!Has(n)) return {};
        auto s = window_.subspan(pos_, n);
        pos_ += n;
        return s;
    }
    // The next n bytes into to, in pieces, so no window grows to n.
    bool CopyTo(std::uint8_t* to, std::size_t n);
    void Skip(std::size_t n);

private:
    bool Has(std::size_t n) {
        if (n <= window_.size() - pos_) return true;
        return Refill(n);
    }
    bool Refill(std::size_t n);
    bool Overran();

    ByteSource* source_ = nullptr;
    std::vector<std::uint8_t> buffer_;
    std::span<const std::uint8_t> window_;
    std::size_t base_ = 0;  // where the window starts
    std::size_t pos_ = 0;   // within the window
    std::size_t length_ = 0;
    bool overrun_ = false;
    bool failed_ = false;
};
