#include "definition/crashmarker.h"

#include "platform/system/store/registry.h"
#include "support/registry.h"
#include "support/settings.h"

namespace varnik {

namespace {

constexpr char kRootKey[] = "bz2loc";
constexpr char kDefinitionKey[] = "filename";

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
  Forget(kCrashSection, kDefinitionKey);
  RegRemoveValue(win::kHkeyLocalMachine, kRunOnceKey, kCrashRecoveryValue);
}

}  // namespace varnik
