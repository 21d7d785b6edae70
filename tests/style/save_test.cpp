#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

#include "style/clssty.h"
#include "stylefiletest.h"
#include "stylewriter/stylewriter.h"
#include "support/hookrecorder.h"

using namespace ombrevale::testsupport;
using namespace ombrevale::stylewriter;
namespace fs = std::filesystem;

namespace {

using SaveTest = StyleFileTest;

// The writer's own file comes back byte for byte; one in another order, with
// lower-case tags, version 700, odd fixed sizes and an unknown section loads
// without a word and comes out in the writer's form, which is the full file.
TEST_F(SaveTest, FilesComeBackInTheWritersForm) {
    const auto full = ombrevale::stylewriter::MakeFullStyle();
    for (const Bytes& in : {full.file.bytes(), ombrevale::stylewriter::MakeScrambledStyle(full).bytes()}) {
        modDeclares::ResetSharedStores();
        clsSTY fresh;
        HookRecorder hooks;
        ASSERT_TRUE(Load(in, fresh));
        EXPECT_TRUE(hooks.messages().empty());
        const std::string out = dir.File("out.sty");
        ASSERT_TRUE(fresh.SaveSTY(out));
        EXPECT_EQ(ReadFile(out), full.file.bytes());
    }
}

TEST_F(SaveTest, ProgressHasOneStepPerPresentSection) {
    const Bytes tiles(16384, 7), pals(65536, 9);
    const Bytes file = StyleBytes().Add("PPAL", pals).Add("tile", tiles).bytes();
    ASSERT_TRUE(Load(file));
    const std::string out = dir.File("out.sty");
    HookRecorder hooks;
    ASSERT_TRUE(doc.SaveSTY(out));
    EXPECT_EQ(hooks.calls(), (std::vector<std::string>{"start 1 14 Please wait...", "step 1 Saving TILE...",
                                                       "step 2 Saving PPAL...", "end"}));
    EXPECT_EQ(ReadFile(out), StyleBytes().Add("TILE", tiles).Add("PPAL", pals).bytes());
}

TEST_F(SaveTest, EmptyPresentSectionsKeepTheirHeads) {
    const Bytes file = StyleBytes().Add("OBJI", {}).Add("SPEC", {}).Add("DELX", {}).Add("CARI", {}).bytes();
    ASSERT_TRUE(Load(file));
    const std::string out = dir.File("out.sty");
    ASSERT_TRUE(doc.SaveSTY(out));
    EXPECT_EQ(ReadFile(out), StyleBytes().Add("DELX", {}).Add("OBJI", {}).Add("CARI", {}).Add("SPEC", {}).bytes());
}

TEST_F(SaveTest, BackupHoldsTheFileAsItStoodBeforeEachSave) {
    ASSERT_TRUE(Load(ombrevale::stylewriter::MakeFullStyle().file.bytes()));
    const std::string out = dir.File("style");  // no extension: the suffix still goes behind the name
    ASSERT_TRUE(doc.SaveSTY(out));
    EXPECT_FALSE(fs::exists(out + ".bak")) << "nothing to keep at a new path";
    const Bytes old = Text("an older file");
    WriteFile(out, old);

    ASSERT_TRUE(doc.SaveSTY(out));
    EXPECT_EQ(ReadFile(out + ".bak"), old);
    const Bytes first = ReadFile(out);

    ASSERT_TRUE(doc.SaveSTY(out));
    EXPECT_EQ(ReadFile(out), first);
    EXPECT_EQ(ReadFile(out + ".bak"), first);
}

}  // namespace
