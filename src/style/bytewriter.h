#pragma once
// Appends little-endian numbers and byte runs to a growing buffer.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

class ByteWriter {
public:
    explicit ByteWriter(std::vector<std::uint8_t>& out) : out_(out) {}

    void U8(std::uint8_t v) { out_.push_back(v); }
    void U16(std::uint16_t v) {
        out_.push_back(static_cast<std::uint8_t>(v & 0xFF));
        out_.push_back(static_cast<std::uint8_t>(v >> 8));
    }
    void I16(std::int16_t v) { U16(static_cast<std::uint16_t>(v)); }
    void U32(std::uint32_t v) {
        for (int shift = 0; shift < 32; shift += 8) out_.push_back(static_cast<std::uint8_t>((v >> shift) & 0xFF));
    }
    void I32(std::int32_t v) { U32(static_cast<std::uint32_t>(v)); }
    void Bytes(std::span<const std::uint8_t> bytes) { out_.insert(out_.end(), bytes.begin(), bytes.end()); }
    void Zeros(std::size_t n) { out_.insert(out_.end(), n, 0); }
    // n more bytes, zeroed, for the caller to fill in place.
    std::span<std::uint8_t> Grow(std::size_t n) {
        const std::size_t at = out_.size();
        out_.resize(at + n);
        return std::span(out_).subspan(at, n);
    }

private:
    std::vector<std::uint8_t>& out_;
};
