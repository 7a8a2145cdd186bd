// The process-wide streams.
#pragma once

#include <mirel/Export.h>

namespace mirel::io {
class CPrintStream;
}

namespace mirel::base {

// The state of the process as a whole.
class MIREL_API CSystem {
 public:
  CSystem() = delete;

  // The stream for failures that must not reach the caller: the standard error stream unless replaced.
  // A host assigns its own stream, which must live as long as it is assigned; null discards the reports. A report is a
  // line in several pieces, printed by the thread that fails. Not synchronised: assign before there are threads.
  static io::CPrintStream* debugOut;
};

}  // namespace mirel::base
