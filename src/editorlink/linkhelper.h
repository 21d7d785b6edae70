#pragma once
// The Linux side of the editor link: ombrevale-link.exe, started once under
// Wine in the current prefix and spoken to a line at a time.

#include <string>
#include <vector>

namespace linkhelper {

// Sends one request and collects the answer: one line, or for "windows" every
// line up to "end". False when there is no Wine, no prefix, no helper or it
// does not answer in time; the helper is then stopped and started again on a
// later request.
bool Request(const std::string& request, std::vector<std::string>& answer);

// Where the helper is looked for: $OMBREVALE_LINK_EXE, else beside this
// program (a build folder), else where it is installed (lib/ombrevale/).
std::string HelperPath();

// Stops the helper now and forgets a failed start (it is also stopped when
// the process ends).
void Shutdown();

}  // namespace linkhelper
