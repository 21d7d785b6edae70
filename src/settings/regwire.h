#pragma once
// One registry read as a line between the Linux program and ombrevale-link.exe,
// which makes the read with the Win32 calls:
//   regvalue <hive> <key in hex> <value name in hex>
//   -> "value <type> text|bytes <hex>", "value <type> number <n>", or "none"
// Hex keeps spaces and any byte of a name or a path on one line.

#include <cstdint>
#include <string>

#include "settings/cregistry.h"

namespace ombrevale::regwire {

std::string Hex(const std::string& bytes);
// False on an odd length or a character that is not a hex digit.
bool Unhex(const std::string& hex, std::string& bytes);

std::string ValueRequest(std::int32_t hive, const std::string& key, const std::string& name);
bool ParseValueRequest(const std::string& line, std::int32_t& hive, std::string& key, std::string& name);

// `found` false: nothing to read there.
std::string ValueAnswer(bool found, std::int32_t type, const RegValue& value);
bool ParseValueAnswer(const std::string& line, bool& found, std::int32_t& type, RegValue& value);

}  // namespace ombrevale::regwire
