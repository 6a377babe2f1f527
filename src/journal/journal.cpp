#include "journal/journal.h"

#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/nativepath.h"
#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <set>

// The file is one CBOR value. Names and contents are byte strings there, as the disk has them.
namespace varnik {

namespace {

using Json = nlohmann::json;

constexpr int kFormat = 1;
constexpr char kExtension[] = ".journal";

Json Packed(const win::FileStatus& status) {
  return {static_cast<int>(status.kind),
          status.permissions,
          status.size,
          status.identity.device,
          status.identity.inode,
          status.owner,
          std::int64_t{status.modified.tv_sec},
          status.modified.tv_nsec};
}

win::FileStatus StatusFrom(const Json& packed) {
  win::FileStatus status;
  status.kind = static_cast<win::FileStatus::Kind>(packed.at(0).get<int>());
  status.permissions = packed.at(1).get<mode_t>();
  status.size = packed.at(2).get<std::uint64_t>();
  status.identity = {packed.at(3).get<dev_t>(), packed.at(4).get<ino_t>()};
  status.owner = packed.at(5).get<uid_t>();
  status.modified = {packed.at(6).get<time_t>(), packed.at(7).get<long>()};
  return status;
}

Json Packed(const JournalEntry& entry) {
  Json packed = {entry.path, entry.movedTo, nullptr, nullptr};
  if (entry.existed) packed[2] = Packed(entry.before);
  if (entry.copy) packed[3] = *entry.copy;
  return packed;
}

JournalEntry EntryFrom(const Json& packed) {
  JournalEntry entry{packed.at(0).get<std::string>(), !packed.at(2).is_null(), {}, {}, packed.at(1).get<std::string>()};
  if (entry.existed) entry.before = StatusFrom(packed.at(2));
  if (!packed.at(3).is_null()) entry.copy = packed.at(3).get<std::string>();
  return entry;
}

Json Packed(const SessionValue& value) { return {value.key, value.before, value.after}; }
Json Packed(const DefinitionText& text) { return {text.path, text.content}; }
Json Packed(const win::ContentId& id) { return {id.size, id.high, id.low}; }

template <class Items>
Json PackedList(const Items& items) {
  Json list = Json::array();
  for (const auto& item : items)
    list.push_back(Packed(item));
  return list;
}

std::vector<std::uint8_t> Encoded(const Journal& journal) {
  return Json::to_cbor({{"format", kFormat},
                        {"phase", static_cast<int>(journal.phase)},
                        {"root", journal.root},
                        {"device", journal.rootIdentity.device},
                        {"inode", journal.rootIdentity.inode},
                        {"definition", journal.definitionFile},
                        {"folder", journal.workingFolder},
                        {"legacy", journal.legacy},
                        {"persistent", journal.persistent},
                        {"definitions", PackedList(journal.definitions)},
                        {"session", PackedList(journal.session)},
                        {"entries", PackedList(journal.entries)},
                        {"written", PackedList(journal.written)},
                        {"texts", journal.texts}});
}

// Throws what the library throws about a value that is not there or of another type.
Journal JournalFrom(const Json& packed) {
  Journal journal;
  journal.phase = static_cast<JournalPhase>(packed.at("phase").get<int>());
  journal.root = packed.at("root");
  journal.rootIdentity = {packed.at("device").get<dev_t>(), packed.at("inode").get<ino_t>()};
  journal.definitionFile = packed.at("definition");
  journal.workingFolder = packed.at("folder");
  journal.legacy = packed.at("legacy");
  journal.persistent = packed.at("persistent");
  for (const Json& row : packed.at("definitions"))
    journal.definitions.push_back({row.at(0).get<std::string>(), row.at(1).get<std::string>()});
  for (const Json& row : packed.at("session"))
    journal.session.push_back(
        {row.at(0).get<std::string>(), row.at(1).get<std::string>(), row.at(2).get<std::string>()});
  for (const Json& row : packed.at("entries"))
    journal.entries.push_back(EntryFrom(row));
  for (const Json& row : packed.at("written"))
    journal.written.push_back(
        {row.at(0).get<std::uint64_t>(), row.at(1).get<std::uint64_t>(), row.at(2).get<std::uint64_t>()});
  journal.texts = packed.at("texts").get<std::vector<std::string>>();
  return journal;
}

std::optional<Journal> Decoded(const std::string& bytes) try {
  const Json packed = Json::from_cbor(bytes, true, false);
  if (packed.is_discarded() || packed.at("format") != kFormat) return std::nullopt;
  return JournalFrom(packed);
} catch (const Json::exception&) {
  return std::nullopt;
}

// The number in the name of a journal, 0 for a file that is none.
long NumberOf(const std::string& name) {
  const bool isJournal = name.ends_with(kExtension) && name[0] >= '1' && name[0] <= '9';
  return isJournal ? std::strtol(name.c_str(), nullptr, 10) : 0;
}

// Those of the journals in the folder, the newest first.
std::vector<long> Numbers() {
  std::vector<long> numbers;
  const auto listing = win::CurrentFileSystem().OpenFolder(JournalFolder());
  for (win::FoundEntry entry; listing && listing->Next(entry);)
    if (const long number = NumberOf(entry.name); number > 0) numbers.push_back(number);
  std::sort(numbers.rbegin(), numbers.rend());
  return numbers;
}

// The folder and its name have reached the disk.
bool MakeJournalFolder() {
  win::FileSystem& files = win::CurrentFileSystem();
  const std::string folder = JournalFolder();
  if (files.IsFolder(folder)) return true;
  win::MakeFolders(files, folder, 0700);
  return files.Sync(win::FolderAbove(folder)) && files.Sync(win::FolderAbove(win::FolderAbove(folder)));
}

void SetAside(const std::string& file) {
  win::FileSystem& files = win::CurrentFileSystem();
  std::string kept;
  for (int number = 1; kept.empty() || files.HasEntry(kept); ++number)
    kept = file + ".damaged-" + std::to_string(number);
  const bool isKept = files.RenameWithoutReplacing(file, kept);
  win::SayOnStandardError(file + " is damaged; it " + (isKept ? "is kept as " + kept : "stays as it is"));
}

}  // namespace

std::string JournalFolder() { return win::StateFolder() + "/journal"; }

bool WriteJournal(Journal& journal) {
  if (!MakeJournalFolder()) return false;
  std::string file = journal.file;
  if (file.empty()) {
    const std::vector<long> numbers = Numbers();
    file = JournalFolder() + "/" + std::to_string(numbers.empty() ? 1 : numbers[0] + 1) + kExtension;
  }
  const std::vector<std::uint8_t> bytes = Encoded(journal);
  const std::string_view content(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  if (!win::WriteWholeFile(win::WindowsPathFromNative(file), content)) return false;
  journal.file = file;
  return true;
}

std::vector<Journal> ReadJournals(std::string* unread) {
  std::vector<Journal> journals;
  win::FileStatus status;
  const std::string folder = JournalFolder();
  const bool isThere = win::CurrentFileSystem().Status(folder, status);
  if (unread && (isThere || errno != ENOENT) && !win::CurrentFileSystem().OpenFolder(folder)) *unread = folder;
  for (const long number : Numbers()) {
    const std::string file = JournalFolder() + "/" + std::to_string(number) + kExtension;
    const std::optional<std::string> bytes = win::ReadWholeFile(win::WindowsPathFromNative(file));
    std::optional<Journal> journal = bytes ? Decoded(*bytes) : std::nullopt;
    if (!bytes) {
      win::SayOnStandardError(file + " cannot be read");
      if (unread) *unread = file;
    } else if (!journal) {
      SetAside(file);
    } else {
      journal->file = file;
      journals.push_back(*std::move(journal));
    }
  }
  return journals;
}

bool RemoveJournal(const Journal& journal) {
  win::FileSystem& files = win::CurrentFileSystem();
  return journal.file.empty() || (files.Remove(journal.file) && files.Sync(JournalFolder()));
}

Journal Joined(Journal earlier, const Journal& later) {
  std::set<std::string> known;
  for (const JournalEntry& entry : earlier.entries)
    known.insert(entry.path);
  for (const JournalEntry& entry : later.entries)
    if (!known.contains(entry.path)) earlier.entries.push_back(entry);
  earlier.written.insert(earlier.written.end(), later.written.begin(), later.written.end());
  earlier.texts.insert(earlier.texts.end(), later.texts.begin(), later.texts.end());
  earlier.definitions = later.definitions;
  return earlier;
}

bool IsAbout(const Journal& journal, const std::string& root) {
  win::FileStatus status;
  return win::IsSamePath(journal.root, root) ||
         (win::CurrentFileSystem().Status(win::NativePath(root), status) && status.identity == journal.rootIdentity);
}

std::optional<Journal> FindJournal(const std::string& root, const std::string& definitionFile, std::string* unread) {
  for (Journal& journal : ReadJournals(unread))
    if (win::IsSamePath(journal.definitionFile, definitionFile) && IsAbout(journal, root)) return std::move(journal);
  return std::nullopt;
}

bool DefinitionsAreAsNoted(const Journal& journal) {
  return std::all_of(journal.definitions.begin(), journal.definitions.end(),
                     [](const DefinitionText& text) { return win::ReadWholeFile(text.path) == text.content; });
}

}  // namespace varnik
