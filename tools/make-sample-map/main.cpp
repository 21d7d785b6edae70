// Writes samples/ombrevale-sample.gmp: a small island town on the sample
// style's tiles. Roads with their arrows, pavements, buildings with walls,
// a car park with a ramp, a park, water at level 0 all round, zones, lights
// and the water's animation. No game data is copied.
#include <cstdio>
#include <fstream>
#include <iostream>

#include "mapwriter/mapwriter.h"

namespace {

using namespace ombrevale::mapwriter;

// Tiles of the sample style, as its generator lays them out.
constexpr int kGrass = 1, kWater = 77, kSlabs = 121, kKerb = 161, kAsphalt = 209, kCentreDash = 241, kZebra = 285,
              kArrow = 297, kBoxJunction = 305, kFlatRoof = 365, kTarRoof = 437, kParapet = 549, kBrick = 661,
              kWindows = 761, kShopFront = 841, kWoodFloor = 905, kMetalFloor = 929, kHedge = 953;
constexpr int kGround = 1, kRoadGround = 1, kPavementGround = 2, kFieldGround = 3;
constexpr int kTownFrom = 80, kTownTo = 176, kRoadEvery = 16;

// A small, fixed sequence: the town is the same every build.
unsigned Pick(int x, int y, unsigned n) {
    unsigned h = static_cast<unsigned>(x) * 73856093u ^ static_cast<unsigned>(y) * 19349663u;
    h ^= h >> 13;
    h *= 0x5bd1e995u;
    return (h ^ (h >> 15)) % n;
}

bool InTown(int x, int y) { return x >= kTownFrom && x < kTownTo && y >= kTownFrom && y < kTownTo; }
// Roads are two blocks wide, at every kRoadEvery blocks from the town's edge.
int RoadLane(int v) { return (v - kTownFrom) % kRoadEvery; }
bool OnRoad(int v) { return RoadLane(v) < 2; }

void Road(Grid& g, int x, int y) {
    Block& b = g.at(x, y, kGround);
    const bool across = OnRoad(y), down = OnRoad(x);
    b.slope = Slope(kRoadGround);
    if (across && down) {
        b.lid = Lid(kBoxJunction, 0);
        b.arrows = 0x0F;  // every way at a junction
        return;
    }
    // Traffic keeps right: the upper lane goes left, the lower right; the left lane down, the right up.
    const int lane = across ? RoadLane(y) : RoadLane(x);
    if (across) b.arrows = lane == 0 ? 0x01 : 0x02;
    if (down) b.arrows = lane == 0 ? 0x08 : 0x04;
    const int along = across ? RoadLane(x) : RoadLane(y);
    int tile = kAsphalt + static_cast<int>(Pick(x, y, 8));
    if (along == 3)
        tile = kZebra;
    else if (along == 8)
        tile = kArrow;
    else if (along % 2 == 0)
        tile = kCentreDash;
    // The markings are drawn for a road going up: turned a quarter for roads across.
    int turns = across ? 1 : 0;
    if (tile == kArrow) turns = across ? (lane == 0 ? 3 : 1) : (lane == 0 ? 2 : 0);
    b.lid = Lid(tile, 0, false, lane == 1 && tile == kCentreDash, turns);
}

void Pavement(Grid& g, int x, int y) {
    Block& b = g.at(x, y, kGround);
    b.slope = Slope(kPavementGround);
    const bool kerb = OnRoad(x - 1) || OnRoad(x + 1) || OnRoad(y - 1) || OnRoad(y + 1);
    int turns = 0;
    if (OnRoad(x - 1))
        turns = 3;
    else if (OnRoad(x + 1))
        turns = 1;
    else if (OnRoad(y + 1))
        turns = 2;
    b.lid = kerb ? Lid(kKerb, 1, false, false, turns) : Lid(kSlabs + static_cast<int>(Pick(x, y, 6)), 1);
}

struct Lot {
    int x, y, w, h;
};

void Building(Grid& g, const Lot& lot, int levels, int wall, int roof) {
    for (int y = lot.y; y < lot.y + lot.h; ++y)
        for (int x = lot.x; x < lot.x + lot.w; ++x)
            for (int z = kGround; z < kGround + levels; ++z) {
                Block& b = g.at(x, y, z);
                const int face = z == kGround && wall != kBrick ? kShopFront : wall;
                if (x == lot.x) b.left = Side(face + static_cast<int>(Pick(x, z, 4)));
                if (x == lot.x + lot.w - 1) b.right = Side(face + static_cast<int>(Pick(x, z + 1, 4)));
                if (y == lot.y) b.top = Side(face + static_cast<int>(Pick(y, z, 4)));
                if (y == lot.y + lot.h - 1) b.bottom = Side(face + static_cast<int>(Pick(y, z + 1, 4)));
                b.slope = Slope(z == kGround ? kPavementGround : 0);
                const bool edge = x == lot.x || y == lot.y || x == lot.x + lot.w - 1 || y == lot.y + lot.h - 1;
                // Under the roof, the ground floor: what a level cut shows.
                if (z == kGround + levels - 1)
                    b.lid = Lid(edge ? kParapet : roof, levels % 4, false, false, 0);
                else
                    b.lid = z == kGround ? Lid(kWoodFloor + static_cast<int>(Pick(x, y, 4)), 3) : 0;
            }
    // The roof's parapet edges face outwards.
    const int top = kGround + levels - 1;
    for (int x = lot.x; x < lot.x + lot.w; ++x) {
        g.at(x, lot.y, top).lid = Lid(kParapet, levels % 4, false, false, 0);
        g.at(x, lot.y + lot.h - 1, top).lid = Lid(kParapet, levels % 4, false, false, 2);
    }
    for (int y = lot.y + 1; y < lot.y + lot.h - 1; ++y) {
        g.at(lot.x, y, top).lid = Lid(kParapet, levels % 4, false, false, 3);
        g.at(lot.x + lot.w - 1, y, top).lid = Lid(kParapet, levels % 4, false, false, 1);
    }
}

void Park(Grid& g, const Lot& lot) {
    for (int y = lot.y; y < lot.y + lot.h; ++y)
        for (int x = lot.x; x < lot.x + lot.w; ++x) {
            Block& b = g.at(x, y, kGround);
            b.slope = Slope(kFieldGround);
            const bool edge = x == lot.x || y == lot.y || x == lot.x + lot.w - 1 || y == lot.y + lot.h - 1;
            b.lid = Lid(edge ? kHedge : kGrass + static_cast<int>(Pick(x, y, 12)), 0);
        }
}

// A deck one level up on pillars' walls, and a ramp up to it from the pavement side.
void CarPark(Grid& g, const Lot& lot) {
    Building(g, {lot.x, lot.y + 1, lot.w, lot.h - 1}, 1, kBrick, kMetalFloor);
    for (int x = lot.x; x < lot.x + lot.w; ++x)
        for (int y = lot.y + 1; y < lot.y + lot.h; ++y) g.at(x, y, kGround).lid = Lid(kMetalFloor, 2);
    g.at(lot.x, lot.y + 1, kGround).slope = Slope(0);
    for (int x = lot.x; x < lot.x + lot.w; ++x) {
        Block& ramp = g.at(x, lot.y, kGround);
        ramp = Block{};
        ramp.lid = Lid(kAsphalt, 1, false, false, 0);
        ramp.slope = Slope(kRoadGround, 1);  // a gentle ramp up towards the deck
        ramp.arrows = 0x08;
    }
}

void CityBlock(Grid& g, int bx, int by) {
    // Inside the roads: a ring of pavement, then four lots.
    const int x0 = bx + 2, y0 = by + 2, size = kRoadEvery - 2;
    for (int y = y0; y < y0 + size; ++y)
        for (int x = x0; x < x0 + size; ++x) Pavement(g, x, y);
    const int half = (size - 2) / 2;
    for (int q = 0; q < 4; ++q) {
        const Lot lot{x0 + 1 + (q % 2) * half, y0 + 1 + (q / 2) * half, half, half};
        const unsigned kind = Pick(bx + q, by, 9);
        if (kind == 0)
            Park(g, lot);
        else if (kind == 1 && q == 3)
            CarPark(g, lot);
        else {
            const int walls[] = {kBrick, kWindows, kBrick, kWindows};
            Building(g, lot, 1 + static_cast<int>(Pick(by + q, bx, 4)), walls[kind % 4],
                     (kind % 2 ? kFlatRoof : kTarRoof) + static_cast<int>(Pick(bx, by + q, 20)));
        }
    }
}

Grid Town() {
    Grid g;
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x) {
            if (!InTown(x, y)) {
                g.at(x, y, 0).lid = Lid(kWater, 0);
                g.at(x, y, 0).slope = Slope(0);
                continue;
            }
            if (OnRoad(x) || OnRoad(y)) Road(g, x, y);
        }
    for (int by = kTownFrom; by < kTownTo; by += kRoadEvery)
        for (int bx = kTownFrom; bx < kTownTo; bx += kRoadEvery) CityBlock(g, bx, by);
    // The town's last rows past its grid of roads are pavement, so the shore is a kerb.
    for (int y = kTownFrom; y < kTownTo; ++y)
        for (int x = kTownFrom; x < kTownTo; ++x)
            if (g.at(x, y, kGround) == Block{}) Pavement(g, x, y);
    return g;
}

std::vector<Zone> Zones() {
    std::vector<Zone> zones;
    // Traffic lights at the inner junctions, then bus stops, then the districts; smallest first.
    for (int y = kTownFrom + kRoadEvery; y < kTownTo; y += 2 * kRoadEvery)
        for (int x = kTownFrom + kRoadEvery; x < kTownTo; x += 2 * kRoadEvery)
            zones.push_back({2, x, y, 2, 2, "lights" + std::to_string(zones.size() + 1)});
    zones.push_back({7, kTownFrom + 5, kTownFrom + 2, 3, 1, "bus1"});
    zones.push_back({16, kTownFrom + 20, kTownFrom + 20, 4, 4, "restart1"});
    zones.push_back({14, kTownFrom + 48, kTownFrom + 48, 16, 16, "shadegang"});
    zones.push_back({0, kTownFrom, kTownFrom, 48, 96, "Old Quarter"});
    zones.push_back({0, kTownFrom + 48, kTownFrom, 48, 96, "Harbour Side"});
    zones.push_back({1, kTownFrom, kTownFrom, 96, 96, "ombretown"});
    return zones;
}

std::vector<Light> Lights() {
    std::vector<Light> lights;
    for (int y = kTownFrom + 2; y < kTownTo; y += kRoadEvery)
        for (int x = kTownFrom + 2; x < kTownTo; x += kRoadEvery)
            lights.push_back({0xFFFFE0A0u, x * 128 + 64, y * 128 + 64, 2 * 128, 3 * 128, 200, 0, 0, 0});
    return lights;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: make-sample-map OUT.gmp\n";
        return 2;
    }
    const Grid g = Town();
    MapBytes file;
    file.Add("DMAP", DmapPayload(g))
        .Add("ZONE", ZonePayload(Zones()))
        .Add("LGHT", LightPayload(Lights()))
        .Add("ANIM", AnimPayload({{kWater, 8, 0, {kWater, kWater + 1, kWater + 2, kWater + 3}}}))
        .Add("MOBJ", ObjectPayload({{(kTownFrom + 24) * 128, (kTownFrom + 24) * 128, 0, 1}}));
    std::ofstream out(argv[1], std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(file.bytes().data()), static_cast<std::streamsize>(file.bytes().size()));
    out.close();
    if (!out) {
        std::cerr << "make-sample-map: " << argv[1] << " cannot be written\n";
        return 1;
    }
    return 0;
}
