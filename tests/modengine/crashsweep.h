#pragma once

#include "tests/harness/crash.h"

#include <gtest/gtest.h>

#include <functional>

namespace test {

// Kills the program before each of its file operations in turn, each time on what `prepare` set up, and has the
// leavings judged.
inline void SweepKills(const Command& command, const std::function<void()>& prepare,
                       const std::function<void()>& judge) {
  prepare();
  const int operations = CountOperations(command);
  testing::Test::RecordProperty("operations", operations);
  EXPECT_GT(operations, 0);
  for (int n = 1; n <= operations && !testing::Test::HasFailure(); ++n) {
    prepare();
    const Outcome outcome = RunKilledAt(n, command);
    SCOPED_TRACE("killed before " + outcome.lastOperation);
    judge();
  }
}

}  // namespace test
