// The process-wide streams.
#pragma once

#include <mirel/Export.h>

namespace mirel::io {
class CPrintStream;
}

namespace mirel::base {

// What belongs to the process as a whole.
class MIREL_API CSystem {
 public:
  CSystem() = delete;

  // Where failures are reported that must not reach the caller: the standard error stream unless replaced.
  // A host assigns its own stream, which must live as long as it stands here; null makes such reports disappear. Not
  // guarded against other threads.
  static io::CPrintStream* debugOut;
};

}  // namespace mirel::base
