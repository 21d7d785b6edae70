#include "clierror.h"

#include "style/hooks.h"

namespace ombrevale::cli {
namespace {

std::string& FirstMessage() {
    static std::string message;
    return message;
}

DocumentHooks Capturing() {
    DocumentHooks hooks;
    hooks.msgBox = [](const std::string& prompt, const std::string&, MsgIcon) {
        if (FirstMessage().empty()) FirstMessage() = prompt;
    };
    return hooks;
}

}  // namespace

DocumentVoice::DocumentVoice() : hooks_(Capturing()) {}

DocumentVoice::~DocumentVoice() = default;

std::string DocumentVoice::Take(const std::string& fallback) {
    std::string text = FirstMessage();
    FirstMessage().clear();
    if (text.empty()) return fallback;
    while (!text.empty() && (text.back() == '.' || text.back() == ' ')) text.pop_back();
    return text;
}

}  // namespace ombrevale::cli
