#pragma once
// The Win32 search, also run by ombrevale-link.exe on the Linux program's behalf.

#include <cstdint>

namespace modControlWin {

// Runs the search; the list box this search matched (which is also left in
// hWndEditorList), or 0 when it matched none.
std::uint32_t SearchEditorList();

}  // namespace modControlWin
