#include "platform/system/store/jsonstore.h"

#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/paths/paths.h"
#include "platform/system/paths/program.h"
#include "platform/system/text/text.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <set>
#include <thread>

namespace win {
namespace {

constexpr std::size_t kMaxStoreBytes = 64u << 20;
constexpr int kMaxNesting = 16;
constexpr mode_t kPermissions = 0600;  // a player's session has a password

enum class Content { kMissing, kRead, kUnreadable };

// Serialises read-modify-write between processes. A side file, since each write replaces the store itself. Null when
// it cannot be made or another process holds it for too long.
std::unique_ptr<FileLock> LockStore(const std::string& path) {
  const auto giveUp = std::chrono::steady_clock::now() + std::chrono::seconds(5);
  for (;;) {
    auto lock = CurrentFileSystem().TryLock(path + ".lock");
    if (lock || errno != EWOULDBLOCK || std::chrono::steady_clock::now() >= giveUp) return lock;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
}

// Says each thing once, however often the store is asked.
void SayOnce(const std::string& message) {
  static std::set<std::string> said;
  if (said.insert(message).second) SayOnStandardError(message);
}

Content ReadBytes(const std::string& path, std::string& bytes) {
  FileSystem& files = CurrentFileSystem();
  FileStatus status;
  const auto file = OpenFile(files, path, status);
  if (!file) return !files.Status(path, status) && errno == ENOENT ? Content::kMissing : Content::kUnreadable;
  // One byte more than allowed is enough to see that a store is too big.
  std::optional<std::string> content = ReadUpTo(*file, status.size, kMaxStoreBytes + 1);
  if (!content) return Content::kUnreadable;
  bytes = std::move(*content);
  return Content::kRead;
}

std::string_view TakeString(std::string_view text) {
  std::size_t end = 1;
  while (end < text.size() && text[end] != '"')
    end += text[end] == '\\' ? 2 : 1;
  return text.substr(0, std::min(end + 1, text.size()));
}

// Each word that JSON does not know, as a number beyond every range, and each string that is none, as one with a byte
// that is no UTF-8, becomes a string of its characters. What stands around it need not be given up for it.
std::string WithWordsAsStrings(std::string_view text) {
  constexpr std::string_view kEnds = "\" \t\r\n{}[]:,";
  constexpr std::string_view kBetweenWords = kEnds.substr(1);
  std::string repaired;
  while (!text.empty()) {
    const bool isString = text[0] == '"';
    const std::size_t end = std::min(text.find_first_of(kEnds), text.size());
    const std::string_view word = isString ? TakeString(text) : text.substr(0, std::max<std::size_t>(end, 1));
    const bool isKept = kBetweenWords.find(word[0]) != kBetweenWords.npos || Json::accept(word);
    const std::string_view inner = isString ? word.substr(1, word.size() - 2) : word;
    repaired += isKept ? std::string(word) : Json(Utf8FromBytes(inner)).dump();
    text.remove_prefix(word.size());
  }
  return repaired;
}

// A discarded value when the text is no store.
Json ParseStore(std::string_view bytes) {
  const Json damaged = Json::value_t::discarded;
  if (bytes.size() > kMaxStoreBytes) return damaged;
  // Writing a tree takes one call for each level.
  bool tooDeep = false;
  const auto checkDepth = [&tooDeep](int depth, Json::parse_event_t event, const Json&) {
    const bool opens = event == Json::parse_event_t::object_start || event == Json::parse_event_t::array_start;
    tooDeep = tooDeep || (opens && depth >= kMaxNesting);
    return !tooDeep;
  };
  Json tree = Json::parse(bytes, checkDepth, false);
  if (tree.is_discarded() && !tooDeep) tree = Json::parse(WithWordsAsStrings(bytes), checkDepth, false);
  return !tooDeep && tree.is_object() ? tree : damaged;
}

// Moves the file to the first free name; an empty file reserves that name, so that nothing is ever replaced.
std::optional<std::string> MoveToFreeName(const std::string& path) {
  FileSystem& files = CurrentFileSystem();
  for (int n = 1; n < 10000; ++n) {
    const std::string target = path + ".damaged-" + std::to_string(n);
    const auto reserved = files.OpenForWriting(target, OpenMode::kExclusive, kPermissions);
    if (!reserved && errno == EEXIST) continue;
    if (!reserved) break;
    if (files.Rename(path, target)) return files.SetPermissions(target, kPermissions), target;
    files.Remove(target);
    break;
  }
  return std::nullopt;
}

// Works on a constant tree and on one that is being changed.
template <typename Object>
auto Locate(Object& object, std::string_view name) {
  const std::string text = Utf8FromBytes(name);
  auto found = object.find(text);
  for (auto it = object.begin(); found == object.end() && it != object.end(); ++it)
    if (EqualNoCase(it.key(), text)) found = it;
  return found;
}

template <typename Object>
Object* Member(Object* object, std::string_view name) {
  if (!object || !object->is_object()) return nullptr;
  const auto found = Locate(*object, name);
  return found == object->end() ? nullptr : &*found;
}

}  // namespace

// A player may keep the file elsewhere and link to it: all work is done where it lies.
std::string JsonStore::Path() const {
  const std::string path = ConfigFolder() + "/" + fileName_;
  return CurrentFileSystem().LinkTarget(path).empty() ? path : FollowLinks(path);
}

// The file is read at every call, which costs microseconds and trusts no time stamp; it is parsed only when its bytes
// changed.
JsonStore::Load JsonStore::Reload() {
  std::string bytes;
  const Content content = ReadBytes(Path(), bytes);
  if (content == Content::kUnreadable) SayOnce(Path() + " is there and cannot be read; nothing is stored");
  if (content != Content::kRead) bytes.clear();
  if (!bytes.empty() && bytes == bytes_) return load_ = Load::kDone;
  Json tree = content == Content::kRead ? ParseStore(bytes) : Json::object();
  const bool damaged = tree.is_discarded();
  tree_ = damaged ? Json::object() : std::move(tree);
  bytes_ = damaged ? std::string() : std::move(bytes);
  return load_ = content == Content::kUnreadable ? Load::kUnreadable : damaged ? Load::kDamaged : Load::kDone;
}

void JsonStore::SetAside() {
  const std::string path = Path();
  if (const std::optional<std::string> target = MoveToFreeName(path))
    SayOnce(path + " is damaged; it is kept as " + *target);
  else
    SayOnce(path + " is damaged and cannot be moved; it stays as it is");
}

const Json& JsonStore::Tree() {
  if (Reload() != Load::kDamaged) return tree_;
  const auto lock = LockStore(Path());
  // Another process may have set it aside by now.
  if (lock && Reload() == Load::kDamaged) {
    SetAside();
    Reload();
  }
  return tree_;
}

bool JsonStore::Change(const std::function<bool(Json& tree)>& change) {
  const auto lock = LockStore(Path());
  if (!lock) {
    SayOnce(Path() + " cannot be locked; nothing is stored");
    return false;
  }
  Load load = Reload();
  if (load == Load::kDamaged) {
    SetAside();
    load = Reload();
  }
  if (load != Load::kDone) return false;
  Json changed = tree_;
  if (!change(changed)) return true;
  std::string bytes = changed.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
  if (bytes.size() > kMaxStoreBytes || !WriteWholeFile(WindowsPathFromNative(Path()), bytes, kPermissions)) {
    SayOnce(Path() + " cannot be written");
    return false;
  }
  tree_ = std::move(changed);
  bytes_ = std::move(bytes);
  return true;
}

const Json* FindMember(const Json* object, std::string_view name) { return Member(object, name); }

Json* FindMember(Json* object, std::string_view name) { return Member(object, name); }

Json& MakeMember(Json& object, std::string_view name) {
  if (Json* found = FindMember(&object, name)) return *found;
  return object[Utf8FromBytes(name)] = Json::object();
}

Json& MakeObject(Json& object, std::string_view name) {
  Json& member = MakeMember(object, name);
  if (member.is_object()) return member;
  std::string kept = Utf8FromBytes(name);
  while (FindMember(&object, kept))
    kept += ".kept";
  object[kept] = std::exchange(member, Json::object());
  return *FindMember(&object, name);
}

bool EraseMember(Json* object, std::string_view name) {
  bool erased = false;
  for (; FindMember(object, name); erased = true)
    object->erase(Locate(*object, name));
  return erased;
}

Json JsonFromBytes(std::string_view bytes) {
  if (IsValidUtf8(bytes)) return Json(bytes);
  Json numbers = Json::array();
  for (const char c : bytes)
    numbers.push_back(static_cast<unsigned char>(c));
  return numbers;
}

std::optional<std::string> BytesFromJson(const Json& value) {
  if (value.is_string()) return value.get_ref<const std::string&>();
  if (value.is_number() || value.is_boolean()) return value.dump();
  if (!value.is_array()) return std::nullopt;
  std::string bytes;
  for (const Json& number : value) {
    if (!number.is_number_unsigned() || number.get<std::uint64_t>() > 255) return std::nullopt;
    bytes += static_cast<char>(number.get<unsigned>());
  }
  return bytes;
}

}  // namespace win
