#pragma once
// The window's pictures pass through "temp.bmp" in the current folder. That
// folder is a private one of the program's own (mode 0700, under
// $XDG_RUNTIME_DIR or, when none can be made there, the system's temporary
// folder), made at start and removed at exit: the file never lands in the
// folder the program was started in, which may be read-only or shared, where a
// link could stand in its place. The folders of earlier runs that ended
// without removing theirs are removed at start.

#include <QString>
#include <QTemporaryDir>
#include <memory>

namespace ombrevale::workbench {

class WorkFolder {
public:
    // Makes the folder and makes it the current one; a folder that cannot be
    // made leaves the current folder as it was and says why in Problem().
    WorkFolder();
    // Goes back to the folder the program started in and removes ours.
    ~WorkFolder();
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;

    QString Path() const { return dir_ ? dir_->path() : QString(); }
    QString Problem() const { return problem_; }

private:
    QString started_;
    std::unique_ptr<QTemporaryDir> dir_;
    QString problem_;
};

}  // namespace ombrevale::workbench
