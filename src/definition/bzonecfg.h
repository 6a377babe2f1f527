#pragma once

#include <optional>
#include <string>
#include <string_view>

// The game's core configuration as generated for a mod: the packs and folders that its file system looks in, the mod's
// own ahead of the game's. Lines end in CRLF; texts below stand without the end of their last line.
namespace varnik {

class Confines;

// Files in the install's root.
constexpr char kGameConfig[] = "bzone.cfg";
constexpr char kGeneratedConfig[] = "bzonevarnik.cfg";   // until it takes the place of bzone.cfg
constexpr char kGameConfigBackup[] = "bzonevarnik.bak";  // the game's own bzone.cfg while the mod's is in its place

// What stands ahead of the mod's entries, up to the opening of the base stream. `named` adds the line that names this
// program.
std::string ConfigurationHead(bool named);

// One entry behind `indent` blanks. The game resolves `@rootdir` in `path`.
std::string PackEntry(int indent, std::string_view path);
std::string FolderEntry(int indent, std::string_view path);

// Behind the mod's entries: the addon folder, up to the heading of the game's own data.
extern const std::string_view kAddonEntries;

// The packs of every version of the game.
extern const std::string_view kGamePacks;

// Closes the stream and activates it.
extern const std::string_view kConfigurationEnd;

// The folder that a line of any game configuration adds, if it adds one, without `@rootdir\` at its front.
std::optional<std::string> FolderOfConfigurationLine(std::string_view line);

// Adds an entry to the generated configuration below `root`, which it creates with a head when it is missing; a file
// that is there already, a stale one too, is appended to. `path` is relative to the root. False when it could not be
// written, or not wholly.
[[nodiscard]] bool GeneratePackEntry(const std::string& root, const std::string& path);
[[nodiscard]] bool GenerateFolderEntry(const std::string& root, const std::string& path);

// Appends the game's own data to the generated configuration and gives it the place of bzone.cfg, which becomes the
// backup. Does nothing when no entry was generated. A file that cannot be written to its end is deleted: the game is
// never given half a configuration.
void ActivateConfiguration(Confines& confines, const std::string& root, bool version13);

// There is a backup of the game's own bzone.cfg.
bool ConfigurationIsReplaced(const std::string& root);

// Gives the backup, if there is one, the place of bzone.cfg.
void RestoreConfiguration(const std::string& root);

// Deletes the generated configuration.
void DropConfiguration(const std::string& root);

}  // namespace varnik
