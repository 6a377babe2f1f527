#pragma once

#include <sys/types.h>

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace win {

// What is taken into memory in one piece, at most.
constexpr std::size_t kMaxBytes = std::size_t{512} * 1024 * 1024;

// The whole content, byte for byte. Nothing for a folder, a missing file, one of more than 512 MB or one that cannot be
// read to its end.
[[nodiscard]] std::optional<std::string> ReadWholeFile(const std::string& path);

// The content of a file that is only looked at, and not written back. Takes a read that comes back short for the end of
// the file, so that a small one, as nearly all are, costs a single read.
[[nodiscard]] std::optional<std::string> ReadFileOnce(const std::string& path);

// Replaces the file's content so that a crash or a full disk leaves the old or the new content and never less:
// temporary file in the same folder, flush, rename, flush of the folder. Mode bits stay; a link is written through.
// Fails on a read-only file, on a folder and in a missing folder. With `permissions` the file has these from its first
// byte on, whatever it had before, where the file system has such.
bool WriteWholeFile(const std::string& path, std::string_view content, std::optional<mode_t> permissions = {});

}  // namespace win
