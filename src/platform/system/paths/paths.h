#pragma once

#include <optional>
#include <string>
#include <string_view>

// Windows paths on this file system. Everywhere above this layer a path is a Windows path: `\` and `/` both separate,
// names are case-blind, `X:\` is a drive of the Wine prefix, and a leading separator without a drive is the root of
// this file system. Only this layer knows what such a path is called on disk.
namespace win {

bool IsSeparator(char c);
bool EndsInSeparator(std::string_view path);

// The path with a backslash behind it unless it ends in a separator already. Empty text gives "\".
std::string WithSeparator(std::string_view path);

// What stands behind the last separator; the whole text when there is none.
std::string FileNameOf(std::string_view path);

// A path with a root, on a drive or not.
bool IsAbsolutePath(std::string_view path);

// A path in this system's form with the spelling kept: drive, separators, `.` and `..` resolved in the text, as Windows
// does. What exists under this name is what the path names.
std::string ToNativeSpelling(std::string_view path);

// The name of `path` on this file system, for a call of the operating system. In each folder an exact name wins,
// otherwise the entry that equals it without regard to case, the first in name order when several do; a name in
// Windows-1252 bytes also finds its UTF-8 spelling. Blanks and dots at the end of a name are ignored when the exact
// name is not there. A name that does not exist keeps its spelling below the deepest folder that does, in UTF-8 and
// without blanks and dots at its end. `.` and `..` are taken out of the text, and a trailing separator stays. The
// answer is never older than the folders: what another program changes is seen. Empty, which names no file, for an
// empty text and for one with a NUL in it.
std::string NativePath(std::string_view path);

// The same, but nothing when there is no entry of that name. A link counts as an entry whatever it points to.
[[nodiscard]] std::optional<std::string> FindNativePath(std::string_view path);

// As NativePath, and a relative path is taken from the working folder.
std::string AbsoluteNativePath(std::string_view path);

// True when both name the same file or folder, with or without a trailing separator. It need not exist.
bool IsSamePath(std::string_view a, std::string_view b);

// A path of this file system as the program holds it. Folders inside the Wine prefix stay as they are too: the text is
// used as given, since `/` separates as well.
std::string WindowsPathFromNative(std::string_view native);

}  // namespace win
