#pragma once

#include <string>

// What the environment says, for this layer's own use. Paths here are native.
namespace win {

// Empty when it is not set.
std::string Variable(const std::string& name);

// $HOME, else what the user database says.
std::string HomeFolder();

// $WINEPREFIX, else ~/.wine, as Wine itself does.
std::string DefaultWinePrefix();

}  // namespace win
