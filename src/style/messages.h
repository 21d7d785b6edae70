#pragma once
// Wording helpers for the messages the document shows.

#include <cstdint>
#include <string>
#include <string_view>

// 1048576 -> "1,048,576": sizes in messages are read by people.
std::string GroupedNumber(std::int64_t value);

// A tag as read from a file, with bytes that are not printable shown as \xNN.
std::string PrintableTag(std::string_view tag);
