// Batches of local references.
#pragma once

#include <torvan/java/detail/Environment.h>

namespace torvan::java {

// Ends, with its scope, the local references that were made in the calling thread meanwhile.
// Put it around batches of calls of the fixed interface, which leaves its local references. A Local<T> made inside is
// dropped inside. Frames of a thread end in the reverse order of their making.
class LocalFrame {
 public:
  // `capacity` is how many references the frame is made for at least; more may be made.
  // Throws Misuse for a negative number, Error when Java's memory is full, and as Thread() does.
  explicit LocalFrame(int capacity = 64);
  LocalFrame(const LocalFrame&) = delete;
  LocalFrame& operator=(const LocalFrame&) = delete;
  ~LocalFrame();

 private:
  JNIEnv* m_env;
};

}  // namespace torvan::java
