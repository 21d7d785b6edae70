#pragma once
// Reads little-endian numbers from a byte buffer and always knows how many
// bytes are left. Callers check Remaining() before a read; a read past the end
// anyway yields zeros and marks the cursor as overrun instead of reading on.

#include <cstddef>
#include <cstdint>
#include <span>

class ByteCursor {
public:
    explicit ByteCursor(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::size_t Position() const { return pos_; }
    std::size_t Remaining() const { return bytes_.size() - pos_; }
    bool AtEnd() const { return pos_ >= bytes_.size(); }
    bool Overrun() const { return overrun_; }

    std::uint8_t U8() {
        if (!Has(1)) return 0;
        return bytes_[pos_++];
    }
    std::uint16_t U16() {
        if (!Has(2)) return 0;
        const auto v = static_cast<std::uint16_t>(bytes_[pos_] | (bytes_[pos_ + 1] << 8));
        pos_ += 2;
        return v;
    }
    std::int16_t I16() { return static_cast<std::int16_t>(U16()); }
    std::int32_t I32() {
        if (!Has(4)) return 0;
        const std::uint32_t v =
            static_cast<std::uint32_t>(bytes_[pos_]) | (static_cast<std::uint32_t>(bytes_[pos_ + 1]) << 8) |
            (static_cast<std::uint32_t>(bytes_[pos_ + 2]) << 16) | (static_cast<std::uint32_t>(bytes_[pos_ + 3]) << 24);
        pos_ += 4;
        return static_cast<std::int32_t>(v);
    }
    // The next n bytes, or an empty span (and overrun) if fewer are left.
    std::span<const std::uint8_t> Take(std::size_t n) {
        if (!Has(n)) return {};
        auto s = bytes_.subspan(pos_, n);
        pos_ += n;
        return s;
    }
    void Skip(std::size_t n) {
        if (Has(n)) pos_ += n;
    }

private:
    bool Has(std::size_t n) {
        if (n <= Remaining()) return true;
        overrun_ = true;
        pos_ = bytes_.size();
        return false;
    }

    std::span<const std::uint8_t> bytes_;
    std::size_t pos_ = 0;
    bool overrun_ = false;
};
