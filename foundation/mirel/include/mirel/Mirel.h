// Start-up and shut-down of the foundation library.
#pragma once

#include <mirel/Export.h>

namespace mirel {

// Brings the foundation library up, or takes one more use of it.
// Returns the number of uses, at least 1; a negative number would mean that it cannot be used. Throws nothing. Call
// from the thread that starts the program.
MIREL_API int Initialize() noexcept;

// Gives back one use; the last one writes out what the debug stream still holds.
// Returns the number of uses left; 0 when there was none to give back. Throws nothing.
MIREL_API int Terminate() noexcept;

}  // namespace mirel
