#include "mainwindow/picturelists.h"

#include "support/debuglog.h"
#include "support/modfileexists.h"
#include "support/modfindfile.h"
#include "support/runstate.h"
#include "support/ui/artwork.h"

namespace varnik {

namespace {

void AddFolder(win::ImageList& list, const std::string& folder, const char* pattern) {
  if (!FileExists(folder)) return;
  FileSearchParams params;
  params.Recurse = true;
  params.Pattern = pattern;
  FileSearchResults results;
  FindFiles(folder, params, results, false);
  for (std::int32_t i = 1; i <= params.FoundCount; ++i) {
    const win::Picture picture = win::Picture::FromFile(results[i]);
    if (!picture.Empty()) list.Add(picture);
  }
}

}  // namespace

void loadimglist(win::ImageList& imglstnomap) {
  LogLine("LoadImgList Begin");
  imglstnomap.Add(NoMapPicture(), kArtworkCredit);
  imglstnomap.AddOnDemand([](auto& list) { AddFolder(list, AppPath + "nomappics\\", "*.bmp"); });
}

void loadiconlist(win::ImageList& imglstIcon) {
  LogLine("LoadIconList Begin");
  imglstIcon.Add(WindowIcon(), kArtworkCredit);
  imglstIcon.AddOnDemand([](auto& list) { AddFolder(list, AppPath + "trayicons\\", "*.ico"); });
}

}  // namespace varnik
