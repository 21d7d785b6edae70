#pragma once
// Painters of single tiles. Each fills the whole 64 x 64 canvas.

#include "canvas.h"
#include "palettes.h"
#include "tiles.h"

namespace ombrevale::sample::tileart {

void Grass(Canvas& c, Rng& rng, int variant);
void Dirt(Canvas& c, Rng& rng, int variant);
void Flowers(Canvas& c, Rng& rng, int variant);
void Water(Canvas& c, Rng& rng, int variant);
void Shore(Canvas& c, Rng& rng, int variant);
void Slabs(Canvas& c, Rng& rng, int variant);
void Kerb(Canvas& c, Rng& rng, int variant);
void KerbCorner(Canvas& c, Rng& rng, int variant);
void Asphalt(Canvas& c, Rng& rng, int variant, int fromRow);
// kind: 0 centre dash, 1 double yellow, 2 edge line, 3 zebra, 4 arrow, 5 box junction, 6 parking, 7 drain
void RoadMarking(Canvas& c, Rng& rng, int variant, int kind);
// kind: 0 track, 1 live rail, 2 platform edge
void Rails(Canvas& c, Rng& rng, int variant, int kind);

void FlatRoof(Canvas& c, Rng& rng, int variant);
void TarRoof(Canvas& c, Rng& rng, int variant);
void PitchedRoof(Canvas& c, Rng& rng, int variant);
void Parapet(Canvas& c, Rng& rng, int variant, bool corner);
void Skylight(Canvas& c, Rng& rng, int variant);
void Helipad(Canvas& c, Rng& rng, int variant);
void Brick(Canvas& c, Rng& rng, int variant);
void Panels(Canvas& c, Rng& rng, int variant);
void Windows(Canvas& c, Rng& rng, int variant);
void ShopFront(Canvas& c, Rng& rng, int variant);
void Corrugated(Canvas& c, Rng& rng, int variant);
void WoodFloor(Canvas& c, Rng& rng, int variant);
void MetalFloor(Canvas& c, Rng& rng, int variant);
void Hedge(Canvas& c, Rng& rng, int variant);
void Fence(Canvas& c, Rng& rng, int variant);

}  // namespace ombrevale::sample::tileart
