#pragma once
// --help and --version, answered before Qt looks for a display.

#include <optional>

// The exit code when the arguments ask for help or the version (printed on
// stdout); nothing when the window is wanted.
std::optional<int> AnswerWithoutWindow(int argc, char** argv);
