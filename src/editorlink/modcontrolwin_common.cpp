// The parts of modControlWin that do not touch a window.
#include "editorlink/modcontrolwin.h"

namespace modControlWin {

std::atomic<std::uint32_t> hWndEditorList = 0;

std::int32_t MakeLParam(std::int16_t x, std::int16_t y) {
    auto high = static_cast<std::uint32_t>(static_cast<std::uint16_t>(y)) << 16;
    return static_cast<std::int32_t>(high | static_cast<std::uint16_t>(x));
}

}  // namespace modControlWin
