#pragma once
// frmProgress: the small window of a long job, driven only through modGTA2.

#include <QDialog>

class PacedLabel;
class PacedProgressBar;

class frmProgress : public QDialog {
    Q_OBJECT
public:
    explicit frmProgress(QWidget* parent = nullptr);
    // Back to the designer's values and centred, as a newly loaded form is.
    void Reload();

    PacedProgressBar* pbar = nullptr;
    PacedLabel* l = nullptr;
};

namespace modGTA2 {

void ProgressStart(double iMin, double iMax, const std::string& sCaption);
void ProgressStep(double iValue, const std::string& sCaption);
void ProgressEnd();
void CenterForm(QWidget* frm);

// The one frmProgress, loaded on first touch; null while it is unloaded.
frmProgress* Instance();
frmProgress* LoadedInstance();

// Makes these routines and a QMessageBox the document's progress and message hooks.
void InstallAsDocumentHooks();

}  // namespace modGTA2
