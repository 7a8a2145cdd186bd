// The start of a test on a fake VM.
#pragma once

#include <gtest/gtest.h>
#include <torvan/jni/JavaVm.h>

#include "fakes/FakeJvm.h"
#include "jni/JavaRuntimeImpl.h"

namespace tests {

// A runtime for VM handles to refer to; it does nothing.
class FakeRuntimeImpl : public torvan::jni::CJavaRuntimeImpl {
 public:
  FakeRuntimeImpl() : CJavaRuntimeImpl(JNI_VERSION_1_6) {}

  static torvan::jni::CJavaVm Wrap(const torvan::jni::CJavaRuntime& runtime, JavaVM* vm) {
    return CJavaRuntimeImpl::CreateJavaVm(runtime, vm);
  }

  torvan::jni::CJavaVm CreateJavaVm(const torvan::jni::CJavaRuntime& runtime, const torvan::jni::options::COptions&,
                                    bool) override {
    ADD_FAILURE() << "this runtime creates no VM";
    return Wrap(runtime, nullptr);
  }
  unsigned int GetCreatedJavaVms(const torvan::jni::CJavaRuntime&,
                                 mirel::util::CVector<torvan::jni::CJavaVm>&) override {
    ADD_FAILURE() << "this runtime knows no VM";
    return 0;
  }
};

class FakeRuntime : public torvan::jni::CJavaRuntime {
 public:
  FakeRuntime() : CJavaRuntime(mirel::base::CRef<torvan::jni::CJavaRuntimeImpl>(new FakeRuntimeImpl())) {}
};

// A new handle of a fake VM, with its own runtime.
inline torvan::jni::CJavaVm HandleOf(FakeJvm& jvm) { return FakeRuntimeImpl::Wrap(FakeRuntime(), jvm.Vm()); }

// A fake VM without any script. After the test nothing of it may be referenced.
class JvmTest : public testing::Test {
 protected:
  torvan::jni::CJavaVm Vm() { return HandleOf(jvm); }

  void TearDown() override {
    EXPECT_EQ(jvm.LiveGlobals(), 0u);
    EXPECT_EQ(jvm.HeldStringChars(), 0u);
  }

  FakeJvm jvm;
};

}  // namespace tests
