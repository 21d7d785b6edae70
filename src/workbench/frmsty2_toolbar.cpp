// The tool bar: transparency, copy and paste, and the file commands.
#include <QToolBar>

#include "workbench/frmsty2.h"

void frmSTY2::BuildToolbar() {}
void frmSTY2::tlbMain_ButtonClick(const QString&) {}
