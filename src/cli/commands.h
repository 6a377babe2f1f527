#pragma once

#include "cli/arguments.h"

// One routine for each command. Each gives the exit status: 0 done, 1 it could not be done, 2 wrong usage. All but
// those about installs, settings and files find the install selected.
namespace varnik::cli {

int ListInstalls(const Arguments& arguments);
int AddInstall(const Arguments& arguments);
int RemoveInstall(const Arguments& arguments);
int SelectInstallRow(const Arguments& arguments);

int ListMods(const Arguments& arguments);
int ParseFile(const Arguments& arguments);
int CheckFile(const Arguments& arguments);

int ActivateGivenMod(const Arguments& arguments);
int DeactivateGivenMod(const Arguments& arguments);
int PlanGivenMod(const Arguments& arguments);
int RunGivenMod(const Arguments& arguments);
int Recover(const Arguments& arguments);
int LookAtInstall(const Arguments& arguments);

int ListOptions(const Arguments& arguments);
int ShowLine(const Arguments& arguments);

int ListMaps(const Arguments& arguments);

int ListSettings(const Arguments& arguments);
int SetSetting(const Arguments& arguments);

}  // namespace varnik::cli
