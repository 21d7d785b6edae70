#include "support/hookrecorder.h"

#include <cstdio>

namespace ombrevale::testsupport {
namespace {
std::string Num(double v) {
    char buf[64];
    std::snprintf(buf, sizeof buf, "%.10g", v);
    return buf;
}
const char* IconName(MsgIcon icon) {
    static const char* const names[] = {"none", "critical", "question", "exclamation", "information"};
    return names[static_cast<int>(icon)];
}

}  // namespace

HookRecorder::HookRecorder() : previous_(InstalledDocumentHooks()) {
    DocumentHooks h;
    h.progressStart = [this](double lo, double hi, const std::string& c) {
        calls_.push_back("start " + Num(lo) + " " + Num(hi) + " " + c);
    };
    h.progressStep = [this](double v, const std::string& c) { calls_.push_back("step " + Num(v) + " " + c); };
    h.progressEnd = [this] { calls_.push_back("end"); };
    h.msgBox = [this](const std::string& text, const std::string& title, MsgIcon icon) {
        calls_.push_back("msg " + title + "|" + text + "|" + IconName(icon));
    };
    InstallDocumentHooks(h);
}

HookRecorder::~HookRecorder() { InstallDocumentHooks(previous_); }

std::vector<std::string> HookRecorder::messages() const {
    std::vector<std::string> out;
    for (const auto& c : calls_)
        if (c.rfind("msg ", 0) == 0) out.push_back(c);
    return out;
}

}  // namespace ombrevale::testsupport
