#pragma once
// The document reports progress and shows messages through routines that the
// hosting program installs: the window, the command line or a test.

#include <functional>
#include <string>

enum class MsgIcon { None, Critical, Question, Exclamation, Information };

struct DocumentHooks {
    std::function<void(double iMin, double iMax, const std::string& sCaption)> progressStart;
    std::function<void(double iValue, const std::string& sCaption)> progressStep;
    std::function<void()> progressEnd;
    std::function<void(const std::string& sPrompt, const std::string& sTitle, MsgIcon icon)> msgBox;
};

// Replaces every hook at once; an empty function means the default (progress
// does nothing, a message goes to stderr as one line).
void InstallDocumentHooks(DocumentHooks hooks);
const DocumentHooks& InstalledDocumentHooks();

void ProgressStart(double iMin, double iMax, const std::string& sCaption);
void ProgressStep(double iValue, const std::string& sCaption);
void ProgressEnd();
void MsgBox(const std::string& sPrompt, const std::string& sTitle = {}, MsgIcon icon = MsgIcon::None);

// Installs a set of hooks for the life of a scope and puts the old ones back.
class ScopedDocumentHooks {
public:
    explicit ScopedDocumentHooks(DocumentHooks hooks);
    ~ScopedDocumentHooks();
    ScopedDocumentHooks(const ScopedDocumentHooks&) = delete;
    ScopedDocumentHooks& operator=(const ScopedDocumentHooks&) = delete;

private:
    DocumentHooks previous_;
};
