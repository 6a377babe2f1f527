#include "platform/system/process/instance.h"

#include "tests/harness/sandbox.h"

#include <gtest/gtest.h>

#include <poll.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>
#include <memory>

namespace {

// Runs `body` in a process of its own and gives its exit status, 128 plus the signal when it was killed.
int InAnotherProcess(const std::function<int()>& body) {
  const pid_t child = fork();
  if (child == 0) _exit(body());
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

bool IsReadable(int descriptor) {
  pollfd wanted{descriptor, POLLIN, 0};
  return poll(&wanted, 1, 0) == 1;
}

struct InstanceTest : testing::Test {
  InstanceTest() {
    setenv("DISPLAY", ":7", 1);
    unsetenv("WAYLAND_DISPLAY");
  }
  test::Sandbox sandbox;
};

TEST_F(InstanceTest, OnlyOneProcessPerDisplayHoldsThePlace) {
  win::Instance mine;
  EXPECT_FALSE(mine.OtherIsRunning());
  EXPECT_FALSE(mine.OtherIsRunning());
  const struct {
    const char *display, *wayland;
    bool refused;
  } kCases[] = {{":7", "", true}, {":7.0", "", true}, {":8", "", false}, {":7", "/run/wayland-1", false}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.display);
    const int status = InAnotherProcess([&c] {
      setenv("DISPLAY", c.display, 1);
      setenv("WAYLAND_DISPLAY", c.wayland, 1);
      return win::Instance().OtherIsRunning() ? 1 : 0;
    });
    EXPECT_EQ(status, c.refused ? 1 : 0);
  }
}

TEST_F(InstanceTest, LeavingsOfAKilledOneDoNotCount) {
  const int status = InAnotherProcess([] {
    win::Instance holder;
    if (!holder.OtherIsRunning()) kill(getpid(), SIGKILL);
    return 0;
  });
  EXPECT_EQ(status, 128 + SIGKILL);
  EXPECT_FALSE(win::Instance().OtherIsRunning());
}

TEST_F(InstanceTest, OfManySimultaneousStartsOneWins) {
  constexpr int kStarts = 24;
  int gate[2], counted[2], results[2];
  for (int* ends : {gate, counted, results})
    ASSERT_EQ(pipe(ends), 0);
  for (int i = 0; i < kStarts; ++i)
    if (fork() == 0) {
      char ignored = 0;
      close(gate[1]);
      close(counted[1]);
      (void)!read(gate[0], &ignored, 1);  // ends for all of them at once
      win::Instance instance;
      const char won = instance.OtherIsRunning() ? 0 : 1;
      (void)!write(results[1], &won, 1);
      (void)!read(counted[0], &ignored, 1);
      _exit(0);
    }
  close(gate[1]);
  int winners = 0;
  for (int i = 0; i < kStarts; ++i) {
    char won = 0;
    ASSERT_EQ(read(results[0], &won, 1), 1);
    winners += won;
  }
  EXPECT_EQ(winners, 1);
  close(counted[1]);
  while (wait(nullptr) > 0)
    continue;
  for (const int end : {gate[0], counted[0], results[0], results[1]})
    close(end);
}

TEST_F(InstanceTest, ARequestReachesTheHolderOnce) {
  win::Instance holder;
  int requests = 0;
  holder.OnCloseRequest([&requests] { ++requests; });
  ASSERT_GE(holder.Descriptor(), 0);
  EXPECT_FALSE(IsReadable(holder.Descriptor()));
  for (int i = 0; i < 2; ++i)
    EXPECT_EQ(InAnotherProcess([] {
                win::Instance other;
                other.CloseOther();
                return other.Descriptor() == -1 ? 0 : 1;
              }),
              0);
  EXPECT_TRUE(IsReadable(holder.Descriptor()));
  holder.HandleRequests();
  holder.HandleRequests();
  EXPECT_EQ(requests, 1);
}

TEST_F(InstanceTest, ARequestThatFoundNobodyDoesNotComeBackToItsSender) {
  auto first = std::make_unique<win::Instance>();
  win::Instance second;
  second.CloseOther();
  first.reset();
  EXPECT_FALSE(second.OtherIsRunning());
  second.OnCloseRequest([] { ADD_FAILURE() << "closed by its own request"; });
  second.HandleRequests();
}

TEST_F(InstanceTest, ExclusiveLockIsFreeAgainWhenItsHolderDies) {
  win::ExclusiveLock lock("run");
  EXPECT_EQ(InAnotherProcess([] {
              win::ExclusiveLock theirs("run");
              if (theirs.TryAcquire() && theirs.TryAcquire()) kill(getpid(), SIGKILL);
              return 0;
            }),
            128 + SIGKILL);
  EXPECT_TRUE(lock.TryAcquire());
  EXPECT_TRUE(lock.IsHeld());
  EXPECT_EQ(InAnotherProcess([] { return win::ExclusiveLock("run").TryAcquire() ? 1 : 0; }), 0);
  EXPECT_EQ(InAnotherProcess([] { return win::ExclusiveLock("other").TryAcquire() ? 1 : 0; }), 1);
  lock.Release();
  EXPECT_EQ(InAnotherProcess([] { return win::ExclusiveLock("run").TryAcquire() ? 1 : 0; }), 1);
}

}  // namespace
