// A fake VM that counts references, and threads that are attached to it or not.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <torvan/java/detail/Environment.h>

#include <cstddef>
#include <string>

#include "fakes/FakeJvm.h"

namespace tests {

// The layer's VM while the test runs. At its end no reference may be left that was not there at its start.
class CountedVmTest : public testing::Test {
 protected:
  CountedVmTest() {
    jvm.On<&Invocation::GetEnv>([this](void** env, jint) {
      *env = isAttached ? jvm.Env() : nullptr;
      return isAttached ? JNI_OK : JNI_EDETACHED;
    });
    jvm.AnswerGlobals();
    jvm.AnswerWeaks();
    jvm.On<&Jni::NewLocalRef>([this](jobject object) {
      ++locals;
      return object;
    });
    jvm.On<&Jni::DeleteLocalRef>([this](jobject) { --locals; });
    jvm.On<&Jni::ExceptionCheck>([this] { return jvm.Pending() != nullptr ? JNI_TRUE : JNI_FALSE; });
    torvan::java::detail::UseVm(jvm.Vm());
  }
  ~CountedVmTest() override {
    torvan::java::detail::UseVm(nullptr);
    EXPECT_EQ(jvm.LiveGlobals(), 0u);
    EXPECT_EQ(locals, 0);
    EXPECT_EQ(jvm.LiveWeaks(), 0u);
  }

  // A local reference that Java made.
  jobject NewLocal() {
    ++locals;
    return jvm.NewObject();
  }

  // How many of the calls begin with this text.
  std::size_t Calls(const std::string& start) const {
    std::size_t count = 0;
    for (const std::string& call : jvm.Calls()) count += call.rfind(start, 0) == 0 ? 1 : 0;
    return count;
  }

  FakeJvm jvm;
  int locals = 0;
  static inline thread_local bool isAttached = true;
};

}  // namespace tests
