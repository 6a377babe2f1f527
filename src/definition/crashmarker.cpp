#include "definition/crashmarker.h"

#include "platform/system/store/registry.h"
#include "support/registry.h"

namespace varnik {

namespace {

constexpr char kRootKey[] = "bz2loc";
constexpr char kDefinitionKey[] = "filename";

}  // namespace

CrashMarker ReadCrashMarker(const win::SettingsSnapshot& stored) {
  return {stored.Get(kCrashSection, kRootKey), stored.Get(kCrashSection, kDefinitionKey)};
}

void WriteCrashMarker(const CrashMarker& marker) {
  StoreAll(kCrashSection, {{kRootKey, marker.root}, {kDefinitionKey, marker.definitionFile}}, win::OtherKeys::kKeep);
  RegWriteValue(win::kHkeyLocalMachine, kRunOnceKey, kCrashRecoveryValue, RunOnceCommand(), win::kRegSz);
}

win::SettingsSnapshot RemoveCrashMarker(win::OtherKeys others) {
  win::SettingsSnapshot after;
  StoreAll(kCrashSection, {{kRootKey, {}}, {kDefinitionKey, {}}}, others, &after);
  RegRemoveValue(win::kHkeyLocalMachine, kRunOnceKey, kCrashRecoveryValue);
  return after;
}

}  // namespace varnik
