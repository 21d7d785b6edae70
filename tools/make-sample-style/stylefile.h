#pragma once
// Lays the sample's pieces out as the sections of a style file.

#include <cstdint>
#include <vector>

namespace ombrevale::sample {

// The whole file: "GBST", version 600, then the sections in the order in
// which the document saves them, so that loading and saving gives the same bytes.
std::vector<std::uint8_t> BuildStyleFile();

}  // namespace ombrevale::sample
