#include <torvan/java/Handle.h>

#include "java/VmState.h"

namespace torvan::java {

namespace {

// A handle is made of a raw reference by its own family only.
class MadeHandle : public jni::CJavaObject {
 public:
  MadeHandle(const jni::CJavaVm& vm, jobject object) : CJavaObject(vm, object, true) {}
};

}  // namespace

jni::CJavaObject Handle(const Ref<Object>& ref) {
  detail::RequireVm();
  return MadeHandle(*detail::TheVm().handle, ref.Get());
}

}  // namespace torvan::java
