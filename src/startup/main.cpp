#include "platform/system/program.h"
#include "platform/system/registry.h"
#include "startup/program.h"

int main(int argc, char** argv) {
  win::SetProgram({"varnik", "Varnik", ""});
  win::SetCommandLine(argc, argv);
  const auto logIn = win::TakePartInLogIn();
  return varnik::Main();
}
