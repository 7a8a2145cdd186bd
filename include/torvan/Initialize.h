// Start-up and shut-down of the library.
#pragma once

#include <torvan/Export.h>

namespace torvan {

// Takes one use of the library; the first use brings the foundation library up.
// Returns the number of uses, at least 1 and at most 2147483647, where the count stays. When the first use cannot bring
// the foundation library up, its negative result is returned; that use still counts and is given back with Terminate().
// Throws nothing. Call from the thread that starts the program: the count is not guarded.
TORVAN_API int Initialize() noexcept;

// Gives back one use of the library; the last one brings the foundation library down.
// Returns the number of uses left; 0 when there was none. Throws nothing.
TORVAN_API int Terminate() noexcept;

}  // namespace torvan
