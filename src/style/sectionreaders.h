#pragma once
// Reading one known section's payload into its store. Each reader checks the
// section against the bytes that remain before it touches a store, so a
// damaged section leaves its store as it was.

#include <cstdint>
#include <string>

#include "style/bytecursor.h"
#include "style/clssty.h"
#include "style/problem.h"

namespace ombrevale::styleload {

// A problem ends the load: what is wrong, for its one message.
using SectionResult = ombrevale::Outcome;

// Counts are quotients rounded to the nearest whole number, ties to even.
std::int64_t RoundedQuotient(std::int64_t size, std::int64_t unit);

SectionResult ReadSection(clsSTY& doc, Section section, std::int32_t size, ByteCursor& in);

}  // namespace ombrevale::styleload
