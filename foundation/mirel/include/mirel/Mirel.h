// Start-up and shut-down of the foundation library.
#pragma once

#include <mirel/Export.h>

namespace mirel {

// Starts the foundation library, or counts one more use of it.
// Returns the number of uses, at least 1; a negative number would mean that it cannot be used. Throws nothing. Call it
// from the thread that starts the program.
MIREL_API int Initialize() noexcept;

// Ends one use; the last one flushes the debug stream.
// Returns the number of uses left; 0 when there was none to end. Throws nothing.
MIREL_API int Terminate() noexcept;

}  // namespace mirel
