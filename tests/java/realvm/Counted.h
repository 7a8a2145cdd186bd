// How long functions live.
#pragma once

#include <atomic>

#include "java/realvm/CallbackTags.h"

namespace tests {

// Counts the functions that hold one.
struct Counted {
  explicit Counted(std::atomic<int>& counter) : count(&counter) { ++counter; }
  Counted(const Counted& other) : count(other.count) { ++*count; }
  Counted& operator=(const Counted&) = delete;
  ~Counted() { --*count; }
  std::atomic<int>* count;
};

// Has Java collect until the count is down to this. Returns whether it comes to that; before Java 9, where what Java
// owns is never destroyed, whether it does not.
inline bool ComesDownTo(const std::atomic<int>& count, int wanted) {
  if (BeforeJava9()) {
    const int before = count;
    for (int i = 0; i < 5; ++i) Collect();
    return count == before && before > wanted;
  }
  for (int i = 0; i < 500 && count > wanted; ++i) Collect();
  return count == wanted;
}

}  // namespace tests
