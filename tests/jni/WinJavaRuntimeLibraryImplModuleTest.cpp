// Real libraries, loaded by the operating system.
#include <gtest/gtest.h>
#include <torvan/JavaRuntimeException.h>

#include <string>

#include "ThisSystem.h"
#include "fakes/Failure.h"
#include "fakes/WideText.h"
#include "jni/JavaRuntimeLibraryPool.h"
#include "jni/Modules.h"
#include "jni/WinJavaRuntimeLibraryImpl.h"

namespace tests {
namespace {

using torvan::jni::CJavaRuntimeException;
using torvan::jni::CJavaRuntimeLibraryPool;
using torvan::jni::CJavaRuntimeLibraryRef;
using torvan::jni::CWinJavaRuntimeLibraryImpl;
using Reference = mirel::base::CRef<CJavaRuntimeLibraryRef>;

constexpr const char* Tag = "jni/WinJavaRuntimeLibraryImpl";

constexpr const char* Separator = OnThisSystem("\\", "/");
constexpr const char* Extension = OnThisSystem(".dll", ".so");

// The files are beside the program.
std::string Folder() {
  const std::string program = ProgramPath();
  return program.substr(0, program.rfind(*Separator) + 1);
}
WideText Fixture(const char* name) { return Widen(Folder() + name + Extension); }

Reference Get(const WideText& path) { return CJavaRuntimeLibraryPool::GetInstance()->Get(path.c_str()); }

class WinJavaRuntimeLibraryImplModuleTest : public ::testing::Test {
 protected:
  const WideText complete = Fixture("runtime_complete");
  const WideText withoutCreate = Fixture("runtime_without_create");
  const WideText withoutGetCreated = Fixture("runtime_without_get_created");

  void SetUp() override { ExpectNothingLoaded(); }
  void TearDown() override { ExpectNothingLoaded(); }

 private:
  void ExpectNothingLoaded() const {
    for (const WideText& path : {complete, withoutCreate, withoutGetCreated}) {
      EXPECT_FALSE(IsLoaded(path)) << Narrow(path.c_str());
    }
  }
};

TEST_F(WinJavaRuntimeLibraryImplModuleTest, LibraryIsLoadedForAsLongAsItIsUsed) {
  Reference first = Get(complete);
  Reference second = Get(complete);
  EXPECT_TRUE(IsLoaded(complete));
  first = nullptr;
  EXPECT_TRUE(IsLoaded(complete));
  second = nullptr;
  EXPECT_FALSE(IsLoaded(complete));
}

TEST_F(WinJavaRuntimeLibraryImplModuleTest, EntryPointsAnswerThroughTheReference) {
  const Reference use = Get(complete);
  EXPECT_EQ(use->CreateJavaVm(nullptr, nullptr, nullptr), -3);
  jsize count = 0;
  EXPECT_EQ(use->GetCreatedJavaVms(nullptr, 0, &count), 0);
  EXPECT_EQ(count, 42);
}

TEST_F(WinJavaRuntimeLibraryImplModuleTest, TwoSpellingsOfOneFileAreTwoUses) {
  const WideText detour = Widen(Folder() + "." + Separator + "runtime_complete" + Extension);
  Reference one = Get(complete);
  Reference other = Get(detour);
  one = nullptr;
  EXPECT_TRUE(IsLoaded(complete));
  other = nullptr;
  EXPECT_FALSE(IsLoaded(complete));
}

TEST_F(WinJavaRuntimeLibraryImplModuleTest, MissingFileIsNotFound) {
  EXPECT_EQ(FailureOf([] { Get(Fixture("runtime_nowhere")); }),
            Throws<CJavaRuntimeException>(Tag, 135, "Java Runtime library not found."));
}

TEST_F(WinJavaRuntimeLibraryImplModuleTest, FileThatIsNoLibraryIsNotFound) {
  EXPECT_EQ(FailureOf([] { Get(Widen(Folder())); }),
            Throws<CJavaRuntimeException>(Tag, 135, "Java Runtime library not found."));
}

TEST_F(WinJavaRuntimeLibraryImplModuleTest, LibraryWithoutAnEntryPointIsInvalidAndDoesNotStayInThePool) {
  EXPECT_EQ(FailureOf([&] { Get(withoutCreate); }),
            Throws<CJavaRuntimeException>(Tag, 138, "Invalid Java Runtime libray."));
  EXPECT_EQ(FailureOf([&] { Get(withoutGetCreated); }),
            Throws<CJavaRuntimeException>(Tag, 140, "Invalid Java Runtime libray."));
}

TEST_F(WinJavaRuntimeLibraryImplModuleTest, HalfLoadedLibraryStaysLoadedUntilItIsUnloaded) {
  CWinJavaRuntimeLibraryImpl library(withoutGetCreated.c_str());
  EXPECT_EQ(FailureOf([&] { library.Load(); }),
            Throws<CJavaRuntimeException>(Tag, 140, "Invalid Java Runtime libray."));
  EXPECT_TRUE(IsLoaded(withoutGetCreated));
  library.Load();
  EXPECT_EQ(library.CreateJavaVm(nullptr, nullptr, nullptr), -3);
  EXPECT_EQ(FailureOf([&] { library.GetCreatedJavaVms(nullptr, 0, nullptr); }),
            Throws<CJavaRuntimeException>(Tag, 178, "Inavalid Java Runtime library."));
  library.Unload();
  EXPECT_FALSE(IsLoaded(withoutGetCreated));
}

}  // namespace
}  // namespace tests
