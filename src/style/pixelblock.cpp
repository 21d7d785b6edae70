#include "style/pixelblock.h"

#include <cstring>
#include <mutex>
#include <unordered_map>

namespace {

// Equal hashes are told apart by their bytes; past this many blocks under one
// hash a new one stays out of the pool, so a file built to collide costs a
// few comparisons a tile and never a search through all of them.
constexpr std::size_t kMaxSameHash = 8;

struct Entry {
    const PixelBlock* block;
    std::weak_ptr<const PixelBlock> owner;
};

struct Pool {
    std::mutex lock;
    std::unordered_multimap<std::uint64_t, Entry> live;
};

// Never destroyed: blocks may outlive every static object.
Pool& ThePool() {
    static Pool* pool = new Pool;
    return *pool;
}

// Four independent lanes keep the multiplier busy; 4 KB hash in well under a microsecond.
std::uint64_t Hash(const std::uint8_t* p) {
    constexpr std::uint64_t kMul = 0x9E3779B97F4A7C15ull;
    std::uint64_t h[4] = {0x243F6A8885A308D3ull, 0x13198A2E03707344ull, 0xA4093822299F31D0ull, 0x082EFA98EC4E6C89ull};
    for (std::size_t i = 0; i < kPixelBlockBytes; i += 32) {
        for (std::size_t k = 0; k < 4; ++k) {
            std::uint64_t w;
            std::memcpy(&w, p + i + 8 * k, 8);
            h[k] = (h[k] ^ w) * kMul;
            h[k] ^= h[k] >> 29;
        }
    }
    std::uint64_t out = 0;
    for (const std::uint64_t lane : h) out = (out ^ lane) * kMul + (out >> 31);
    return out;
}

struct Forget {
    std::uint64_t hash;
    void operator()(const PixelBlock* block) const {
        {
            Pool& pool = ThePool();
            const std::lock_guard guard(pool.lock);
            auto [it, end] = pool.live.equal_range(hash);
            for (; it != end; ++it) {
                if (it->second.block == block) {
                    pool.live.erase(it);
                    break;
                }
            }
        }
        delete block;
    }
};

}  // namespace

SharedPixelBlock InternPixelBlock(const std::uint8_t* bytes) {
    const std::uint64_t hash = Hash(bytes);
    Pool& pool = ThePool();
    std::size_t same = 0;
    {
        const std::lock_guard guard(pool.lock);
        for (auto [it, end] = pool.live.equal_range(hash); it != end; ++it, ++same) {
            // The block cannot be freed while the pool is locked: its deleter waits for the lock.
            if (std::memcmp(it->second.block->data(), bytes, kPixelBlockBytes) != 0) continue;
            // Expired: its last holder is gone and its deleter is waiting; make a new one.
            if (auto shared = it->second.owner.lock()) return shared;
        }
    }
    // Made unlocked: should making the shared pointer fail, its deleter takes the lock.
    // Not zeroed first: every byte is copied in at once.
    std::unique_ptr<PixelBlock> block(new PixelBlock);
    std::memcpy(block->data(), bytes, kPixelBlockBytes);
    if (same >= kMaxSameHash) return SharedPixelBlock(std::move(block));
    const PixelBlock* raw = block.get();
    SharedPixelBlock shared(block.release(), Forget{hash});
    const std::lock_guard guard(pool.lock);
    pool.live.emplace(hash, Entry{raw, shared});
    return shared;
}

std::size_t InternedPixelBlocks() {
    Pool& pool = ThePool();
    const std::lock_guard guard(pool.lock);
    return pool.live.size();
}
