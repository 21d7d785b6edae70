#include "style/hooks.h"

#include <cstdio>
#include <utility>

namespace {
DocumentHooks& Current() {
    // Each thread's own: work run on a pool thread never reaches the window's boxes and progress window.
    thread_local DocumentHooks hooks;
    return hooks;
}
}  // namespace

void InstallDocumentHooks(DocumentHooks hooks) { Current() = std::move(hooks); }

const DocumentHooks& InstalledDocumentHooks() { return Current(); }

void ProgressStart(double iMin, double iMax, const std::string& sCaption) {
    if (Current().progressStart) Current().progressStart(iMin, iMax, sCaption);
}

void ProgressStep(double iValue, const std::string& sCaption) {
    if (Current().progressStep) Current().progressStep(iValue, sCaption);
}

void ProgressEnd() {
    if (Current().progressEnd) Current().progressEnd();
}

void MsgBox(const std::string& sPrompt, const std::string& sTitle, MsgIcon icon) {
    if (Current().msgBox) {
        Current().msgBox(sPrompt, sTitle, icon);
        return;
    }
    if (sTitle.empty()) {
        std::fprintf(stderr, "%s\n", sPrompt.c_str());
    } else {
        std::fprintf(stderr, "%s: %s\n", sTitle.c_str(), sPrompt.c_str());
    }
}

ScopedDocumentHooks::ScopedDocumentHooks(DocumentHooks hooks) : previous_(Current()) {
    InstallDocumentHooks(std::move(hooks));
}

ScopedDocumentHooks::~ScopedDocumentHooks() { InstallDocumentHooks(std::move(previous_)); }
