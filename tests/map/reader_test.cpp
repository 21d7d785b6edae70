// The map reader against maps written byte by byte: each grid chunk, the
// other chunks, the quirks of real files read, and each damage refused with
// a message that says what and where.
#include <gtest/gtest.h>

#include <cstring>
#include <functional>

#include "map/describe.h"
#include "map/usage.h"
#include "mapfiles.h"

namespace {

using namespace ombrevale;
using testsupport::Bytes;
using testsupport::Read;
using testsupport::SmallTown;

struct GridCase {
    const char* name;
    const char* chunk;
    std::function<Bytes(const mapwriter::Grid&)> payload;
};

class EachGrid : public ::testing::TestWithParam<GridCase> {};

TEST_P(EachGrid, EveryCellReadsAsWritten) {
    const auto g = SmallTown();
    const auto read = Read(mapwriter::MapBytes().Add(GetParam().chunk, GetParam().payload(g)).bytes());
    ASSERT_TRUE(read.map) << read.error;
    const map::Map& m = *read.map;
    EXPECT_STREQ(map::SourceName(m.source), GetParam().chunk);
    int differ = 0;
    for (int z = 0; z < map::kLevels; ++z)
        for (int y = 0; y < map::kSide; ++y)
            for (int x = 0; x < map::kSide; ++x) {
                const auto& w = g.at(x, y, z);
                const auto& r = m.At(x, y, z);
                differ += !(w.left == r.left && w.right == r.right && w.top == r.top && w.bottom == r.bottom &&
                            w.lid == r.lid && w.arrows == r.arrows && w.slope == r.slope);
            }
    EXPECT_EQ(differ, 0);
    EXPECT_EQ(m.CountBlocks(), 7);
}

INSTANTIATE_TEST_SUITE_P(Map, EachGrid,
                         ::testing::Values(GridCase{"DMAP", "DMAP", mapwriter::DmapPayload},
                                           GridCase{"CMAP", "CMAP", mapwriter::CmapPayload},
                                           GridCase{"UMAP", "UMAP", mapwriter::UmapPayload}),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(MapReader, TheOtherChunksInFileOrderAndUnknownOnesKept) {
    using namespace mapwriter;
    Grid older;
    older.at(3, 3, 1).lid = Lid(600);
    const Bytes edit = {1, 2, 3, 4, 5};
    const auto bytes = MapBytes()
                           .Add("CMAP", CmapPayload(older))
                           .Add("ZONE", ZonePayload({{2, 10, 20, 2, 3, "lights1"}, {0, 0, 0, 255, 255, "town"}}))
                           .Add("DMAP", DmapPayload(SmallTown()))
                           .Add("LGHT", LightPayload({{0xFF102030u, 640, 1280, 256, 384, 200, 1, 2, 3}}))
                           .Add("ANIM", AnimPayload({{77, 8, 0, {77, 78, 79}}, {80, 1, 2, {}}}))
                           .Add("MOBJ", ObjectPayload({{128, 256, 64, 9}}))
                           .Add("EDIT", edit)
                           .bytes();
    const auto read = Read(bytes);
    ASSERT_TRUE(read.map) << read.error;
    const map::Map& m = *read.map;
    // The DMAP is drawn; the older CMAP beside it is kept unread.
    EXPECT_EQ(m.source, map::GridSource::DMAP);
    EXPECT_EQ(map::TileOf(m.At(3, 3, 1).lid), 0);
    std::vector<std::string> types;
    for (const auto& c : m.chunks) types.push_back(c.type);
    EXPECT_EQ(types, (std::vector<std::string>{"CMAP", "ZONE", "DMAP", "LGHT", "ANIM", "MOBJ", "EDIT"}));
    EXPECT_EQ(m.chunks[6].size, 5u);
    ASSERT_EQ(m.kept.size(), 2u);
    EXPECT_EQ(m.kept[1].type, "EDIT");
    EXPECT_EQ(m.kept[1].bytes, edit);

    ASSERT_EQ(m.zones.size(), 2u);
    EXPECT_EQ(m.zones[0].name, "lights1");
    EXPECT_EQ((std::vector<int>{m.zones[0].type, m.zones[0].x, m.zones[0].y, m.zones[0].w, m.zones[0].h}),
              (std::vector<int>{2, 10, 20, 2, 3}));
    ASSERT_EQ(m.lights.size(), 1u);
    const auto& l = m.lights[0];
    EXPECT_EQ(l.argb, 0xFF102030u);
    EXPECT_EQ((std::vector<int>{l.x, l.y, l.z, l.radius, l.intensity, l.shape, l.onTime, l.offTime}),
              (std::vector<int>{640, 1280, 256, 384, 200, 1, 2, 3}));
    ASSERT_EQ(m.animations.size(), 2u);
    EXPECT_EQ(m.animations[0].tiles, (std::vector<std::uint16_t>{77, 78, 79}));
    EXPECT_EQ(m.animations[1].repeat, 2);
    ASSERT_EQ(m.objects.size(), 1u);
    EXPECT_EQ((std::vector<int>{m.objects[0].x, m.objects[0].y, m.objects[0].rotation, m.objects[0].type}),
              (std::vector<int>{128, 256, 64, 9}));
}

// Bytes of a DMAP payload: the base table, then the column words.
constexpr std::size_t kColumnsAt = 256 * 256 * 4 + 4;

void PutU32(Bytes& b, std::size_t at, std::uint32_t v) {
    for (int i = 0; i < 4; ++i) b[at + static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(v >> (8 * i));
}
std::uint32_t U32(const Bytes& b, std::size_t at) {
    std::uint32_t v = 0;
    for (std::size_t i = 4; i-- > 0;) v = v << 8 | b[at + i];
    return v;
}
// The payload with the column of (0, 0) changed.
Bytes DmapWith(const std::function<void(Bytes&, std::size_t head)>& change) {
    Bytes d = mapwriter::DmapPayload(SmallTown());
    change(d, kColumnsAt + 4 * U32(d, 0));
    return mapwriter::MapBytes().Add("DMAP", d).bytes();
}

// The last column's blocks run past the column words: the count shrunk by one.
Bytes ColumnsPastTheirWords() {
    Bytes d = mapwriter::DmapPayload(SmallTown());
    const std::uint32_t words = U32(d, kColumnsAt - 4);
    PutU32(d, kColumnsAt - 4, words - 1);
    d.erase(d.begin() + static_cast<std::ptrdiff_t>(kColumnsAt + 4 * (words - 1)),
            d.begin() + static_cast<std::ptrdiff_t>(kColumnsAt + 4 * words));
    return mapwriter::MapBytes().Add("DMAP", d).bytes();
}

struct Damage {
    const char* name;
    Bytes bytes;
    const char* says;
};

class Refused : public ::testing::TestWithParam<Damage> {};

TEST_P(Refused, WithOneMessageSayingWhatAndWhere) {
    const auto read = Read(GetParam().bytes);
    EXPECT_FALSE(read.map);
    EXPECT_NE(read.error.find(GetParam().says), std::string::npos) << read.error;
    EXPECT_EQ(read.error.rfind("test.gmp", 0), 0u) << read.error;
}

std::vector<Damage> Damages() {
    using namespace mapwriter;
    const Bytes good = MapBytes().Add("DMAP", DmapPayload(SmallTown())).bytes();
    Bytes cutHead = MapBytes().Add("DMAP", DmapPayload(SmallTown())).Raw({'Z', 'O', 'N'}).bytes();
    return {
        {"BadMagic", MapBytes("GBST").Add("DMAP", {}).bytes(), "does not begin with \"GBMP\""},
        {"Empty", {}, "does not begin"},
        {"OtherVersion", MapBytes("GBMP", 501).Add("DMAP", DmapPayload(SmallTown())).bytes(), "version 501"},
        {"ChunkPastTheEnd", MapBytes().AddWithSize("ZONE", 100, {1, 2, 3}).bytes(), "past the end of the file"},
        {"ChunkHeadCutShort", cutHead, "cut short"},
        {"NoGrid", MapBytes().Add("ZONE", {}).bytes(), "no DMAP, UMAP or CMAP"},
        {"BlocksCutShort", MapBytes().Add("DMAP", Bytes(good.begin() + 14, good.end() - 5)).bytes(), "blocks needs"},
        {"BaseTableCutShort", MapBytes().Add("DMAP", Bytes(1000, 0)).bytes(), "the base table needs"},
        {"BaseOffsetOutOfRange", DmapWith([](Bytes& d, std::size_t) { PutU32(d, 0, 0x7FFFFFFF); }),
         "(0, 0) starts at word 2147483647"},
        {"ColumnTooHigh", DmapWith([](Bytes& d, std::size_t head) { d[head] = 9; }), "height 9"},
        {"OffsetAboveHeight", DmapWith([](Bytes& d, std::size_t head) { d[head + 1] = 5; }), "offset 5"},
        {"BlockNumberOutOfRange", DmapWith([](Bytes& d, std::size_t head) { PutU32(d, head + 4, 99999); }),
         "names block 99999 at level 1"},
        {"ZoneNamePastItsChunk", MapBytes().Add("DMAP", DmapPayload({})).Add("ZONE", {0, 1, 1, 1, 1, 9, 'a'}).bytes(),
         "the name of zone 0"},
        {"AnimFramesPastTheirChunk",
         MapBytes().Add("DMAP", DmapPayload({})).Add("ANIM", {77, 0, 1, 0, 3, 0, 78, 0}).bytes(),
         "the frames of animation 0"},
        {"LightCutShort", MapBytes().Add("DMAP", DmapPayload({})).Add("LGHT", Bytes(20, 0)).bytes(), "light 1"},
        {"ObjectCutShort", MapBytes().Add("DMAP", DmapPayload({})).Add("MOBJ", Bytes(7, 0)).bytes(), "map object 1"},
        {"ColumnsPastTheirWords", ColumnsPastTheirWords(), "past the column words"},
        {"UmapCutShort", MapBytes().Add("UMAP", Bytes(12 * 100, 0)).bytes(), "the uncompressed grid needs"},
    };
}

INSTANTIATE_TEST_SUITE_P(Map, Refused, ::testing::ValuesIn(Damages()),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(MapUsage, CountsLidsAndSidesByTileAndFindsTheirColumns) {
    const auto read = Read(mapwriter::MapBytes()
                               .Add("DMAP", mapwriter::DmapPayload(SmallTown()))
                               .Add("ANIM", mapwriter::AnimPayload({{77, 8, 0, {77, 90}}}))
                               .bytes());
    ASSERT_TRUE(read.map) << read.error;
    const auto u = map::CountTiles(*read.map);
    EXPECT_EQ(u.lids[365], 1);
    EXPECT_EQ(u.lids[209], 1);
    EXPECT_EQ(u.lids[1023], 1);  // counted, though never drawn
    EXPECT_EQ(u.lids[0], 0);
    EXPECT_EQ(u.sides[700], 3);
    EXPECT_EQ(u.sides[662] + u.sides[663] + u.sides[664], 3);
    EXPECT_EQ(u.sides[5], 1);
    EXPECT_TRUE(u.Used(90));  // an animation's frame
    EXPECT_FALSE(u.Used(91));
    const auto at = map::ColumnsUsing(*read.map, 700);
    ASSERT_EQ(at.size(), 1u);
    EXPECT_EQ(at[0].x + at[0].y, 0);
}

struct StackCase {
    const char* name;
    std::vector<std::pair<int, std::uint16_t>> lids;  // level, lid word
    int cut;
    std::vector<int> drawn;  // levels, highest first
};

class Stacks : public ::testing::TestWithParam<StackCase> {};

TEST_P(Stacks, DrawTheHighestLidAndWhatAFlatOneShows) {
    mapwriter::Grid g;
    for (const auto& [z, lid] : GetParam().lids) g.at(4, 4, z).lid = lid;
    const auto read = Read(mapwriter::MapBytes().Add("DMAP", mapwriter::DmapPayload(g)).bytes());
    ASSERT_TRUE(read.map) << read.error;
    const auto s = map::DrawnStack(*read.map, 4, 4, GetParam().cut);
    EXPECT_EQ(std::vector<int>(s.z.begin(), s.z.begin() + s.count), GetParam().drawn);
}

INSTANTIATE_TEST_SUITE_P(
    Map, Stacks,
    ::testing::Values(StackCase{"Highest", {{1, mapwriter::Lid(5)}, {3, mapwriter::Lid(6)}}, 7, {3}},
                      StackCase{"CutBelowTheRoof", {{1, mapwriter::Lid(5)}, {3, mapwriter::Lid(6)}}, 2, {1}},
                      StackCase{"FlatShowsBelow", {{1, mapwriter::Lid(5)}, {3, mapwriter::Lid(6, 0, true)}}, 7, {3, 1}},
                      StackCase{"NoLidAndSlopeMarkPassedOver",
                                {{1, mapwriter::Lid(5)}, {2, mapwriter::Lid(1023)}, {3, mapwriter::Lid(0, 3)}},
                                7,
                                {1}},
                      StackCase{"Nothing", {}, 7, {}}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(MapDescribe, NamesTheDrawnBlockItsFacesAndZones) {
    const auto read = Read(mapwriter::MapBytes()
                               .Add("DMAP", mapwriter::DmapPayload(SmallTown()))
                               .Add("ZONE", mapwriter::ZonePayload({{0, 0, 0, 2, 2, "docks"}}))
                               .bytes());
    ASSERT_TRUE(read.map) << read.error;
    const std::string text = map::DescribeColumn(*read.map, 0, 0, 7);
    for (const char* part : {"x 0, y 0, z 3", "lid 365 (90\u00B0, flipped, light 2)", "slope 0, air",
                             "L 664 R 0 T 700 B 0", "zones: docks"})
        EXPECT_NE(text.find(part), std::string::npos) << part << " in " << text;
}

}  // namespace
