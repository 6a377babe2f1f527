#include "platform/system/process/services.h"

#include "platform/system/filesystem/currentfilesystem.h"
#include "platform/system/text/text.h"

#include <cstdio>
#include <memory>
#include <utility>

namespace win {
namespace {

// A call in progress keeps the services it runs in: an event may replace them.
using Held = std::shared_ptr<const WindowServices>;
Held installed = std::make_shared<WindowServices>();

}  // namespace

// An event that is served during a rehearsal would act on what is not there.
void DoEvents() {
  if (!CurrentFileSystem().IsSeenByPrograms()) return;
  if (const Held services = installed; services->doEvents) services->doEvents();
}

Answer MsgBox(const std::string& text, int style, const std::string& title) {
  const Held services = installed;
  if (services->msgBox) return services->msgBox(text, style, title);
  const bool question = ButtonsOfStyle(style) != kOkOnly;
  std::fprintf(stderr, question ? "%s (taken as No)\n" : "%s\n", Printable(text).c_str());
  return question ? Answer::kNo : Answer::kOk;
}

std::string InputBox(const std::string& prompt, const std::string& title, const std::string& initial) {
  const Held services = installed;
  return services->inputBox ? services->inputBox(prompt, title, initial) : std::string();
}

void SetWindowServices(WindowServices services) { installed = std::make_shared<WindowServices>(std::move(services)); }

}  // namespace win
