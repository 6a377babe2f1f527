#include "platform/system/paths/program.h"
#include "platform/system/store/registry.h"
#include "startup/ui/program.h"
#include "support/version.h"

int main(int argc, char** argv) {
  win::SetProgram({"varnik", "Varnik", "", varnik::kVersion});
  win::SetCommandLine(argc, argv);
  const auto logIn = win::HandleAutostartEntry();
  return varnik::Main();
}
