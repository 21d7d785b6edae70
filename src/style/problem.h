#pragma once
// How the program fails: one value with the problem in words a user reads,
// and its kind where a caller has to tell kinds apart. The window shows the
// text through the message hook; the command line prints it as one line.

#include <optional>
#include <string>

namespace ombrevale {

struct Problem {
    enum class Kind { Unreadable, NotAStyle, Damaged, CutShort, Unwritable };
    Kind kind = Kind::Damaged;
    std::string text;
};

// Nothing when all went well.
using Outcome = std::optional<Problem>;

}  // namespace ombrevale
