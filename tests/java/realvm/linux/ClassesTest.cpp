// The classes of tags in several libraries of a host.
#include <dlfcn.h>

#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

// They may have been joined by threads with different class loaders.
TEST(ClassesTest, TwoLibrariesThatShowTheirSymbolsFindTheirClassesEachForItself) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the address sanitizer objects to what is tested here: two libraries with the same symbols";
#endif
  InOwnProcess([] {
    const java::Vm vm = java::StartVm(FixtureSettings());
    JavaVM* raw = nullptr;
    ASSERT_EQ(java::detail::Env()->GetJavaVM(&raw), JNI_OK);
    jclass kept[2] = {};
    for (jclass& place : kept) {
      const char* const path = &place == kept ? TORVAN_TEST_BINDING_ONE : TORVAN_TEST_BINDING_OTHER;
      void* const library = dlopen(path, RTLD_NOW | RTLD_GLOBAL);
      ASSERT_NE(library, nullptr) << dlerror();
      place = reinterpret_cast<jclass (*)(JavaVM*)>(dlsym(library, "KeptClass"))(raw);
    }
    EXPECT_NE(kept[0], kept[1]) << "one has found it for both";
    EXPECT_TRUE(java::Same(kept[0], kept[1]));
  });
}

}  // namespace
}  // namespace tests
