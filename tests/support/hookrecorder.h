#pragma once
// Installs document hooks that write down every call as one line of text:
// "start 1 120 Loading...", "step 14 Loading Section TILE...", "end",
// "msg ERROR|ERROR Invalid File|exclamation".

#include <string>
#include <vector>

#include "style/hooks.h"

namespace ombrevale::testsupport {

class HookRecorder {
public:
    HookRecorder();
    ~HookRecorder();
    HookRecorder(const HookRecorder&) = delete;
    HookRecorder& operator=(const HookRecorder&) = delete;

    const std::vector<std::string>& calls() const { return calls_; }
    std::vector<std::string> messages() const;  // only the "msg" lines

private:
    std::vector<std::string> calls_;
    DocumentHooks previous_;
};

}  // namespace ombrevale::testsupport
