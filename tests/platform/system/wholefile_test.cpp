#include "platform/system/files/wholefile.h"

#include "platform/system/filesystem/currentfilesystem.h"
#include "tests/harness/faultyfilesystem.h"
#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

namespace {

TEST(WholeFile, HoldsTheOldOrTheNewContentWhateverFails) {
  const test::Sandbox sandbox;
  const std::string path = sandbox.InstallText() + "file";
  test::WriteFile(sandbox.Install() / "file", "old");
  int calls = 0;
  for (const bool cutShort : {false, true})
    for (int n = 0; n <= calls; ++n) {  // with 0 nothing fails
      SCOPED_TRACE(n);
      test::FaultyFileSystem faulty(win::CurrentFileSystem());
      const win::ScopedFileSystem scope(faulty);
      faulty.FailAt(n, ENOSPC, cutShort);
      EXPECT_EQ(win::WriteWholeFile(path, "new content"), n == 0);
      if (n == 0) calls = faulty.Calls();
      // The last call syncs the folder.
      EXPECT_EQ(win::ReadWholeFile(path), n == 0 || n == calls ? "new content" : "old");
      faulty.ForgetUnsynced();
      EXPECT_EQ(win::ReadWholeFile(path), n == 0 ? "new content" : "old");
    }
}

}  // namespace
