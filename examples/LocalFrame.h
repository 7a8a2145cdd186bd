// The local references of a stretch of code.
#pragma once

#include <torvan/jni/JavaVm.h>

// Ends the local references that are created while it lives: in a thread that does not return to Java they would pile
// up. A handle keeps its object by a global reference and may outlive the frame.
class LocalFrame {
 public:
  explicit LocalFrame(const torvan::jni::CJavaVm& vm) : m_env(vm.Attach()) { m_env->PushLocalFrame(16); }
  ~LocalFrame() { m_env->PopLocalFrame(nullptr); }
  LocalFrame(const LocalFrame&) = delete;
  LocalFrame& operator=(const LocalFrame&) = delete;

 private:
  JNIEnv* m_env;
};
