#include "Foundation.h"

#include <mirel/Mirel.h>
#include <torvan/Initialize.h>

namespace torvan {

namespace {

constexpr int MaxUseCount = 0x7FFFFFFF;

Foundation s_foundation = {mirel::Initialize, mirel::Terminate, 0};

}  // namespace

Foundation& Foundation::Current() noexcept { return s_foundation; }

int Initialize() noexcept {
  Foundation& foundation = Foundation::Current();
  if (foundation.useCount == MaxUseCount) return MaxUseCount;
  ++foundation.useCount;
  if (foundation.useCount > 1) return foundation.useCount;
  const int result = foundation.initialize();
  // Intentional: the use that failed still counts, so Terminate ends it as any other.
  if (result < 0) return result;
  return foundation.useCount;
}

int Terminate() noexcept {
  Foundation& foundation = Foundation::Current();
  if (foundation.useCount == 0) return 0;
  --foundation.useCount;
  if (foundation.useCount > 0) return foundation.useCount;
  foundation.terminate();
  return foundation.useCount;
}

}  // namespace torvan
