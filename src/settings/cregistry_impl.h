#pragma once
// Pieces of cRegistry that both registry backends share.

#include <cstdint>
#include <string>

#include "settings/cregistry.h"

namespace ombrevale::cregistry_impl {

// The % test of a text write: expandable when a '%' has another '%' at least
// two places behind it, so that a name fits between them.
bool IsExpandableText(const std::string& s);

std::int32_t SwapEndian(std::int32_t l);

// What a text write stores for any kind of value.
std::string ValueAsText(const RegValue& v);

// A DWORD write takes only whole numbers.
bool ValueAsNumber(const RegValue& v, std::int32_t& n);

// Little-endian number from the first (up to) four bytes; missing bytes are 0.
std::int32_t NumberFromBytes(const std::uint8_t* p, std::size_t n);

}  // namespace ombrevale::cregistry_impl
