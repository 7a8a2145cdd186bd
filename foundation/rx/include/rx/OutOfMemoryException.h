// What the root library throws when memory runs out.
#pragma once

#include <rx/Export.h>

namespace RX {

// Thrown by the root library's own classes when memory cannot be allocated.
// It has no base class and no text. The foundation library's CMemoryException is another class: catch both.
class RX_API OutOfMemoryException {};

}  // namespace RX
