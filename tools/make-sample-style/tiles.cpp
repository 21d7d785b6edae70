#include "tiles.h"

#include <array>
#include <functional>
#include <initializer_list>

#include "tileart.h"

namespace ombrevale::sample {
namespace {

using Painter = std::function<void(Canvas&, Rng&, int)>;

struct Kind {
    Painter paint;
    int count;
    std::vector<int> palettes;  // tile palettes that suit this kind, taken in turn
    int surface;
    bool turn;  // the four quarter turns in turn, for edges and directions
};

const std::vector<int> kWaterPals = {2, 21, 35, 15};
const std::vector<int> kEarthPals = {3, 8, 12, 17, 23, 36};
const std::vector<int> kBrickPals = {1, 4, 14, 20, 27, 37, 9};
const std::vector<int> kGreyPals = {0, 5, 11, 13, 18, 25, 29, 34};
const std::vector<int> kRoofPals = {0,  1,  4,  5,  6,  7,  9,  11, 13, 14, 16, 18, 19,
                                    20, 22, 24, 26, 27, 28, 30, 31, 32, 33, 34, 37, 38};
const std::vector<int> kStreetPals = {0, 5, 11, 18, 25};

Painter Marking(int kind) {
    return [kind](Canvas& c, Rng& rng, int v) { tileart::RoadMarking(c, rng, v, kind); };
}
Painter Rail(int kind) {
    return [kind](Canvas& c, Rng& rng, int v) { tileart::Rails(c, rng, v, kind); };
}

std::vector<Kind> Kinds() {
    using namespace tileart;
    return {
        {Grass, 36, {0, 5, 7}, kGrassDirt, false},
        {Dirt, 16, kEarthPals, kGrassDirt, false},
        {Flowers, 24, {1, 2, 4, 20, 30}, kGrassDirt, false},
        {Water, 20, kWaterPals, kWater, false},
        {Shore, 24, kWaterPals, kWater, true},
        {Slabs, 40, kStreetPals, kNormal, false},
        {Kerb, 32, kStreetPals, kNormal, true},
        {KerbCorner, 16, kStreetPals, kNormal, true},
        {[](Canvas& c, Rng& rng, int v) { Asphalt(c, rng, v, 0); }, 32, kStreetPals, kRoad, false},
        {Marking(0), 16, kStreetPals, kRoad, true},
        {Marking(1), 12, kStreetPals, kRoad, true},
        {Marking(2), 16, kStreetPals, kRoad, true},
        {Marking(3), 12, kStreetPals, kRoad, true},
        {Marking(4), 8, kStreetPals, kRoad, true},
        {Marking(5), 8, kStreetPals, kRoad, false},
        {Marking(6), 12, kStreetPals, kRoad, true},
        {Marking(7), 8, kStreetPals, kRoad, false},
        {Rail(0), 16, kEarthPals, kNormal, true},
        {Rail(1), 8, kEarthPals, kElectrified, true},
        {Rail(2), 8, kStreetPals, kElectrifiedPlatform, true},
        {FlatRoof, 72, kRoofPals, kNormal, false},
        {TarRoof, 40, kRoofPals, kNormal, false},
        {PitchedRoof, 72, kRoofPals, kNormal, true},
        {[](Canvas& c, Rng& rng, int v) { Parapet(c, rng, v, false); }, 48, kRoofPals, kNormal, true},
        {[](Canvas& c, Rng& rng, int v) { Parapet(c, rng, v, true); }, 32, kRoofPals, kNormal, true},
        {Skylight, 24, kRoofPals, kNormal, true},
        {Helipad, 8, kGreyPals, kNormal, false},
        {Brick, 60, kBrickPals, kNormal, false},
        {Panels, 40, kGreyPals, kNormal, false},
        {Windows, 80, kRoofPals, kNormal, false},
        {ShopFront, 40, kBrickPals, kNormal, false},
        {Corrugated, 24, kGreyPals, kMetalWall, false},
        {WoodFloor, 24, kEarthPals, kWoodFloor, false},
        {MetalFloor, 24, kGreyPals, kMetalFloor, false},
        {Hedge, 16, {0, 7, 26}, kGrassWall, false},
        {Fence, 16, kEarthPals, kNormal, true},
    };
}

Canvas Turned(const Canvas& c, int quarters) {
    Canvas out = c;
    for (int i = 0; i < quarters; ++i) out = out.RotatedQuarter();
    return out;
}

}  // namespace

std::vector<TileArt> BuildTiles() {
    std::vector<TileArt> tiles;
    tiles.reserve(kTileCount);
    // Tile 0 is the plain black tile that map editors leave under everything.
    TileArt blank;
    blank.pixels = Canvas(64, 64, Shade(kGrey, 1));
    tiles.push_back(blank);

    Rng rng(0x0B5EA1E5u);
    const auto kinds = Kinds();
    // The list is walked again (roofs and walls once more) until the set is full.
    for (int pass = 0; static_cast<int>(tiles.size()) < kTileCount; ++pass) {
        for (std::size_t k = 0; k < kinds.size() && static_cast<int>(tiles.size()) < kTileCount; ++k) {
            const Kind& kind = kinds[k];
            if (pass > 0 && kind.surface != kNormal) continue;
            for (int v = 0; v < kind.count && static_cast<int>(tiles.size()) < kTileCount; ++v) {
                const int variant = v + pass * kind.count;
                TileArt t;
                kind.paint(t.pixels, rng, kind.turn ? variant / 4 : variant);
                if (kind.turn) t.pixels = Turned(t.pixels, variant % 4);
                t.palette = kind.palettes[static_cast<std::size_t>(variant) % kind.palettes.size()];
                t.surface = kind.surface;
                tiles.push_back(std::move(t));
            }
        }
    }
    return tiles;
}

}  // namespace ombrevale::sample
