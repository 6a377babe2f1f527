#pragma once

#include <functional>
#include <string>
#include <string_view>

// Native paths as text.
namespace win {

// The folder that holds the last name, without a trailing separator: "." for a bare name, "/" for a name in the root.
std::string FolderAbove(const std::string& native);

// A view into `native`.
std::string_view LastName(std::string_view native);

// `name` in `folder`; the name alone for the folder ".".
std::string JoinPath(const std::string& folder, std::string_view name);

// A relative path is taken from the working folder. `.` and `..` stay, and so does an empty text.
std::string AbsolutePath(const std::string& native);

// The absolute path without `.`, `..` and links on the way; a link in the last name is followed when `followLast` says
// so. `targetOf` returns what a link leads to, empty for anything else, and is given resolved paths only. Names that do
// not exist stay. More than 40 links are not followed.
std::string ResolveLinks(const std::string& native, bool followLast,
                         const std::function<std::string(const std::string& path)>& targetOf);

// A hidden name in the same folder, always the same for one file, so that the next write uses up what a crash left.
std::string TemporaryNameFor(const std::string& native);

// Whether the last name of `native` is one that TemporaryNameFor gives.
bool IsTemporaryName(std::string_view native);

}  // namespace win
