// A cursor over a stream reads exactly what one over the same bytes in memory
// reads, however the stream splits its deliveries; a stream that gives out
// early is a failure, and a load it happens to says so.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <string>
#include <vector>

#include "style/bytecursor.h"
#include "style/clssty.h"
#include "style/hooks.h"
#include "stylewriter/stylewriter.h"
#include "support/tempdir.h"

namespace {

using ombrevale::stylewriter::Bytes;

// Hands out at most `piece` bytes a call (1 to 7 at random when 0), and
// nothing past `givesOutAt`.
class Trickle : public ByteSource {
public:
    Trickle(const Bytes& bytes, std::size_t piece, std::size_t givesOutAt, unsigned seed)
        : bytes_(bytes), piece_(piece), end_(std::min(givesOutAt, bytes.size())), rng_(seed) {}
    std::size_t Read(std::uint8_t* to, std::size_t n) override {
        const std::size_t piece = piece_ ? piece_ : std::uniform_int_distribution<std::size_t>(1, 7)(rng_);
        const std::size_t got = std::min({n, piece, end_ > at_ ? end_ - at_ : 0});
        std::copy_n(bytes_.begin() + static_cast<long>(at_), got, to);
        at_ += got;
        return got;
    }
    bool Seek(std::size_t offset) override {
        at_ = offset;
        return offset <= bytes_.size();
    }

private:
    const Bytes& bytes_;
    std::size_t piece_, end_, at_ = 0;
    std::mt19937 rng_;
};

// One step of a script, applied alike to both cursors; returns what it read.
std::vector<std::int64_t> Step(ByteCursor& in, int op, std::size_t n) {
    if (op == 0) return {in.U8()};
    if (op == 1) return {in.U16()};
    if (op == 2) return {in.I32()};
    if (op == 3) {
        const auto s = in.Take(n);
        return std::vector<std::int64_t>(s.begin(), s.end());
    }
    if (op == 4) {
        in.Skip(n);
        return {};
    }
    std::vector<std::uint8_t> to(n);
    const bool ok = in.CopyTo(to.data(), n);
    std::vector<std::int64_t> out(to.begin(), to.end());
    out.push_back(ok);
    return out;
}

struct TrickleCase {
    const char* name;
    std::size_t piece;
};

TEST(ByteCursorStream, ReadsWhatMemoryReadsHoweverTheStreamSplits) {
    Bytes bytes(300000);
    std::mt19937 fill(7);
    for (auto& b : bytes) b = static_cast<std::uint8_t>(fill());
    const TrickleCase cases[] = {
        {"1 to 7 bytes a call", 0}, {"one byte a call", 1}, {"4093 a call", 4093}, {"all at once", 1 << 20}};
    for (const TrickleCase& c : cases) {
        for (unsigned seed = 1; seed <= 4; ++seed) {
            SCOPED_TRACE(std::string(c.name) + ", seed " + std::to_string(seed));
            Trickle source(bytes, c.piece, bytes.size(), seed);
            ByteCursor streamed(source, bytes.size());
            ByteCursor whole(bytes);
            std::mt19937 rng(seed);
            while (!whole.AtEnd()) {
                const int op = static_cast<int>(rng() % 6);
                // Mostly small reads, sometimes past a chunk, now and then past the end.
                const std::size_t n = rng() % 8 == 0 ? rng() % 140000 : rng() % 300;
                ASSERT_EQ(Step(streamed, op, n), Step(whole, op, n)) << "op " << op << " n " << n;
                ASSERT_EQ(streamed.Position(), whole.Position());
                ASSERT_EQ(streamed.Overrun(), whole.Overrun());
            }
            EXPECT_TRUE(streamed.AtEnd());
            EXPECT_FALSE(streamed.Failed());
        }
    }
    // A stream that cannot seek as far as its length says has given out too.
    Trickle shorter(bytes, 4093, bytes.size(), 1);
    ByteCursor past(shorter, 2 * bytes.size());
    past.Skip(bytes.size() + 1);
    EXPECT_TRUE(past.Failed());
}

// The file shrinks between its length being read and its sections: the load
// tells the user it could not read the whole file, not that it is damaged.
TEST(ByteCursorStream, AFileCutWhileLoadingIsReportedAsUnread) {
    ombrevale::testsupport::TempDir dir;
    const std::string path = dir.File("shrinks.sty");
    std::vector<ombrevale::stylewriter::TilePixels> tiles(64);
    for (std::size_t t = 0; t < tiles.size(); ++t) tiles[t].fill(static_cast<std::uint8_t>(t));
    ombrevale::stylewriter::WriteFile(
        path, ombrevale::stylewriter::StyleBytes().Add("TILE", ombrevale::stylewriter::TilePayload(tiles)).bytes());
    std::vector<std::string> messages;
    DocumentHooks hooks;
    hooks.progressStart = [&](double, double, const std::string&) { std::filesystem::resize_file(path, 100000); };
    hooks.msgBox = [&](const std::string& text, const std::string&, MsgIcon) { messages.push_back(text); };
    ScopedDocumentHooks scope(hooks);
    clsSTY doc;
    EXPECT_FALSE(doc.LoadSTY(path));
    ASSERT_EQ(messages.size(), 1u);
    EXPECT_NE(messages[0].find("could not be read to its end"), std::string::npos) << messages[0];
    // The tile count never runs ahead of the tiles read.
    EXPECT_EQ(static_cast<std::size_t>(doc.GetNumOfTiles()), doc.STYTileStore.size());
}

}  // namespace
