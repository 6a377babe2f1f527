#include "platform/system/files/wholefile.h"

#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/filesystem/overlayfilesystem.h"
#include "tests/harness/faultyfilesystem.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

namespace {

// Writes over an older file, in memory, with call `n` failing. Returns the number of calls, and in `kept` whether the
// write succeeded, what the file then holds, and what it holds after a power cut.
struct Kept {
  bool done = false;
  std::string now, afterPowerCut;
};

int WriteFailingAt(int n, int error, bool cutShort, const std::string& path, Kept& kept) {
  win::OverlayFileSystem memory(win::CurrentFileSystem());
  test::FaultyFileSystem faulty(memory);
  const win::ScopedFileSystem scope(faulty);
  faulty.FailAt(n, error, cutShort);
  kept.done = win::WriteWholeFile(path, "new content");
  kept.now = win::ReadWholeFile(path).value_or("none");
  faulty.ForgetUnsynced();
  kept.afterPowerCut = win::ReadWholeFile(path).value_or("none");
  return faulty.Calls();
}

TEST(WholeFile, HoldsTheOldOrTheNewContentWhateverFails) {
  const test::Sandbox sandbox;
  const std::string path = sandbox.InstallText() + "file";
  test::WriteFile(sandbox.Install() / "file", "old");
  Kept kept;
  const int calls = WriteFailingAt(0, 0, false, path, kept);
  EXPECT_TRUE(kept.done);
  EXPECT_EQ(kept.afterPowerCut, "new content");
  for (const bool cutShort : {false, true})
    for (int n = 1; n <= calls; ++n) {
      SCOPED_TRACE(n);
      WriteFailingAt(n, ENOSPC, cutShort, path, kept);
      EXPECT_FALSE(kept.done);
      EXPECT_EQ(kept.now, n == calls ? "new content" : "old");  // the last call syncs the folder
      EXPECT_EQ(kept.afterPowerCut, "old");
    }
}

}  // namespace
