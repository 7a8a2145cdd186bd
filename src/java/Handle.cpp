#include <torvan/java/Handle.h>

#include <torvan/java/detail/Pending.h>

#include "java/VmState.h"

namespace torvan::java {

namespace {

// Only a handle's own family can make one from a raw reference.
class MadeHandle : public jni::CJavaObject {
 public:
  MadeHandle(const jni::CJavaVm& vm, jobject object) : CJavaObject(vm, object, true) {}
};

}  // namespace

jni::CJavaObject Handle(const Ref<Object>& ref) {
  detail::RequireVm();
  detail::CallEnv();
  return MadeHandle(*detail::TheVm().handle, ref.Get());
}

}  // namespace torvan::java
