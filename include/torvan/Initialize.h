// Start-up and shut-down of the library.
#pragma once

#include <torvan/Export.h>

namespace torvan {

// Counts one use of the library; the first use starts the foundation library.
// Returns the number of uses, from 1 to 2147483647, where the count stays. When the foundation library cannot be
// started, its negative result is returned; that use still counts and is ended with Terminate(). Throws nothing. Call
// it from the thread that starts the program: the count is not synchronised.
TORVAN_API int Initialize() noexcept;

// Ends one use of the library; the last one shuts the foundation library down.
// Returns the number of uses left; 0 when there was none. Throws nothing.
TORVAN_API int Terminate() noexcept;

}  // namespace torvan
