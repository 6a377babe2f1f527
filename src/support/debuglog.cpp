#include "support/debuglog.h"

#include "platform/system/files/lines.h"
#include "support/runstate.h"

namespace varnik {

void LogLine(std::string_view text) {
  if (DebugLog) win::LineWriter(AppPath + "error.log", win::WriteMode::kAppend).WriteLine(text);
}

}  // namespace varnik
