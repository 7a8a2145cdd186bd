// The end of the process, which the pool may meet before the last use of a library.
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "jni/JavaRuntimeLibraryPool.h"
#include "jni/LibraryTest.h"

namespace runtime_tests {
namespace {

using torvan::jni::CJavaRuntimeLibraryPool;
using torvan::jni::CJavaRuntimeLibraryRef;

constexpr int AsExpected = 7;

// What is made here in order is destroyed in reverse, the pool's holder first.
[[noreturn]] void EndWithAUseInAStaticObject() {
  static fakes::FakeSystem system;
  static const torvan::platform::SystemScope scope(system);
  static fakes::DebugOut debugOut;
  static bool stillLoadedAfterThePool = false;
  struct Judge {
    ~Judge() {
      const std::vector<std::string> calls = {"LoadModule(C:\\jvm.dll)", "FindSymbol(C:\\jvm.dll, JNI_CreateJavaVM)",
                                              "FindSymbol(C:\\jvm.dll, JNI_GetCreatedJavaVMs)",
                                              "UnloadModule(C:\\jvm.dll)"};
      std::_Exit(stillLoadedAfterThePool && system.Log() == calls && debugOut.Text().empty() ? AsExpected : 1);
    }
  };
  static const Judge judge;
  static mirel::base::CRef<CJavaRuntimeLibraryRef> use;
  struct AfterThePool {
    ~AfterThePool() { stillLoadedAfterThePool = system.LoadedModules().size() == 1; }
  };
  static const AfterThePool afterThePool;

  system.AddModule("C:\\jvm.dll", AllSymbols());
  use = CJavaRuntimeLibraryPool::GetInstance()->Get(RX_TEXT("C:\\jvm.dll"));
  std::exit(2);
}

TEST(RuntimeLibraryPoolDeathTest, UseThatOutlivesThePoolOnlyDropsItsLibrary) {
  // A process of its own, in which nobody asked for the pool yet.
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(EndWithAUseInAStaticObject(), ::testing::ExitedWithCode(AsExpected), "");
}

}  // namespace
}  // namespace runtime_tests
