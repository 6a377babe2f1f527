#pragma once

#include <optional>
#include <string>
#include <string_view>

// The game's core configuration as generated for a mod: the packs and folders that its file system looks in, the mod's
// own ahead of the game's. Lines end in CRLF; texts below stand without the end of their last line.
namespace varnik {

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

// Closes the stream and makes it the active one.
extern const std::string_view kConfigurationEnd;

// The folder that a line of any game configuration adds, if it adds one, without `@rootdir\` at its front.
std::optional<std::string> FolderOfConfigurationLine(std::string_view line);

// Adds an entry to bzonevarnik.cfg below `root`, which it creates with a head when it is missing; a file that is there
// already, a stale one too, is appended to. `path` is relative to the root.
void GeneratePackEntry(const std::string& root, const std::string& path);
void GenerateFolderEntry(const std::string& root, const std::string& path);

// Appends the game's own data to bzonevarnik.cfg and puts it in the place of bzone.cfg, which stays as bzonevarnik.bak.
// Does nothing when no entry was generated.
void PutConfigurationInForce(const std::string& root, bool version13);

// The game's own bzone.cfg is put away as bzonevarnik.bak.
bool ConfigurationIsReplaced(const std::string& root);

// Brings bzone.cfg back from bzonevarnik.bak, if there is one.
void RestoreConfiguration(const std::string& root);

// Throws away what the entries generated.
void DropConfiguration(const std::string& root);

}  // namespace varnik
