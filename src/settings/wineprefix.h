#pragma once
// Where the Wine prefix is, and Windows paths as files of that prefix.

#include <string>

namespace ombrevale::winepath {

// $WINEPREFIX, else ~/.wine; empty when that folder does not exist.
std::string PrefixDir();

// "C:\Games\GTA2\data\wil.sty" -> "<prefix>/dosdevices/c:/Games/GTA2/data/wil.sty",
// each existing name matched without regard to case. Not a drive path: unchanged.
std::string MapWindowsPath(const std::string& prefix, const std::string& sWindowsPath);

}  // namespace ombrevale::winepath
