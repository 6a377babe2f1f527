#pragma once

#include "platform/system/process/services.h"

namespace win {

// Message box and input box on the screen, or answered by what AnswerBoxesWith has set.
WindowServices BoxServices();

}  // namespace win
