#include "fuzz/world.h"

#include "diagnosis/activationplan.h"
#include "diagnosis/check.h"
#include "installs/installlist.h"
#include "modengine/catalogue.h"
#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"
#include "platform/system/process/services.h"
#include "support/install.h"
#include "support/runstate.h"

#include <stdlib.h>
#include <unistd.h>

#include <utility>

namespace fuzz {

namespace {

const test::Links kLinks = {
    {"/game/way", "addon"},
    {"/game/one", "b.odf"},
    {"/game/out", "/outside"},
    {"/game/gap", "nowhere"},
    {"/game/round", "."},
    {"/game/addon/up", ".."},
    {"/game/self", "self"},
    {"/game/chain", "way/up/way"},
    {"/home/wine/dosdevices/c:", "../drive_c"},
    {"/home/wine/dosdevices/z:", "/"},
};

constexpr std::pair<const char*, const char*> kFiles[] = {
    {"bzone.exe", ""},
    {"data.pak", ""},
    {"binkw32.dll", ""},
    {"bzone.cfg", "// the game's own\r\n"},
    {"addon\\localize.odf", "[Network]\r\nVersionStr = \"1.3\"\r\n"},
    {"a", "first\r\nsecond\r\n"},
    {"b.odf", "first\r\nsecond\r\n"},
    {"addon\\c.odf", "c"},
    {"data\\d.odf", "d"},
    {"addon\\RaceName_A.txt", "first\r\n"},
    {"RecyList.txt", "first\r\nsecond\r\n"},
};

void PutInto(win::FileSystem& files, const std::string& path, std::string_view content) {
  const std::string native = win::ToNativeSpelling(path);
  win::MakeFolders(files, win::FolderAbove(native), 0777);
  const auto file = files.OpenForWriting(native, win::OpenMode::kTruncate, 0644);
  Require(file && file->Append(content));
}

void List(win::FileSystem& files, const std::string& folder, std::map<std::string, std::string>& found) {
  const auto listing = files.OpenFolder(folder);
  win::FileStatus status;
  for (win::FoundEntry entry; listing && listing->Next(entry);) {
    const std::string path = win::JoinPath(folder, entry.name);
    if (entry.name == "." || entry.name == "..") continue;
    if (entry.isLink)
      found[path] = files.LinkTarget(path);
    else if (const auto file = entry.isFolder ? nullptr : win::OpenFile(files, path, status))
      found[path] = win::ReadUpTo(*file, status.size, status.size + 1).value_or("");
    else
      found[path + "/"];
    if (entry.isFolder && !entry.isLink) List(files, path, found);
  }
}

}  // namespace

World::World() : links_(kLinks), first_(links_) {
  for (const auto& [name, value] : {std::pair("HOME", "/home"),
                                    {"XDG_CONFIG_HOME", "/home/config"},
                                    {"XDG_DATA_HOME", "/home/data"},
                                    {"XDG_RUNTIME_DIR", "/home/run"},
                                    {"WINEPREFIX", "/home/wine"},
                                    {"VARNIK_HOME", "/app"},
                                    {"PATH", "/home"},
                                    {"VARNIK_RUNNER", "/home/none"}})
    setenv(name, value, 1);
  win::SetProgram({"varnik", "Varnik", ""});
  // Nobody reads a message; a question is answered now this way, now that.
  win::WindowServices services;
  services.msgBox = [](const std::string&, int style, const std::string&) {
    static bool yes = false;
    yes = !yes;
    return style % 16 == win::kOkOnly ? win::Answer::kOk : yes ? win::Answer::kYes : win::Answer::kNo;
  };
  win::SetWindowServices(services);
  varnik::AppPath = "/app\\";
  Require(chdir("/") == 0);
  for (const char* folder :
       {"/app", "/home/run", "/home/config/varnik", "/home/data", "/home/wine/drive_c", "/outside"})
    win::MakeFolders(first_, folder, 0777);
  for (const auto& [name, content] : kFiles)
    PutInto(first_, std::string(kInstall) + name, content);
}

void World::Reset() {
  scope_.reset();
  scope_.emplace(files_.emplace(static_cast<win::FileSystem&>(first_)));
  if (varnik::InstallRoot() != kInstall) varnik::UseInstallFolder(kInstall);
  varnik::ClearModList();
  varnik::SelectModFolders(-1);
}

std::string World::Put(const std::string& name, std::string_view content, const std::string& folder) {
  PutInto(*files_, folder + name, content);
  return folder + name;
}

std::map<std::string, std::string> World::Everything() {
  std::map<std::string, std::string> found;
  List(*files_, "/", found);
  return found;
}

World& TheWorld() {
  static World world;
  return world;
}

void LookAhead(const std::string& path) {
  const auto before = TheWorld().Everything();
  Require(varnik::CheckDefinition(path).has_value());
  if (varnik::ModListFilled) varnik::PlanActivation(varnik::ModEntry(varnik::ModList[1]));
  Require(TheWorld().Everything() == before);
}

void Require(bool holds) {
  if (!holds) abort();
}

}  // namespace fuzz
