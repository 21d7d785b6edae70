#include "clierror.h"

#include "style/hooks.h"

namespace cli {
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

std::string DocumentVoice::Take(const std::string& file, const std::string& fallback) {
    std::string text = FirstMessage();
    FirstMessage().clear();
    if (text.empty()) return fallback;
    if (text == "ERROR Invalid File") return "not a style file (it does not begin with GBST)";
    // The document names the file itself; our line already does.
    const std::string lead = "The style file " + file + " ";
    if (text.rfind(lead, 0) == 0) text = text.substr(lead.size());
    // What the window adds about the half-loaded document means nothing here.
    for (const char* tail : {". The sections before", ". The file on disk"}) {
        const auto at = text.find(tail);
        if (at != std::string::npos) text.erase(at);
    }
    while (!text.empty() && (text.back() == '.' || text.back() == ' ')) text.pop_back();
    return text;
}

}  // namespace cli
