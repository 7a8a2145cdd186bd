// The start of a test on a runtime with a fake library.
#pragma once

#include <gmock/gmock.h>
#include <torvan/jni/DynamicJavaRuntime.h>
#include <torvan/jni/JavaVm.h>
#include <torvan/jni/options/Options.h>

#include "fakes/Failure.h"
#include "fakes/FakeJvm.h"
#include "fakes/FakeRuntimeLibrary.h"
#include "fakes/FakeSystem.h"
#include "platform/System.h"

namespace tests {

using namespace torvan::jni;

// A system with one runtime library; it must be unloaded when the test is over.
class RuntimeTest : public testing::Test {
 protected:
  RuntimeTest() : library(system, "C:\\jvm.dll"), m_scope(system) { library.Serve(jvm.Vm(), jvm.Env()); }

  // Members of derived fixtures are gone by then.
  ~RuntimeTest() override {
    EXPECT_THAT(system.LoadedModules(), testing::IsEmpty());
    EXPECT_THAT(jvm.Calls(), testing::IsEmpty()) << "runtimes make no JNI call";
  }

  static CDynamicJavaRuntime Runtime(jint jniVersion = JNI_VERSION_1_6) {
    return CDynamicJavaRuntime(RX_TEXT("C:\\jvm.dll"), jniVersion);
  }

  bool IsLoaded() const { return !system.LoadedModules().empty(); }

  FakeSystem system;
  FakeRuntimeLibrary library;
  FakeJvm jvm;

 private:
  torvan::platform::SystemScope m_scope;
};

}  // namespace tests
