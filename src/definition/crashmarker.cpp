#include "definition/crashmarker.h"

#include "platform/system/store/registry.h"
#include "support/registry.h"
#include "support/settings.h"

namespace varnik {

namespace {

constexpr char kRootKey[] = "bz2loc";
constexpr char kDefinitionKey[] = "filename";

// Without a key the section goes. The entry for the next log-in goes last.
void RemoveFrom(const char* key) {
  Forget(kCrashSection, key);
  RegRemoveValue(win::kHkeyLocalMachine, kRunOnceKey, kCrashRecoveryValue);
}

}  // namespace

CrashMarker ReadCrashMarker() {
  return {ReadStored(kCrashSection, kRootKey), ReadStored(kCrashSection, kDefinitionKey)};
}

void WriteCrashMarker(const CrashMarker& marker) {
  Store(kCrashSection, kRootKey, marker.root);
  Store(kCrashSection, kDefinitionKey, marker.definitionFile);
  RegWriteValue(win::kHkeyLocalMachine, kRunOnceKey, kCrashRecoveryValue, RunOnceCommand(), win::kRegSz);
}

void RemoveCrashMarker() {
  Forget(kCrashSection, kRootKey);
  RemoveFrom(kDefinitionKey);
}

void RemoveCrashSection() {
  RemoveFrom("");
}

}  // namespace varnik
