// C++ called from Java by several libraries of a host, each with a copy of the layer.
#include <dlfcn.h>

#include "java/realvm/CallbackTags.h"
#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

using java::Local;
using java::StartVm;
using java::Vm;

// As when two libraries of a host have one each.
TEST(CallbackVmTest, TwoCopiesOfTheLayerInOneVm) {
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    EXPECT_EQ(Nest([](jint x) { return 2 * x; }, 21), 42);
    void* const library = dlopen(TORVAN_TEST_JOINED, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(library, nullptr) << dlerror();
    const auto join = reinterpret_cast<jstring (*)(JNIEnv*, jclass, jint)>(dlsym(library, "Java_fixture_Joined_join"));
    const Local<java::Class> type = java::FindClass("fixture/Joined");
    const auto text = java::Adopt<java::String>(join(java::detail::Env(), static_cast<jclass>(type.Get()), 7));
    EXPECT_EQ(java::ToText(text), "7 by a call, Z\xC3\xBCrich, ends: no");
    EXPECT_EQ(Nest([](jint x) { return 3 * x; }, 14), 42);
  });
}

// Each has its own slots for native methods, 64 for functions of one type in each.
TEST(CallbackVmTest, TwoLibrariesThatShowTheirSymbolsBindEachTheirOwn) {
#if defined(__SANITIZE_ADDRESS__)
  GTEST_SKIP() << "the address sanitizer objects to what is tested here: two libraries with the same symbols";
#endif
  InOwnProcess([] {
    const Vm vm = StartVm(FixtureSettings());
    JavaVM* raw = nullptr;
    ASSERT_EQ(java::detail::Env()->GetJavaVM(&raw), JNI_OK);
    for (const char* const path : {TORVAN_TEST_BINDING_ONE, TORVAN_TEST_BINDING_OTHER}) {
      void* const library = dlopen(path, RTLD_NOW | RTLD_GLOBAL);
      ASSERT_NE(library, nullptr) << dlerror();
      const auto bind = reinterpret_cast<jint (*)(JavaVM*, jint)>(dlsym(library, "BindMethods"));
      EXPECT_EQ(bind(raw, 40), 40) << path;
    }
  });
}

}  // namespace
}  // namespace tests
