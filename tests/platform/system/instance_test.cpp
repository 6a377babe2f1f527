#include "platform/system/instance.h"

#include <gtest/gtest.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include <memory>

#include "tests/harness/sandbox.h"

namespace {

int InAnotherProcess(const std::function<int()>& body) {
  return test::StatusOf(test::Fork(body));
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
  for (int i = 0; i < 2; ++i)
    EXPECT_FALSE(mine.OtherIsRunning());
  const struct {
    const char *display, *wayland;
    int refused;
  } kCases[] = {{":7", "", 1}, {":7.0", "", 1}, {":8", "", 0}, {":7", "/run/wayland-1", 0}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.display);
    const int status = InAnotherProcess([&c] {
      setenv("DISPLAY", c.display, 1);
      setenv("WAYLAND_DISPLAY", c.wayland, 1);
      return win::Instance().OtherIsRunning() ? 1 : 0;
    });
    EXPECT_EQ(status, c.refused);
  }
}

TEST_F(InstanceTest, ARequestReachesTheHolderOnceAndNeverItsSender) {
  auto holder = std::make_unique<win::Instance>();
  int requests = 0;
  holder->OnCloseRequest([&requests] { ++requests; });
  EXPECT_FALSE(IsReadable(holder->Descriptor()));
  win::Instance other;
  EXPECT_EQ(other.Descriptor(), -1);
  for (int i = 0; i < 2; ++i)
    other.CloseOther();
  EXPECT_TRUE(IsReadable(holder->Descriptor()));
  for (int i = 0; i < 2; ++i)
    holder->HandleRequests();
  EXPECT_EQ(requests, 1);
  other.CloseOther();
  holder.reset();
  EXPECT_FALSE(other.OtherIsRunning());
  other.OnCloseRequest([] { ADD_FAILURE() << "closed by its own request"; });
  other.HandleRequests();
}

TEST_F(InstanceTest, ExclusiveLockIsFreeAgainWhenItsHolderDies) {
  const auto acquires = [](const char* name) {
    return InAnotherProcess([name] { return win::ExclusiveLock(name).TryAcquire() ? 1 : 0; });
  };
  win::ExclusiveLock lock("run");
  EXPECT_EQ(InAnotherProcess([&] { return lock.TryAcquire() && lock.TryAcquire() ? kill(getpid(), SIGKILL) : 0; }),
            128 + SIGKILL);
  EXPECT_TRUE(lock.TryAcquire());
  EXPECT_TRUE(lock.IsHeld());
  EXPECT_EQ(acquires("run"), 0);
  EXPECT_EQ(acquires("other"), 1);
  lock.Release();
  EXPECT_EQ(acquires("run"), 1);
}

}  // namespace
