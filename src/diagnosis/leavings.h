#pragma once

#include "diagnosis/doctor.h"

#include <string>
#include <vector>

// The files and folders by whose names a run puts things away.
namespace varnik {

void AddLeftFiles(const std::string& root, std::vector<Leaving>& leavings);

// Renames the file to its first free `.kept-N` name.
void SetAside(const std::string& path);

}  // namespace varnik
