#pragma once
// modControlWin: finds the GTA2 editor's tile list (title prefix "gta2 editor",
// control id 1050, class "ListBox") and drives it from outside.
// Windows: direct Win32 calls. Linux: the same calls made by
// ombrevale-link.exe under Wine, over a line protocol on its stdin/stdout;
// with no Wine the search finds nothing and a click reaches nobody, silently.
// The search and the click wait for the helper in its queue, never in the
// caller: a helper or editor that stops answering must not freeze the window.

#include <atomic>
#include <cstdint>

namespace modControlWin {

// A window handle of another program, 32 bits; 0 until the first match.
// Atomic: on Linux the search writes it from the helper's thread.
extern std::atomic<std::uint32_t> hWndEditorList;

// Linux: begins starting ombrevale-link.exe so that it is up by the time the
// first search runs; returns at once. Windows: nothing to start.
void StartEditorLink();
// Linux: until released, a start waits to launch Wine (its boot would slow
// the window's first paint on a machine of few cores); searches and clicks
// queue meanwhile. Windows: nothing to hold.
void HoldEditorLink();
void ReleaseEditorLink();

// The search (EnumWindows with EnumWindowsProc). A match overwrites
// hWndEditorList; no match leaves it as it was. Linux: queued, it runs on the
// helper's thread once the helper is up and the work ahead of it is done.
void FindEditorList();

// LB_SETCURSEL, LB_GETCURSEL (overwrites Item), LB_GETITEMRECT, then a posted
// press and release at the row's top-left corner. Linux: queued as well.
// With the helper up and idle, Item gets LB_GETCURSEL's answer if it comes
// within 20 ms; otherwise Item becomes 0 and the click goes out later, on
// hWndEditorList as a search queued before it left it. A later click
// replaces one that has not gone out yet.
void clickListboxItem(std::uint32_t hWnd, std::int32_t& Item);

std::int32_t MakeLParam(std::int16_t x, std::int16_t y);

// Windows only: SetWindowPos with HWND_TOPMOST / HWND_NOTOPMOST. The Linux
// window does the same through its own window flags.
std::int32_t SetTopMost(std::uintptr_t hWnd, bool OnTop);

}  // namespace modControlWin
