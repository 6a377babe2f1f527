#pragma once

#include <cstdint>
#include <optional>
#include <string>

// Files as Windows treats them. Every verb takes Windows paths, and either does its work or changes nothing and returns
// false; nothing throws. Read-only is an attribute of the file (no write bit for the owner) and binds root as well.
namespace win {

// Renames or moves a file or folder. Never replaces an existing target, whatever the case of its name. A trailing
// separator in either name is ignored; a rename that only changes case works; a read-only file can be renamed. A move
// to another file system copies and deletes, files only.
bool RenameFile(const std::string& from, const std::string& to);

// Deletes the files (never folders) that the last name of `pattern` matches, wildcards `*` and `?` included, and goes
// on past one that refuses. False when nothing matched or one refused, as a read-only file does.
bool DeleteFiles(const std::string& pattern);

bool MakeFolder(const std::string& path);

// Removes an empty folder.
bool RemoveFolder(const std::string& path);

constexpr unsigned kAttributeReadOnly = 0x01;
constexpr unsigned kAttributeHidden = 0x02;  // a name that begins with a dot
constexpr unsigned kAttributeDirectory = 0x10;
constexpr unsigned kAttributeArchive = 0x20;

// Nothing when the path does not exist.
std::optional<unsigned> GetAttributes(const std::string& path);

// Nothing to clear counts as success, also a file that is not there.
bool ClearReadOnly(const std::string& path);

// Only the read-only bit can be changed; the rest of `attributes` is ignored.
bool SetAttributes(const std::string& path, unsigned attributes);

// Size of a regular file in bytes. Nothing for anything else, such as a folder or a pipe.
std::optional<std::uint64_t> FileSize(const std::string& path);

// True when everything on the file system that holds `path` has reached the disk.
bool SyncFileSystemOf(const std::string& path);

}  // namespace win
