#pragma once
// The key codes Form_KeyDown acts on, as the platform's key events number them.

namespace ombrevale::keycodes {

inline constexpr int vbKeyEscape = 27;
inline constexpr int vbKeyPageUp = 33;
inline constexpr int vbKeyPageDown = 34;
inline constexpr int vbKeyUp = 38;
inline constexpr int vbKeyDown = 40;

}  // namespace ombrevale::keycodes
