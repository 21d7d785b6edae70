#include "style/bytecursor.h"

#include <algorithm>
#include <cstring>

namespace {
// Reads from a stream come in pieces at least this big.
constexpr std::size_t kChunk = std::size_t{1} << 16;
}  // namespace

bool ByteCursor::Overran() {
    overrun_ = true;
    base_ = length_;
    pos_ = 0;
    window_ = {};
    return false;
}

bool ByteCursor::Refill(std::size_t n) {
    if (n > Remaining() || !source_) return Overran();
    // Keep what is left unread, then read until n bytes are at hand.
    const std::size_t kept = window_.size() - pos_;
    const std::size_t want = std::min(std::max(n, kChunk), Remaining());
    if (buffer_.size() < want) {
        std::vector<std::uint8_t> bigger(want);
        if (kept) std::memcpy(bigger.data(), window_.data() + pos_, kept);
        buffer_.swap(bigger);
    } else if (kept) {
        std::memmove(buffer_.data(), window_.data() + pos_, kept);
    }
    std::size_t have = kept;
    while (have < want) {
        const std::size_t got = source_->Read(buffer_.data() + have, want - have);
        if (got == 0) break;
        have += got;
    }
    base_ += pos_;
    pos_ = 0;
    window_ = std::span<const std::uint8_t>(buffer_.data(), have);
    if (have >= n) return true;
    failed_ = true;
    return Overran();
}

bool ByteCursor::CopyTo(std::uint8_t* to, std::size_t n) {
    if (n > Remaining()) return Overran();
    while (n > 0) {
        const std::size_t piece = std::min(n, kChunk);
        const auto bytes = Take(piece);
        if (bytes.size() != piece) return false;
        std::memcpy(to, bytes.data(), piece);
        to += piece;
        n -= piece;
    }
    return true;
}

void ByteCursor::Skip(std::size_t n) {
    if (n > Remaining()) {
        Overran();
        return;
    }
    if (n <= window_.size() - pos_) {
        pos_ += n;
        return;
    }
    // Past the window: drop it and go on from the new place.
    base_ = Position() + n;
    pos_ = 0;
    window_ = {};
    if (source_ && !source_->Seek(base_)) {
        failed_ = true;
        Overran();
    }
}
