#include <mirel/Mirel.h>

#include <mirel/base/System.h>
#include <mirel/io/PrintStream.h>

#include <climits>

namespace mirel {
namespace {

int s_uses = 0;

void FlushDebugOut() noexcept {
  try {
    if (base::CSystem::debugOut != nullptr) base::CSystem::debugOut->Flush();
  } catch (...) {
    // Must not fail while shutting down: whatever the host's stream throws is dropped.
  }
}

}  // namespace

int Initialize() noexcept {
  if (s_uses < INT_MAX) ++s_uses;
  return s_uses;
}

int Terminate() noexcept {
  if (s_uses == 0) return 0;
  if (--s_uses == 0) FlushDebugOut();
  return s_uses;
}

}  // namespace mirel
