// The start of a test of handles on a fake VM.
#pragma once

#include <torvan/jni/JavaClass.h>
#include <torvan/jni/JavaObject.h>

#include "fakes/JvmTest.h"

namespace tests {

// A handle made as the library's own operations make it, or of a global reference that it adopts.
class Object : public torvan::jni::CJavaObject {
 public:
  Object(const torvan::jni::CJavaVm& vm, jobject object, bool makeGlobal = true)
      : CJavaObject(vm, object, makeGlobal) {}
};

// How the log shows an attached thread: without attach arguments.
constexpr const char* attach = "AttachCurrentThread(null)";

// A class handle is null only when it is assigned a null object's reference.
inline void MakeNull(torvan::jni::CJavaClass& javaClass, const torvan::jni::CJavaVm& vm) {
  static_cast<torvan::jni::CJavaObject&>(javaClass) = Object(vm, nullptr);
}

// A working VM with one handle of it.
class HandleTest : public JvmTest {
 protected:
  HandleTest() { jvm.AnswerAll(); }
  ~HandleTest() noexcept override {}

  // A handle of the next object. The calls that make it are removed from the log.
  Object NewObject() {
    Object object(vm, jvm.NewObject());
    jvm.TakeCalls();
    return object;
  }
  torvan::jni::CJavaClass NewClass() {
    torvan::jni::CJavaClass javaClass = vm.FindClass("C");
    jvm.TakeCalls();
    return javaClass;
  }

  const torvan::jni::CJavaVm vm = Vm();
};

}  // namespace tests
