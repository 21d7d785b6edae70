// Undo's parts: what an edit changed, put back, leaves every store as it was
// before the edit, and put forward again, as it was after. A step of the
// deltas holds the span that changed, not the store.
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

// Delta 0 of the first sprite with deltas made anew from the sprite with `pixels` from its middle changed:
// one pixel gives a shorter delta than the sample's, many a longer one.
void RemakeDelta(clsSTY& d, std::size_t pixels) {
    const std::int16_t sprite = modDeclares::STYDeltaIndex.at(0).sprite;
    ByteString bits = d.GetBits(sprite);
    ASSERT_LE(pixels, bits.size() / 2);
    for (std::size_t i = bits.size() / 2; i < bits.size() / 2 + pixels; ++i) bits[i] ^= 1;
    ASSERT_TRUE(d.SetDeltaBits(0, sprite, bits));
}

class PutBack : public ::testing::TestWithParam<Edit> {};

TEST_P(PutBack, BeforeAndAfterByteForByte) {
    const Edit& e = GetParam();
    ombrevale::testsupport::HookRecorder hooks;
    clsSTY doc;
    ASSERT_TRUE(doc.LoadSTY(OMBREVALE_SAMPLE));
    const auto original = TakeSnapshot(doc);
    auto before = ombrevale::editparts::Take(doc, e.kind, e.number);
    e.change(doc);
    const auto changed = TakeSnapshot(doc);
    ASSERT_NE(changed, original) << "the edit changes nothing";
    auto after = ombrevale::editparts::Take(doc, e.kind, e.number);
    const std::size_t storeBytes = modDeclares::STYDeltaStore.size();
    ombrevale::editparts::Narrow(before, after);
    if (e.kind == Kind::Deltas) {
        EXPECT_LT(ombrevale::editparts::StepBytes(before, after), storeBytes / 4);
    }
    ombrevale::editparts::Put(doc, before);
    EXPECT_EQ(TakeSnapshot(doc), original);
    ombrevale::editparts::Put(doc, after);
    EXPECT_EQ(TakeSnapshot(doc), changed);
    EXPECT_TRUE(hooks.messages().empty());
}

// The first of each kind, where a bound check is most easily off by one.
INSTANTIATE_TEST_SUITE_P(
    Kinds, PutBack,
    ::testing::Values(Edit{"tile", Kind::Tile, 0, [](clsSTY& d) { d.SetBitsTile(0, Filled(4096, 3)); }},
                      // The sprite's block holds its padding, which a write through SetBits may change too.
                      Edit{"sprite", Kind::Sprite, 2, [](clsSTY& d) { d.SetBits(2, Filled(d.GetBits(2).size(), 9)); }},
                      Edit{"deltaShorter", Kind::Deltas, 0, [](clsSTY& d) { RemakeDelta(d, 1); }},
                      Edit{"deltaLonger", Kind::Deltas, 0, [](clsSTY& d) { RemakeDelta(d, 300); }},
                      Edit{"palette", Kind::Palette, 0, [](clsSTY&) { modDeclares::STYPalData.at(0)[40] ^= 0xFF; }},
                      Edit{"carRecord", Kind::Car, 0,
                           [](clsSTY&) {
                               auto& car = modDeclares::STYCarInfo.at(0);
                               car.remaps.push_back(1);
                               car.doors.clear();
                           }},
                      Edit{"recycling", Kind::Recycling, 0,
                           [](clsSTY&) { modDeclares::STYRecycle.insert(modDeclares::STYRecycle.begin(), 7); }},
                      Edit{"paletteEntry", Kind::PaletteEntry, 0, [](clsSTY&) { modDeclares::STYPalIndex.at(0) ^= 1; }},
                      // A page added for a picture's own palette: it goes, and comes back as zeros.
                      Edit{"paletteCount", Kind::PaletteCount, 0,
                           [](clsSTY& d) {
                               modDeclares::STYPalData.resize(modDeclares::STYPalData.size() + 64);
                               d.iPalCount = static_cast<std::int16_t>(d.iPalCount + 64);
                           }}),
    [](const auto& row) { return std::string(row.param.name); });

// Narrowed sides that share bytes at both ends, where the shared head and tail could overlap.
TEST(Narrow, EachSidePutBackFromTheOther) {
    using ombrevale::editparts::Part;
    const auto deltas = [](ByteString bytes) {
        Part p;
        p.kind = Kind::Deltas;
        p.bytes = std::move(bytes);
        return p;
    };
    const std::vector<std::pair<ByteString, ByteString>> rows = {
        {{1, 2, 2, 3}, {1, 2, 3}}, {{1, 2, 3}, {1, 2, 2, 3}}, {{}, {4, 5}}, {{7, 8, 9}, {7, 0, 9}}, {{5, 5}, {5, 5}}};
    clsSTY doc;
    auto& store = modDeclares::STYDeltaStore;
    for (const auto& [a, b] : rows) {
        Part before = deltas(a), after = deltas(b);
        ombrevale::editparts::Narrow(before, after);
        store = b;
        ombrevale::editparts::Put(doc, before);
        EXPECT_EQ(store, a);
        ombrevale::editparts::Put(doc, after);
        EXPECT_EQ(store, b);
    }
    // A store of another shape, as after a load, is left alone, and so is its index.
    Part before = deltas({1, 2, 3}), after = deltas({1, 2, 4});
    ombrevale::editparts::Narrow(before, after);
    store = {9};
    modDeclares::STYDeltaIndex = {modDeclares::DeltaEntry{3, 0, 0, {}}};
    ombrevale::editparts::Put(doc, before);
    EXPECT_EQ(store, ByteString{9});
    EXPECT_EQ(modDeclares::STYDeltaIndex.size(), 1u);
}

}  // namespace
#endif
