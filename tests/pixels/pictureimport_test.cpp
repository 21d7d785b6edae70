// Pictures brought back for import: the reader over the BMP kinds image
// editors save and over damaged files, and the sample's round trip.
#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "pixels/pictureimport.h"
#include "style/moddeclares.h"
#include "support/hookrecorder.h"
#include "support/tempdir.h"

namespace {

using ombrevale::picturefile::Picture;
using ombrevale::picturefile::ReadBMP;
using ombrevale::picturefile::Rgba;

void Put(ByteString& b, std::size_t at, std::uint32_t v, int n) {
    for (int i = 0; i < n; ++i) b[at + static_cast<std::size_t>(i)] = static_cast<std::uint8_t>(v >> (8 * i));
}

// The colour the test pictures have at x, y: one that 1-bit tables can hold too.
Rgba Want(int x, int y, int bits) {
    const auto n = static_cast<std::uint8_t>((x + 2 * y) % (bits == 1 ? 2 : 5));
    return {static_cast<std::uint8_t>(40 * n), static_cast<std::uint8_t>(7 + n), static_cast<std::uint8_t>(200 - n),
            255};
}

// Pixels whose alpha byte is 0 in the 32-bit pictures.
bool Clear(int x, int y) { return (x + y) % 3 == 0; }

struct Shape {
    const char* name;
    int bits;
    int width, height;
    bool topDown;
    std::uint32_t compression;  // 3: bit fields (32-bit, alpha in the top byte)
    std::uint32_t head = 40;    // 124: the head GIMP writes, whose masks include alpha
};

ByteString MakeBmp(const Shape& s) {
    const std::size_t table = s.bits <= 8 ? (std::size_t{1} << s.bits) * 4 : 0;
    const std::size_t masks = s.compression == 3 && s.head == 40 ? 16 : 0;
    const std::size_t stride = ((static_cast<std::size_t>(s.width) * static_cast<std::size_t>(s.bits) + 31) / 32) * 4;
    const std::size_t at = 14 + s.head + masks + table;
    ByteString b(at + stride * static_cast<std::size_t>(s.height), 0);
    b[0] = 'B';
    b[1] = 'M';
    Put(b, 10, static_cast<std::uint32_t>(at), 4);
    Put(b, 14, s.head, 4);
    Put(b, 18, static_cast<std::uint32_t>(s.width), 4);
    Put(b, 22, static_cast<std::uint32_t>(s.topDown ? -s.height : s.height), 4);
    Put(b, 26, 1, 2);
    Put(b, 28, static_cast<std::uint32_t>(s.bits), 2);
    Put(b, 30, s.compression, 4);
    if (s.compression == 3) {
        for (std::uint32_t k = 0; k < 4; ++k) Put(b, 54 + 4 * k, k < 3 ? 0xFF0000u >> (8 * k) : 0xFF000000u, 4);
    }
    for (std::size_t n = 0; n < table / 4; ++n) {
        const Rgba c = Want(static_cast<int>(n), 0, s.bits);
        Put(b, 14 + s.head + masks + 4 * n, static_cast<std::uint32_t>(c.b | c.g << 8 | c.r << 16), 4);
    }
    for (int y = 0; y < s.height; ++y) {
        const std::size_t row = at + static_cast<std::size_t>(s.topDown ? y : s.height - 1 - y) * stride;
        for (int x = 0; x < s.width; ++x) {
            const Rgba c = Want(x, y, s.bits);
            const auto n = static_cast<std::uint32_t>((x + 2 * y) % (s.bits == 1 ? 2 : 5));
            const auto bit = static_cast<std::size_t>(x * s.bits);
            if (s.bits <= 8)
                b[row + bit / 8] |= static_cast<std::uint8_t>(n << (8u - static_cast<unsigned>(s.bits) - bit % 8));
            else
                Put(b, row + bit / 8,
                    static_cast<std::uint32_t>(c.b | c.g << 8 | c.r << 16) | (Clear(x, y) ? 0u : 0xFF000000u),
                    s.bits / 8);
        }
    }
    return b;
}

class ReadsBmp : public ::testing::TestWithParam<Shape> {};

TEST_P(ReadsBmp, EveryPixelInPlace) {
    const Shape& s = GetParam();
    Picture pic;
    ASSERT_FALSE(ReadBMP(MakeBmp(s), pic));
    ASSERT_EQ(pic.width, s.width);
    ASSERT_EQ(pic.height, s.height);
    for (int y = 0; y < s.height; ++y)
        for (int x = 0; x < s.width; ++x) {
            Rgba want = Want(x, y, s.bits);
            // Only a head with an alpha mask makes the fourth byte transparency.
            if (s.head > 40 && Clear(x, y)) want.a = 0;
            ASSERT_EQ(pic.colours[static_cast<std::size_t>(y * s.width + x)], want) << x << "," << y;
        }
    EXPECT_EQ(pic.numbers.empty(), s.bits > 8);
}

INSTANTIATE_TEST_SUITE_P(Kinds, ReadsBmp,
                         ::testing::Values(Shape{"Bits8BottomUp", 8, 5, 3, false, 0},
                                           Shape{"Bits8TopDown", 8, 5, 3, true, 0},
                                           Shape{"Bits4OddWidth", 4, 7, 2, false, 0}, Shape{"Bits1", 1, 9, 2, false, 0},
                                           Shape{"Bits24Padded", 24, 3, 4, false, 0},
                                           Shape{"Bits32Fields", 32, 4, 2, true, 3},
                                           Shape{"Bits32AlphaHead124", 32, 4, 2, false, 3, 124}),
                         [](const auto& p) { return std::string(p.param.name); });

struct Damage {
    const char* name;
    void (*spoil)(ByteString&);
    const char* says;
};

class RefusesBmp : public ::testing::TestWithParam<Damage> {};

TEST_P(RefusesBmp, WithItsReason) {
    ByteString b = MakeBmp({"", 8, 5, 3, false, 0});
    GetParam().spoil(b);
    Picture pic;
    const auto problem = ReadBMP(b, pic);
    ASSERT_TRUE(problem);
    EXPECT_NE(problem->text.find(GetParam().says), std::string::npos) << problem->text;
    EXPECT_TRUE(pic.colours.empty());
}

INSTANTIATE_TEST_SUITE_P(
    Files, RefusesBmp,
    ::testing::Values(Damage{"NotBmp", [](ByteString& b) { b[0] = 'P'; }, "does not begin with BM"},
                      Damage{"CutInPixels", [](ByteString& b) { b.pop_back(); }, "last row"},
                      Damage{"CutInTable", [](ByteString& b) { b.resize(300); }, "colour table"},
                      Damage{"CutInHead", [](ByteString& b) { b.resize(40); }, "inside its head"},
                      Damage{"Bits16", [](ByteString& b) { Put(b, 28, 16, 2); }, "16-bit"},
                      Damage{"Rle8", [](ByteString& b) { Put(b, 30, 1, 4); }, "compressed"},
                      Damage{"NoWidth", [](ByteString& b) { Put(b, 18, 0, 4); }, "no pixels"},
                      Damage{"NoHeight", [](ByteString& b) { Put(b, 22, 0, 4); }, "no pixels"},
                      Damage{"Huge", [](ByteString& b) { Put(b, 18, 1u << 30, 4); }, "larger than"},
                      Damage{"PixelsOffEnd", [](ByteString& b) { Put(b, 10, 0xFFFFFFF0u, 4); }, "last row"},
                      Damage{"TooManyColours", [](ByteString& b) { Put(b, 46, 300, 4); }, "more than"}),
    [](const auto& p) { return std::string(p.param.name); });

// Nearest by the squared distance of red, green and blue, the lowest number on
// a tie; colour 0 only for the key colour and clear pixels; a colour the
// target holds there already keeps its number.
TEST(Fit, TakesTheNearestColour) {
    modDeclares::ResetSharedStores();
    modDeclares::STYPalData.assign(1, modDeclares::Palette{});
    auto& pal = modDeclares::STYPalData[0];
    // Red, green and blue of colours 1 to 5 (2 and 4 alike), then white.
    const std::uint8_t rgb[][3] = {{0, 0, 0}, {10, 10, 10}, {200, 0, 0}, {0, 200, 0}, {200, 0, 0}, {100, 100, 100}};
    for (std::size_t c = 1; c < 256; ++c)
        for (std::size_t k = 0; k < 3; ++k) pal[c * 4 + 2 - k] = c < 6 ? rgb[c][k] : 255;
    const std::vector<Rgba> colours = {{12, 9, 11, 255}, {190, 10, 5, 255}, {0, 0, 0, 255},  {255, 0, 255, 255},
                                       {50, 50, 50, 0},  {60, 60, 60, 255}, {200, 0, 0, 255}};
    const Picture pic{7, 1, colours, {}, {}};
    const auto fitted = ombrevale::pictureimport::Fit(pic, 0);
    EXPECT_EQ(fitted.numbers, (ByteString{1, 2, 1, 0, 0, 5, 2}));
    EXPECT_EQ(fitted.changed, 4);
    EXPECT_EQ(ombrevale::pictureimport::Fit(pic, 0, {9, 9, 9, 9, 9, 9, 4}).numbers, (ByteString{1, 2, 1, 0, 0, 5, 4}));
    modDeclares::ResetSharedStores();
}

// The Windows build of this suite runs without the sample.
#ifdef OMBREVALE_SAMPLE
ByteString FileBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// Every tile and sprite of the sample exported and imported again saves the
// very bytes it was loaded from; every delta made again from its exported
// picture, saved with plain colours, draws that same picture.
TEST(SampleRoundTrip, ExportThenImportKeepsEveryByte) {
    namespace pi = ombrevale::pictureimport;
    ombrevale::testsupport::TempDir dir;
    ombrevale::testsupport::HookRecorder hooks;
    clsSTY doc;
    ASSERT_TRUE(doc.LoadSTY(OMBREVALE_SAMPLE));
    const std::string bmp = dir.File("p.bmp");
    const auto numbers = [&](std::int16_t pal, const ByteString& present) {
        Picture pic;
        EXPECT_FALSE(ombrevale::picturefile::ReadBMPFile(bmp, pic));
        const auto fitted = pi::Fit(pic, pal);
        EXPECT_TRUE(fitted.asStored);
        // Saved again with plain colours, as image editors often do, it still comes back.
        Picture plain = pic;
        plain.table.clear();
        plain.numbers.clear();
        const auto again = pi::Fit(plain, pal, present);
        EXPECT_TRUE(again.numbers == fitted.numbers && again.changed == 0);
        return fitted.numbers;
    };
    for (std::int32_t t = 0; t < doc.GetNumOfTiles(); ++t) {
        ASSERT_TRUE(doc.SaveTile(bmp, t));
        ASSERT_FALSE(pi::IntoTile(
            doc, t, numbers(modDeclares::STYPalIndex[static_cast<std::size_t>(t)], pi::TileNumbers(doc, t))));
    }
    for (std::int32_t s = 0; s < doc.GetNumOfSprx(); ++s) {
        std::int16_t pal = -1;
        ASSERT_TRUE(doc.SaveSprite(bmp, s, pal));
        if (doc.GetSpriteWidth(s) > 0 && doc.GetSpriteHeight(s) > 0) {
            ASSERT_FALSE(pi::IntoSprite(doc, s, numbers(pal, pi::SpriteNumbers(doc, s, -1))));
        }
    }
    ASSERT_TRUE(doc.SaveSTY(dir.File("out.sty")));
    EXPECT_EQ(FileBytes(dir.File("out.sty")), FileBytes(OMBREVALE_SAMPLE));
    const std::string before = dir.File("before.bmp"), after = dir.File("after.bmp");
    int made = 0;
    for (const auto& entry : modDeclares::STYDeltaIndex) {
        const auto s = static_cast<std::int16_t>(entry.sprite);
        for (std::int16_t d = 0; d < static_cast<std::int16_t>(entry.deltaSizes.size()); ++d) {
            std::int16_t pal = -1;
            ASSERT_TRUE(doc.SaveDelta(before, d, s, pal));
            Picture pic;
            ASSERT_FALSE(ombrevale::picturefile::ReadBMPFile(before, pic));
            pic.table.clear();
            pic.numbers.clear();
            ASSERT_FALSE(pi::IntoDelta(doc, s, d, pi::Fit(pic, pal, pi::SpriteNumbers(doc, s, d)).numbers))
                << s << "/" << d;
            ASSERT_TRUE(doc.SaveDelta(after, d, s, pal));
            ASSERT_EQ(FileBytes(after), FileBytes(before)) << "sprite " << s << " delta " << d;
            ++made;
        }
    }
    EXPECT_GT(made, 0);
    EXPECT_TRUE(hooks.messages().empty());
}

#endif

}  // namespace
