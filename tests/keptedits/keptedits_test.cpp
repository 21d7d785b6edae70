// The store of kept edits: what is kept comes back whole, the folder is the
// user's alone, and nothing is written through a link.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "keptedits/keptedits.h"
#include "stylewriter/stylewriter.h"
#include "support/tempdir.h"

namespace fs = std::filesystem;
using namespace ombrevale::keptedits;

namespace {

struct KeptEdits : ::testing::Test {
    ombrevale::testsupport::TempDir dir;
    std::string style = dir.File("city.sty");
    Store store{dir.File("state/ombrevale/recovery")};
    void SetUp() override { ombrevale::stylewriter::WriteFile(style, {1, 2, 3, 4}); }
    Entry Made(std::vector<std::string> edits) { return {OriginOf(style), 1700000000000, std::move(edits)}; }
};

TEST_F(KeptEdits, KeptComesBackWholeAndGoesWithDiscard) {
    ASSERT_FALSE(store.Keep(Made({"import into tile 5"}), {9, 8, 7}));
    ASSERT_FALSE(store.Keep(Made({"import into tile 5", "add 7 to recycling"}), {6, 5}));  // replaces the first
    const auto found = store.Find(style);
    ASSERT_TRUE(found);
    EXPECT_EQ(found->from, OriginOf(style));
    EXPECT_EQ(found->edits, (std::vector<std::string>{"import into tile 5", "add 7 to recycling"}));
    std::vector<std::uint8_t> kept;
    ASSERT_FALSE(store.ReadDocument(style, kept));
    EXPECT_EQ(kept, (std::vector<std::uint8_t>{6, 5}));
    ASSERT_EQ(store.List().size(), 1u);
    EXPECT_EQ(fs::status(store.Folder()).permissions() & fs::perms::all, fs::perms::owner_all);
    EXPECT_EQ(Describe(*found).rfind("Unsaved edits of city.sty from ", 0), 0u) << Describe(*found);
    EXPECT_NE(Describe(*found).find("(2 edits: Import into tile 5, Add 7 to recycling)"), std::string::npos);
    ASSERT_FALSE(store.Discard(style));
    EXPECT_FALSE(store.Find(style));
    EXPECT_TRUE(store.List().empty());
    EXPECT_TRUE(store.ReadDocument(style, kept));
}

// A link in our folder's place, or in an entry's, is never written through.
TEST_F(KeptEdits, LinksAreNeverFollowed) {
    const std::string precious = dir.File("precious");
    ombrevale::stylewriter::WriteFile(precious, {42});
    fs::create_directories(dir.path() / "state/ombrevale");
    fs::create_directory(dir.path() / "elsewhere");
    fs::create_directory_symlink(dir.path() / "elsewhere", store.Folder());
    EXPECT_TRUE(store.Keep(Made({"x"}), {1}));
    EXPECT_TRUE(fs::is_empty(dir.path() / "elsewhere"));
    fs::remove(store.Folder());
    ASSERT_FALSE(store.Keep(Made({"x"}), {1}));
    const std::string kept = store.DocumentPath(style);
    fs::remove(kept);
    fs::create_symlink(precious, kept);
    ASSERT_FALSE(store.Keep(Made({"x"}), {1, 1}));
    EXPECT_EQ(ombrevale::stylewriter::ReadFile(precious), (std::vector<std::uint8_t>{42}));
    EXPECT_FALSE(fs::is_symlink(kept));
}

// The file reached through a link, or by a path of other spelling, is the same entry.
TEST_F(KeptEdits, EntriesAreThoseOfTheFileItself) {
    const std::string link = dir.File("link.sty");
    fs::create_symlink(style, link);
    ASSERT_FALSE(store.Keep(Made({"x"}), {9}));
    ASSERT_TRUE(store.Find(link));
    ASSERT_TRUE(store.Find(dir.File("./city.sty")));
    ASSERT_FALSE(store.Discard(link));
    EXPECT_FALSE(store.Find(style));
}

// A name or an edit's text may hold what reads as the place of an argument.
TEST_F(KeptEdits, DescribeTakesTextAsItIs) {
    style = dir.File("100%1.sty");
    ombrevale::stylewriter::WriteFile(style, {1});
    const std::string text = Describe(Made({"import %5 into tile %1", "b", "c"}));
    EXPECT_EQ(text.rfind("Unsaved edits of 100%1.sty from ", 0), 0u) << text;
    EXPECT_NE(text.find("(3 edits: Import %5 into tile %1, B, "), std::string::npos) << text;
}

TEST_F(KeptEdits, ChangedSinceLooksAtTheBytes) {
    const Entry entry = Made({"x"});
    EXPECT_FALSE(ChangedSince(entry));
    fs::last_write_time(style, fs::last_write_time(style) + std::chrono::hours(1));
    EXPECT_FALSE(ChangedSince(entry)) << "touched, same bytes";
    ombrevale::stylewriter::WriteFile(style, {1, 2, 3, 5});
    EXPECT_TRUE(ChangedSince(entry));
    fs::remove(style);
    EXPECT_TRUE(ChangedSince(entry));
}

}  // namespace
