#include "modengine/runguard.h"

#include <memory>

namespace varnik {

const char kRunRefused[] =
    "Varnik is already running the game, or changing an install, in another process. Please wait until that has ended.";

namespace {

// One lock for all guards of the process: a handler that runs inside a run is part of it.
std::unique_ptr<win::ExclusiveLock> theLock;
int guardsHeld = 0;

}  // namespace

RunGuard::RunGuard(const std::string& root) : install_(root) {
  if (guardsHeld == 0) theLock = std::make_unique<win::ExclusiveLock>("run");
  held_ = theLock->TryAcquire();
  if (held_) ++guardsHeld;
}

RunGuard::~RunGuard() {
  if (held_ && --guardsHeld == 0) theLock.reset();
}

}  // namespace varnik
