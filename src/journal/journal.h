#pragma once

#include "platform/system/filesystem/contentid.h"
#include "platform/system/filesystem/filesystem.h"

#include <optional>
#include <string>
#include <vector>

// What an activation is going to change in an install, written down before the first change: enough to put every path
// back exactly as it was, whatever became of the definition. A journal is one file below `journal/` of the program's
// folder for state, never in an install. It goes when all has been put back.
namespace varnik {

enum class JournalPhase {
  kOpen,    // an activation, a run or a deactivation is under way, or died
  kActive,  // the mod is persistent and active
  kLeft,    // a start has put back the files; the player's values and lists are left as the mod set them
};

// One path that is touched, as it was before.
struct JournalEntry {
  std::string path;  // native; from the install's root on when it lies below, absolute otherwise
  bool existed = false;
  win::FileStatus before;           // of what stood there; a link's own. Without `existed` it says nothing
  std::optional<std::string> copy;  // the content of a file that is overwritten or removed
  std::string movedTo;              // where the activation takes what stood here, as `path`; empty when it stays
};

// A session default of gameprefs.ini.
struct SessionValue {
  std::string key;
  std::string before;
  std::string after;  // what the mod sets
};

// A definition, or a file that it includes, as the activation read it.
struct DefinitionText {
  std::string path;
  std::string content;
};

struct Journal {
  std::string file;  // native path of the journal itself; empty until it has been written
  JournalPhase phase = JournalPhase::kOpen;
  std::string root;  // of the install, as the program holds it
  win::FileIdentity rootIdentity;
  std::string definitionFile;
  std::string workingFolder;  // relative paths of older mods begin there
  bool legacy = false;
  bool persistent = false;
  std::vector<DefinitionText> definitions;
  std::vector<SessionValue> session;
  std::vector<JournalEntry> entries;
  std::vector<win::ContentId> written;  // what the mod's files may hold at any moment when nobody else has changed them
  std::vector<std::string> texts;       // what they hold while the mod is active
};

// Where journals are; a native path.
std::string JournalFolder();

// Stores the journal, a new one under a name of its own: it has reached the disk when this returns true. False leaves
// what was stored before; the reason is in errno.
bool WriteJournal(Journal& journal);

// All journals, the newest first. One that cannot be understood is kept under another name, and that is said on
// standard error. `unread` receives the native path of one that cannot be read.
std::vector<Journal> ReadJournals(std::string* unread = nullptr);

bool RemoveJournal(const Journal& journal);

// The journal of a mod that has been activated once more while it was active: how the install was before the first
// time, and what may be found of either.
Journal Joined(Journal earlier, const Journal& later);

// Whether the journal is about the install at `root`, also when its folder has moved.
bool IsAbout(const Journal& journal, const std::string& root);

// The newest journal of this definition in this install.
std::optional<Journal> FindJournal(const std::string& root, const std::string& definitionFile,
                                   std::string* unread = nullptr);

// True when the definition and what it includes can be read and are what they were.
bool DefinitionsAreAsNoted(const Journal& journal);

}  // namespace varnik
