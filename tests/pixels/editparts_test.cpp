// Undo's parts: what an edit changed, put back, leaves every store as it was
// before the edit, and put forward again, as it was after.
#include <gtest/gtest.h>

#include <functional>

#include "pixels/editparts.h"
#include "support/hookrecorder.h"
#include "support/storesnapshot.h"

#ifdef OMBREVALE_SAMPLE
namespace {

using ombrevale::editparts::Kind;

using ombrevale::testsupport::TakeSnapshot;

struct Edit {
    const char* name;
    Kind kind;
    std::int32_t number;
    std::function<void(clsSTY&)> change;
};

ByteString Filled(std::size_t n, std::uint8_t v) { return ByteString(n, v); }

class PutBack : public ::testing::TestWithParam<Edit> {};

TEST_P(PutBack, BeforeAndAfterByteForByte) {
    const Edit& e = GetParam();
    ombrevale::testsupport::HookRecorder hooks;
    clsSTY doc;
    ASSERT_TRUE(doc.LoadSTY(OMBREVALE_SAMPLE));
    const auto original = TakeSnapshot(doc);
    const auto before = ombrevale::editparts::Take(doc, e.kind, e.number);
    e.change(doc);
    const auto changed = TakeSnapshot(doc);
    ASSERT_NE(changed, original) << "the edit changes nothing";
    const auto after = ombrevale::editparts::Take(doc, e.kind, e.number);
    ombrevale::editparts::Put(doc, before);
    EXPECT_EQ(TakeSnapshot(doc), original);
    ombrevale::editparts::Put(doc, after);
    EXPECT_EQ(TakeSnapshot(doc), changed);
    EXPECT_TRUE(hooks.messages().empty());
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, PutBack,
    ::testing::Values(Edit{"tile", Kind::Tile, 7, [](clsSTY& d) { d.SetBitsTile(7, Filled(4096, 3)); }},
                      // The sprite's block holds its padding, which a write through SetBits may change too.
                      Edit{"sprite", Kind::Sprite, 2, [](clsSTY& d) { d.SetBits(2, Filled(d.GetBits(2).size(), 9)); }},
                      Edit{"deltas", Kind::Deltas, 0,
                           [](clsSTY& d) {
                               ByteString bits = d.GetBits(modDeclares::STYDeltaIndex.at(0).sprite);
                               bits.back() ^= 1;
                               ASSERT_TRUE(d.SetDeltaBits(0, modDeclares::STYDeltaIndex.at(0).sprite, bits));
                           }},
                      Edit{"palette", Kind::Palette, 1, [](clsSTY&) { modDeclares::STYPalData.at(1)[40] ^= 0xFF; }},
                      Edit{"recycling", Kind::Recycling, 0,
                           [](clsSTY&) { modDeclares::STYRecycle.insert(modDeclares::STYRecycle.begin(), 7); }}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
#endif
