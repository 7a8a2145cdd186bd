// The life of the process's pool. Each test has its own process, in which the pool has not been used yet.
#include <cstdio>
#include <cstdlib>
#include <vector>

#include "fakes/Allocations.h"
#include "jni/JavaRuntimeLibraryPool.h"
#include "jni/LibraryTest.h"

namespace tests {
namespace {

using torvan::jni::CJavaRuntimeLibraryPool;
using torvan::jni::CJavaRuntimeLibraryRef;

class JavaRuntimeLibraryPoolUnloadDeathTest : public ::testing::Test {
 protected:
  JavaRuntimeLibraryPoolUnloadDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

constexpr int AsExpected = 7;

// What is made here in order is destroyed in reverse, the pool's holder first.
[[noreturn]] void EndWithAUseInAStaticObject() {
  static FakeSystem system;
  static const torvan::platform::SystemScope scope(system);
  static DebugOut debugOut;
  static const Allocations allocations;
  static bool stillLoadedAfterThePool = false;
  struct Judge {
    ~Judge() {
      const std::vector<std::string> calls = {"LoadModule(C:\\jvm.dll)", "FindSymbol(C:\\jvm.dll, JNI_CreateJavaVM)",
                                              "FindSymbol(C:\\jvm.dll, JNI_GetCreatedJavaVMs)",
                                              "UnloadModule(C:\\jvm.dll)"};
      std::fprintf(stderr, "blocks left: %d.\n", static_cast<int>(allocations.Live()));
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

TEST_F(JavaRuntimeLibraryPoolUnloadDeathTest, UseThatOutlivesThePoolOnlyDropsItsLibrary) {
  EXPECT_EXIT(EndWithAUseInAStaticObject(), ::testing::ExitedWithCode(AsExpected), "blocks left: 0\\.");
}

// Prints how many buckets the pool's table has, and for how many libraries.
[[noreturn]] void FillThePool() {
  FakeSystem system;
  const torvan::platform::SystemScope scope(system);
  Allocations allocations;
  std::vector<mirel::base::CRef<CJavaRuntimeLibraryRef>> uses;
  std::size_t buckets = 20;  // no other block is as large as that many pointers
  std::fprintf(stderr, "buckets");
  for (int libraries = 0; libraries <= 76; ++libraries) {
    CJavaRuntimeLibraryPool* const pool = CJavaRuntimeLibraryPool::GetInstance();
    if (libraries != 0) {
      const std::string path = std::to_string(libraries);
      system.AddModule(path, AllSymbols());
      uses.push_back(pool->Get(Widen(path).c_str()));
    }
    for (const Allocations::Block& block : allocations.Taken()) {
      if (block.size <= buckets * sizeof(void*)) continue;
      buckets = block.size / sizeof(void*);
      std::fprintf(stderr, ", %d for %d", static_cast<int>(buckets), libraries);
    }
    allocations.Fail(0);
  }
  std::fprintf(stderr, ".\n");
  std::_Exit(AsExpected);
}

TEST_F(JavaRuntimeLibraryPoolUnloadDeathTest, TheTableHas101BucketsAndGrowsBeyondThreeQuarters) {
  EXPECT_EXIT(FillThePool(), ::testing::ExitedWithCode(AsExpected), "buckets, 101 for 0, 203 for 76\\.");
}

}  // namespace
}  // namespace tests
