#pragma once

#include <string>
#include <string_view>

// What a file is, by its name and the bytes that it begins with. Nothing is decoded or started.
namespace varnik {

// True for a folder of this name.
bool IsFolder(const std::string& path);

// True when it begins as a picture that the window can show, or is named as one of those that have no such beginning.
bool LooksLikePicture(const std::string& path);

// True for what can be started: a Windows program, one of this system, or a script that names its interpreter.
bool LooksLikeProgram(const std::string& path);

// True when the name has a character that Windows forbids, wildcards aside, or is that of a device.
bool IsForbiddenOnWindows(std::string_view name);

// True when the text of a file begins as UTF-16 does, with a byte-order mark or without.
bool BeginsAsUtf16(std::string_view text);

}  // namespace varnik
