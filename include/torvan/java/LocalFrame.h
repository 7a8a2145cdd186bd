// Batches of local references.
#pragma once

#include <torvan/java/detail/Environment.h>

namespace torvan::java {

// Deletes, at the end of its scope, the local references that were made in the calling thread meanwhile.
// Put it around batches of calls of the fixed interface, which does not delete its local references. Drop a Local<T>
// inside the frame that it was made in. The frames of a thread must end in the reverse order, in that thread and before
// it is detached: a frame that strayed is left alone.
class [[nodiscard]] LocalFrame {
 public:
  // `capacity` is how many references the frame has room for at least; more may be made.
  // Throws Misuse for a negative number, Error when Java's memory is full, and as Thread() does.
  explicit LocalFrame(int capacity = 64);
  LocalFrame(const LocalFrame&) = delete;
  LocalFrame& operator=(const LocalFrame&) = delete;
  ~LocalFrame();

 private:
  detail::Attachment m_attachment;
};

}  // namespace torvan::java
