#pragma once
// clsSTY: the one style document. Its document stores are fields of the
// object; the shared stores live in modDeclares. The loading, saving and
// counting members are defined in src/style, the picture-making members in
// src/pixels.

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "style/bytes.h"
#include "style/moddeclares.h"
#include "style/problem.h"
#include "style/tile.h"

class PictureControl;

// What a load found, for a host that words its own messages.
struct LoadReport {
    // Nothing when the file loaded; else what is wrong, without the file's name.
    ombrevale::Outcome problem;
    // True when sections before the problem were read into the stores.
    bool sectionsKept = false;
    // The file loaded, but these parts of it hold nothing or were passed over.
    std::vector<std::string> warnings;
};

// The fourteen known sections, in the order of their present flags.
enum class Section : int { TILE, PPAL, PALX, PALB, SPRG, SPRX, SPRB, DELS, DELX, FONB, CARI, OBJI, RECY, SPEC };
inline constexpr int kSectionCount = 14;
inline constexpr std::array<std::string_view, kSectionCount> kSectionTags = {
    "TILE", "PPAL", "PALX", "PALB", "SPRG", "SPRX", "SPRB", "DELS", "DELX", "FONB", "CARI", "OBJI", "RECY", "SPEC"};

inline constexpr int kTileSide = 64;
inline constexpr int kTileBytes = kTileSide * kTileSide;
inline constexpr int kStripBytes = 4 * kTileBytes;
inline constexpr int kPaletteBytes = 1024;
inline constexpr int kPalettePageBytes = 64 * kPaletteBytes;
inline constexpr int kSpriteRowStride = 256;

static_assert(kTileBytes == static_cast<int>(Tile::size()));

struct SpriteRecord {
    std::int32_t offset = 0;
    std::uint8_t width = 0;
    std::uint8_t height = 0;
    std::uint16_t pad = 0;

    bool operator==(const SpriteRecord&) const = default;
};

// The messages of a load, worded for a file. whatWasKept ends a failure whose
// earlier sections stay in the stores; the caller knows whether they do.
std::string LoadFailureText(const std::string& file, const LoadReport& report, const std::string& whatWasKept);
std::string LoadWarningText(const std::string& file, const LoadReport& report);

class clsSTY {
public:
    clsSTY();

    // Results are additions of this program: the window ignores them, the
    // command line and the tests use them. Every failure is also told
    // through the message hook.
    bool LoadSTY(const std::string& Sprg);
    // The same load, telling nothing through the message hook: the report says it all.
    bool LoadSTY(const std::string& Sprg, LoadReport& report);
    bool SaveSTY(const std::string& sFile) const;
    // The same save, telling nothing: what went wrong, without the file's name.
    ombrevale::Outcome TrySaveSTY(const std::string& path) const;
    // The bytes a save would write, made without a word of progress: a copy
    // kept between saves must not run window events in the middle of an edit.
    std::vector<std::uint8_t> SavedBytes() const;

    std::int32_t GetCol(std::int32_t Pal, std::int32_t Col) const;
    bool RenderSprite(std::int32_t idx, PictureControl& PicBox, std::int16_t& Pal);
    ByteString GetDeltaString(std::int16_t deltaNumber, std::int16_t spriteIdx) const;
    void RenderDelta(std::int16_t deltaNumber, std::int16_t spriteIdx, PictureControl& PicBox,
                     std::int16_t PalIdx) const;
    bool RenderTile(std::int32_t idx, PictureControl& PicBox);
    bool SaveTile(const std::string& sFile, std::int32_t idx) const;
    bool SaveSprite(const std::string& sFile, std::int32_t idx, std::int16_t& Pal) const;
    bool SaveDelta(const std::string& sFile, std::int16_t deltaNumber, std::int16_t spriteIdx, std::int16_t& Pal) const;
    bool ImportPalette(const std::string& sFile, std::int32_t PalIdx);

    std::int16_t GetNumOfTiles() const { return iTileCount; }
    std::int16_t GetNumOfPals() const { return iPalCount; }
    std::int16_t GetNumOfPalx() const { return iPalxCount; }
    std::int16_t GetNumOfSprx() const { return iSprxCount; }
    bool DrawTransparent() const { return bDrawTransparent; }
    void DrawTransparent(bool value) { bDrawTransparent = value; }
    std::int16_t lWidth() const { return static_cast<std::int16_t>(iLastWidth); }
    std::int16_t lHeight() const { return static_cast<std::int16_t>(iLastHeight); }
    std::int16_t lPal() const { return iLastPal; }

    ByteString GetBits(std::int32_t SprNum) const;
    bool SetDeltaBits(std::int16_t deltaNumber, std::int16_t spriteIdx, ByteString& bits);
    // The same, telling nothing: why the delta was not replaced.
    ombrevale::Outcome TrySetDeltaBits(std::int16_t deltaNumber, std::int16_t spriteIdx, ByteString& bits);
    bool SetBits(std::int16_t SprNum, const ByteString& bits);
    bool SetBitsTile(std::int32_t TileNum, const ByteString& bits);
    std::int32_t GetSpriteHeight(std::int32_t idx) const;
    std::int32_t GetSpriteWidth(std::int32_t idx) const;
    std::int32_t GetSpriteOffset(std::int32_t idx) const;
    static void Fixwidth(std::int32_t& iWidth);
    std::int16_t SpriteNumFromModelNum(std::int32_t iModelNum) const;

    bool IsPresent(Section s) const { return Present[static_cast<std::size_t>(s)]; }

    // Document stores, in the order of the design.
    ByteString STYSpriteData;
    std::int16_t iTileCount = 0;
    std::int16_t iPalCount = 0;
    std::int16_t iPalxCount = 0;
    std::int16_t iSprxCount = 0;
    std::int32_t lDelxBytes = 0;
    std::int32_t lDelsBytes = 0;
    std::int32_t lCariBytes = 0;
    bool bDrawTransparent = false;
    std::int32_t iLastWidth = 0;
    std::int32_t iLastHeight = 0;
    std::int16_t iLastPal = 0;
    std::vector<Tile> STYTileStore;
    std::vector<SpriteRecord> STYSpriteIndex;
    ByteString STYObjectInfo;
    ByteString STYSurfaceSpec;
    std::array<bool, kSectionCount> Present{};
};
