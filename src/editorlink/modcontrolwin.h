#pragma once
// modControlWin: finds the GTA2 editor's tile list (title prefix "gta2 editor",
// control id 1050, class "ListBox") and drives it from outside.
// Windows: direct Win32 calls. Linux: the same calls made by
// ombrevale-link.exe under Wine, over a line protocol on its stdin/stdout;
// with no Wine the search finds nothing and a click reaches nobody, silently.

#include <cstdint>

namespace modControlWin {

// A window handle of another program, 32 bits; 0 until the first match.
extern std::uint32_t hWndEditorList;

// The search (EnumWindows with EnumWindowsProc). A match overwrites
// hWndEditorList; no match leaves it as it was.
void FindEditorList();

// LB_SETCURSEL, LB_GETCURSEL (overwrites Item), LB_GETITEMRECT, then a posted
// press and release at the row's top-left corner.
void clickListboxItem(std::uint32_t hWnd, std::int32_t& Item);

std::int32_t MakeLParam(std::int16_t x, std::int16_t y);

// Windows only: SetWindowPos with HWND_TOPMOST / HWND_NOTOPMOST. The Linux
// window does the same through its own window flags.
std::int32_t SetTopMost(std::uintptr_t hWnd, bool OnTop);

}  // namespace modControlWin
