#include "legacy/legacyconfig.h"

#include "definition/bzonecfg.h"
#include "legacy/legacyformat.h"
#include "platform/system/files/files.h"

namespace varnik {

namespace {

constexpr int kEntryIndent = 16;
constexpr char kLineEnd[] = "\r\n";

}  // namespace

void LegacyConfigWriter::Begin(const std::string& root) {
  file_.emplace(root + kLegacyGeneratedConfig, win::WriteMode::kOutput);
  file_->WriteLine(ConfigurationHead(true) + kLineEnd);
}

void LegacyConfigWriter::AddPack(const std::string& name) {
  file_->WriteLine(PackEntry(kEntryIndent, name) + kLineEnd);
}

void LegacyConfigWriter::AddFolder(const std::string& path) {
  file_->WriteLine(FolderEntry(kEntryIndent, path) + kLineEnd);
}

void LegacyConfigWriter::Finish(const std::string& root) {
  file_->WriteLine(kAddonEntries);
  file_->WriteLine("");
  file_->WriteLine(kGamePacks);
  file_->WriteLine(FolderEntry(kEntryIndent, "@rootdir\\data"));
  file_->WriteLine(kConfigurationEnd);
  file_->Close();
  win::RenameFile(root + kGameConfig, root + kLegacyConfigBackup);
  win::RenameFile(root + kLegacyGeneratedConfig, root + kGameConfig);
}

}  // namespace varnik
