#pragma once
// The commands of ombrevale-cli. Each returns the exit code or throws
// Failure / UsageError (clierror.h).

#include <cstdint>
#include <functional>
#include <string>

#include "cliargs.h"

class clsSTY;
class QJsonObject;
struct LoadReport;
namespace modDeclares {
struct CarRecord;
}

namespace ombrevale::cli {

int RunInfo(const Args& args);
int RunCar(const Args& args);
int RunSave(const Args& args);
int RunTile(const Args& args);
int RunSprite(const Args& args);
int RunDelta(const Args& args);
int RunImportPalette(const Args& args);
int RunImportTile(const Args& args);
int RunImportSprite(const Args& args);
int RunImportDelta(const Args& args);
int RunExport(const Args& args);
int RunSheet(const Args& args);
int RunRecover(const Args& args);
int RunText(const Args& args);
int RunImportFolder(const Args& args);
int RunMapInfo(const Args& args);
int RunMap(const Args& args);

// A car record as info and car print it.
QJsonObject CarJson(const modDeclares::CarRecord& r);

// Loads a style or throws Failure with the document's reason; the report holds the warnings.
LoadReport LoadStyle(clsSTY& doc, const std::string& path);

// Saves a style or throws Failure with the reason.
void SaveStyle(const clsSTY& doc, const std::string& path);

// value must lie in lo..hi, or the command fails naming the range.
void CheckRange(const std::string& file, const std::string& what, std::int64_t value, std::int64_t lo, std::int64_t hi);

// Writes `path`: `write` fills a file of the run's private scratch folder and
// returns whether it managed; only then is `path` replaced, at once
// (QSaveFile). Nothing is left behind on failure.
// Quick leaves out the wait for the disk (fsync): for the thousands of files of
// an export, which a failure removes again anyway.
enum class Durability { Synced, Quick };
void WriteThrough(const std::string& path, const std::function<bool(const std::string& temp)>& write,
                  Durability durability = Durability::Synced);

// The run's private scratch folder (0700, removed at exit); throws Failure if
// none can be made.
std::string ScratchFolder();

}  // namespace ombrevale::cli
