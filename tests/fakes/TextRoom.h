// The capacity that text buffers start with.
#pragma once

#include <mirel/base/UnicodeStringBuffer.h>

#include <utility>

#include "fakes/Allocations.h"

namespace tests {

// The bytes that a text buffer for this many units allocates.
inline std::size_t RoomForUnits(unsigned int units) {
  const Allocations allocations;
  const mirel::base::CUnicodeStringBuffer buffer(units);
  return allocations.LastSize();
}

// The size of an operation's first allocation.
template <typename Operation>
std::size_t FirstRoomOf(Operation&& operation) {
  const Allocations allocations;
  std::forward<Operation>(operation)();
  return allocations.Taken().at(0).size;
}

}  // namespace tests
