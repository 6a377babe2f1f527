#include "definition/crashmarker.h"
#include "diagnosis/doctor.h"
#include "journal/journal.h"
#include "modengine/applymod.h"
#include "platform/system/files/wholefile.h"
#include "platform/system/filesystem/currentfilesystem.h"
#include "startup/crashrecovery.h"
#include "tests/harness/cases.h"
#include "tests/harness/disk.h"
#include "tests/modengine/modtest.h"

#include <cstdlib>

// What becomes of an install when a process, a disk or a machine fails at any moment. All of it happens in memory, over
// an install that is only read.
namespace varnik {
namespace {

using Files = std::map<std::string, std::string>;

class Durability : public test::ModTest {
 protected:
  Durability() {
    MakeInstall("1.3");
    Put("a=a b=b new/b=modded hidden/x=x RaceName_A.txt=player pilots/b=2 saved/d=4 m/p/a=1 m/s/c=3 m/a=mods m/n=n "
        "r=r");
    test::WriteFile(InRoot("RecyList.txt"), "first 1\nmod own");
    test::WriteFile(InRoot("gameprefs.ini"), "[UserPrefs]\nDefaultSessionName=Mine\n");
    for (const char* name : {"current", "older", "persistent"})
      std::filesystem::copy_file(SOURCE_DIR "/tests/startup/" + std::string(name) + ".bzm",
                                 InRoot(std::string(name) + ".bzm"));
    before_ = Install();
    SilenceBoxes();
  }

  static void SilenceBoxes() {
    win::SetWindowServices({{}, [](const std::string&, int, const std::string&) { return win::Answer::kNo; }, {}});
  }

  Files Install() const {
    Files files;
    AddBelow("", files);
    return files;
  }

  // The result tells whether something was said to have gone wrong.
  bool Apply(const std::string& mod) const {
    const ApplyResult result = ApplyMod(Root() + mod, mod == "older.bzm");
    return !result.refusal.empty() || !result.failed.empty();
  }
  bool Revert(const std::string& mod) const {
    const RevertResult result = RevertMod(Root() + mod, Root(), false);
    return !result.refusal.empty() || !result.failed.empty();
  }
  bool Run(const std::string& mod) const {
    const ApplyResult applied = ApplyMod(Root() + mod, mod == "older.bzm");
    if (!applied.active) return true;
    return Revert(mod) || !applied.failed.empty();
  }
  bool Start() const {
    SelectInstall(-1);
    const Recovery recovery = RecoverFromCrash();
    UseInstallFolder(Root());
    return !recovery.isDone;
  }
  bool Fix() const {
    bool allDone = true;
    for (const Leftover& leftover : FindLeftovers())
      allDone = leftover.mend && Mend(leftover) && allDone;
    return !allDone;
  }

  // "run current.bzm" and the like.
  bool Do(const std::string& words) const {
    const std::string mod = words.substr(words.find(' ') + 1);
    return words.starts_with("run")          ? Run(mod)
           : words.starts_with("activate")   ? Apply(mod)
           : words.starts_with("deactivate") ? Revert(mod)
           : words.starts_with("start")      ? Start()
                                             : Fix();
  }

  void ExpectAsBefore() const {
    EXPECT_EQ(Install(), before_);
    EXPECT_TRUE(ReadCrashMarker().root.empty());
    EXPECT_TRUE(ReadJournals().empty());
  }

  Files before_;

 private:
  void AddBelow(const std::string& folder, Files& files) const {
    win::FileSystem& disk = win::CurrentFileSystem();
    const auto listing = disk.OpenFolder(win::JoinPath(sandbox_.Install().string(), folder));
    for (win::FoundEntry entry; listing && listing->Next(entry);) {
      if (entry.name == "." || entry.name == "..") continue;
      const std::string name = folder.empty() ? entry.name : folder + "/" + entry.name;
      if (entry.isFolder)
        files[name + "/"], AddBelow(name, files);
      else
        files[name] = win::ReadWholeFile(Root() + name).value_or("unreadable");
    }
  }
};

// A command that is killed, and one that comes after it; `prepare` comes first, undisturbed.
TEST_F(Durability, AKillAtAnyMomentCanBeUndone) {
  for (const test::Case& c : test::Cases("startup/kills.jsonl")) {
    test::Disk prepared(win::CurrentFileSystem());
    const win::ScopedFileSystem preparation(prepared);
    for (const std::string words : c["prepare"])
      Do(words);
    for (int n = 1, calls = 1; n <= calls && !HasFailure(); ++n) {
      SCOPED_TRACE(c.dump() + std::to_string(n));
      test::Disk disk(win::CurrentFileSystem());
      const win::ScopedFileSystem scope(disk);
      disk.StopAt(n);
      Do(c["killed"]);
      calls = disk.Calls();
      disk.StopAt(0);
      for (const std::string words : c["then"])
        Do(words);
      ExpectAsBefore();
    }
  }
}

TEST_F(Durability, AFailureAtAnyMomentIsSaidAndLosesNothing) {
  for (const test::Case& c : test::Cases("startup/failures.jsonl")) {
    test::Disk prepared(win::CurrentFileSystem());
    const win::ScopedFileSystem preparation(prepared);
    for (const std::string words : c["prepare"])
      Do(words);
    Files promised;
    for (const int error : {0, EIO, ENOSPC, EACCES, EMFILE, EROFS})
      for (int n = 1, calls = 1; n <= calls && !HasFailure(); ++n) {
        SCOPED_TRACE(c.dump() + std::to_string(n) + std::strerror(error));
        test::Disk disk(win::CurrentFileSystem());
        const win::ScopedFileSystem scope(disk);
        disk.CountReads();
        if (error != 0) disk.FailAt(n, error, error == ENOSPC);
        const bool isSaid = Do(c["command"]);
        calls = error == 0 ? 1 : disk.Calls();
        disk.StopAt(0);
        if (error == 0) promised = Install();
        EXPECT_TRUE(isSaid || Install() == promised || Install() == before_);
        for (const std::string words : c["then"])
          Do(words);
        ExpectAsBefore();
      }
  }
}

TEST_F(Durability, APowerCutAtAnyMomentCanBeUndone) {
  const char* const kLines[] = {"rename(a,b2);",
                                "rename(none,b);",
                                "replace(b,new\\b,b.orig);",
                                "replace(a,none,a.orig);",
                                "fold(new);",
                                "addrecy(mod,x);",
                                "writeid(r);",
                                "rename(b,none);",
                                "pak(p);",
                                "rename(saved,pilots2);",
                                "defaultname(Mod);",
                                "racename(a,Mod);"};
  const char* const given = std::getenv("VARNIK_CUT_STEP");  // 1: every definition of three of these lines
  const std::size_t step = given ? std::strtoul(given, nullptr, 10) : 331;
  constexpr std::size_t kCount = std::size(kLines);
  int definitions = 0, cuts = 0;
  for (std::size_t i = 0; i < kCount * kCount * kCount && !HasFailure(); i += step) {
    const std::string lines =
        std::string(kLines[i % kCount]) + "\n" + kLines[i / kCount % kCount] + "\n" + kLines[i / kCount / kCount];
    Define(lines);
    before_ = Install();
    ++definitions;
    test::Disk whole(win::CurrentFileSystem());
    {
      const win::ScopedFileSystem scope(whole);
      Run("mod.bzm");
    }
    for (std::size_t cut = 0; cut <= whole.Log().size(); ++cut)
      for (const bool isOrdered : {true, false}) {
        const std::vector<test::DiskCall> log(whole.Log().begin(), whole.Log().begin() + static_cast<long>(cut));
        for (const auto& lasts : test::CutsOf(log, isOrdered, sandbox_.Home().string(), 16)) {
          std::string trace = lines + (isOrdered ? "\nordered" : "\nany");
          for (std::size_t call = 0; call < cut; ++call)
            trace += "\n" + std::to_string(static_cast<int>(log[call].kind)) + " " + log[call].path + " " +
                     log[call].target + (lasts[call] ? "" : " is lost");
          SCOPED_TRACE(trace);
          test::Disk disk(win::CurrentFileSystem());
          test::DoWhatLasts(log, lasts, disk);
          const win::ScopedFileSystem scope(disk);
          Start();
          Fix();
          ExpectAsBefore();
          if (HasFailure()) return;
          ++cuts;
        }
      }
  }
  RecordProperty("definitions", definitions);
  RecordProperty("cuts", cuts);
}

}  // namespace
}  // namespace varnik
