#include "maps/mapconversion.h"

#include "maps/mapclass.h"
#include "platform/system/files/files.h"
#include "platform/system/process/services.h"
#include "support/ini_sm.h"
#include "support/install.h"
#include "support/modfileexists.h"

namespace varnik {
namespace {

bool ConvertAsked = false;
bool ConvertWanted = false;

constexpr char kQuestion[] =
    "Some of your multiplayer map configuration files are not 1.3 ready. Would you like to convert them for 1.3 "
    "use?\r\n"
    "Note: This process is based on ivar information only and may produce inaccurate results.";

// A map that names no type at all is taken for a deathmatch map.
std::string TagOf(const MapEntry& entry) {
  if (entry.Ivar5 == 0 || entry.Ivar5 == 1) return SubTypeOf(entry.Ivar7).tag;
  return entry.Ivar12Set ? "mpi" : "st";
}

}  // namespace

void ResetConversion() { ConvertAsked = ConvertWanted = false; }

void OfferConversion(const MapEntry& entry, const win::ProfileFile& inf, const std::string& infPath) {
  if (!IsVersion13() || !IsMultiplayerPath(entry.Folder) || !IsInModFolders(entry.Folder)) return;
  if (!FileExists(infPath)) return;  // named by the stored list, and gone since
  if (!inf.IsReadable() || !ReadIniValue("NetVars", "svar7", inf, "").empty()) return;
  if (!ConvertAsked) {
    ConvertAsked = true;
    ConvertWanted = win::MsgBox(kQuestion, win::kYesNo, "Convert Maps?") == win::Answer::kYes;
  }
  if (!ConvertWanted) return;
  win::ClearReadOnly(infPath);
  WriteIniValue("NetVars", "svar7", TagOf(entry), infPath);
}

}  // namespace varnik
