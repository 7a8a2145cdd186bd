// The Java runtimes of this machine, found without configuration.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <torvan/JavaRuntimeException.h>

#include <string>

#include "fakes/Failure.h"
#include "fakes/WideText.h"
#include "jni/JavaRuntimeLibraryPool.h"
#include "jni/WinJavaRuntimeLibraryImpl.h"

namespace tests {
namespace {

using torvan::jni::CDynamicJavaRuntime;
using torvan::jni::CJavaRuntimeException;
using torvan::jni::CJavaRuntimeLibraryPool;
using torvan::jni::CWinJavaRuntimeLibraryImpl;

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

TEST(WinJavaRuntimeLibraryImplInstallationTest, CurrentRuntimeOfTheMachineIsALibraryThatExists) {
  const CWinJavaRuntimeLibraryImpl library(CDynamicJavaRuntime::Sun, CDynamicJavaRuntime::Default, nullptr);
  const std::string path = Narrow(library.GetPath());
  EXPECT_TRUE(EndsWith(path, "/libjvm.so")) << path;
  struct stat status = {};
  EXPECT_EQ(stat(path.c_str(), &status), 0) << path;
}

TEST(WinJavaRuntimeLibraryImplInstallationTest, CurrentRuntimeOfTheMachineLoadsAndHasNoVmYet) {
  // The runtime keeps some memory until the process ends. It stays mapped, so that a leak checker sees that memory's
  // owner.
  const CWinJavaRuntimeLibraryImpl library(CDynamicJavaRuntime::Sun, CDynamicJavaRuntime::Default, nullptr);
  ASSERT_NE(dlopen(Narrow(library.GetPath()).c_str(), RTLD_LAZY | RTLD_NODELETE), nullptr);

  const auto use =
      CJavaRuntimeLibraryPool::GetInstance()->Get(CDynamicJavaRuntime::Sun, CDynamicJavaRuntime::Default, nullptr);
  jsize count = -1;
  EXPECT_EQ(use->GetCreatedJavaVms(nullptr, 0, &count), JNI_OK);
  EXPECT_EQ(count, 0);
}

TEST(WinJavaRuntimeLibraryImplInstallationTest, VersionThatIsNotInstalledIsNotFound) {
  EXPECT_EQ(FailureOf([] {
              CWinJavaRuntimeLibraryImpl(CDynamicJavaRuntime::Sun, CDynamicJavaRuntime::Default, RX_TEXT("0.0.0"));
            }),
            Throws<CJavaRuntimeException>("jni/WinJavaRuntimeLibraryImpl", 223,
                                          "The specified Sun JRE version is not found."));
}

}  // namespace
}  // namespace tests
