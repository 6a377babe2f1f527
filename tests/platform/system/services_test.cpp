#include "platform/system/process/services.h"

#include <gtest/gtest.h>

namespace {

struct Services : testing::Test {
  ~Services() override { win::SetWindowServices({}); }
};

TEST_F(Services, WithoutAWindowAMessageIsSaidAndAQuestionGetsTheSafeAnswer) {
  const struct {
    int style;
    win::Answer answer;
  } kCases[] = {{win::kOkOnly, win::Answer::kOk},
                {win::kCritical, win::Answer::kOk},
                {win::kYesNo, win::Answer::kNo},
                {win::kYesNoCancel + win::kCritical, win::Answer::kNo}};
  for (const auto& c : kCases) {
    SCOPED_TRACE(c.style);
    testing::internal::CaptureStderr();
    EXPECT_EQ(win::MsgBox("100 % gone", c.style, "Title"), c.answer);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("100 % gone"), std::string::npos);
  }
  EXPECT_EQ(win::InputBox("Name?", "Title", "initial"), "");
  win::DoEvents();
}

TEST_F(Services, AHandlerMayReplaceTheServicesItRunsIn) {
  std::string seen;
  const std::string kept(100, 'x');
  win::SetWindowServices({[&seen, kept] {
                            win::SetWindowServices({});
                            seen = kept;
                          },
                          nullptr, nullptr});
  win::DoEvents();
  EXPECT_EQ(seen, kept);
  seen.clear();
  win::DoEvents();
  EXPECT_EQ(seen, "");
}

}  // namespace
