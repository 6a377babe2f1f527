#pragma once

#include <nlohmann/json.hpp>

#include <functional>
#include <optional>
#include <string>
#include <string_view>

// A small tree that lies as one JSON file in the program's configuration folder and that several processes may change.
// Private to this layer. Three levels of objects (application, section, key for the settings) and then the value; names
// are text and match without regard to case. Nobody promises that a file of another version or of a person has that
// shape: what is no object has no members.
namespace win {

using Json = nlohmann::json;

class JsonStore {
 public:
  explicit JsonStore(const char* fileName) : fileName_(fileName) {}

  // What is on disk now, valid until the next call; an empty tree when there is no store or it cannot be read. One that
  // is no JSON object, words and strings that JSON does not know aside, is moved to `<file>.damaged-N`.
  const Json& Tree();

  // What the last call read or wrote, without another reading.
  const Json& LastTree() const { return tree_; }

  // False when there is a store and the last call could not read it: what it holds is unknown.
  bool IsKnown() const { return load_ == Load::kDone; }

  // Reads, lets `change` alter the tree and writes it back, all under a lock against other processes. `change` returns
  // false when it altered nothing. False, with the store as it was, when it cannot be read or written.
  bool Change(const std::function<bool(Json& tree)>& change);

 private:
  enum class Load { kDone, kDamaged, kUnreadable };
  std::string Path() const;
  Load Reload();
  void SetAside();

  std::string fileName_;
  Load load_ = Load::kDone;
  std::string bytes_;  // what tree_ was parsed from
  Json tree_ = Json::object();
};

// The member of that name, or nothing. An exact name wins over one that differs in case.
const Json* FindMember(const Json* object, std::string_view name);
Json* FindMember(Json* object, std::string_view name);

// The member of that name, an empty object when it was missing; an existing spelling stays.
Json& MakeMember(Json& object, std::string_view name);

// The same for an object. What is there and is none is kept behind it, under a name with `.kept` at its end.
Json& MakeObject(Json& object, std::string_view name);

// Every spelling of the name goes. False when there is no such member.
bool EraseMember(Json* object, std::string_view name);

// Bytes as JSON holds them: a string when they are valid UTF-8, else an array of byte numbers.
Json JsonFromBytes(std::string_view bytes);

// The reverse; a number or a truth value, as a person may have typed it, gives its text. Nothing for any other shape.
std::optional<std::string> BytesFromJson(const Json& value);

}  // namespace win
