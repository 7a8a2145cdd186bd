// The classes of tags in several libraries of a host.
#include <dlfcn.h>

#include <string_view>

#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

using java::Local;

struct Natives {
  static constexpr char JavaName[] = "fixture/Natives";
};
struct HashMap {
  static constexpr char JavaName[] = "java/util/HashMap";
};

// A function of a library that shows its symbols, loaded with RTLD_GLOBAL or RTLD_LOCAL.
template <typename Function>
Function FunctionOf(const char* path, int scope, const char* name) {
  void* const library = dlopen(path, RTLD_NOW | scope);
  EXPECT_NE(library, nullptr) << dlerror();
  return library != nullptr ? reinterpret_cast<Function>(dlsym(library, name)) : nullptr;
}

JavaVM* RawVm() {
  JavaVM* raw = nullptr;
  EXPECT_EQ(java::detail::Env()->GetJavaVM(&raw), JNI_OK);
  return raw;
}

// The libraries may have been joined by threads with different class loaders.
class ClassesTest : public testing::Test {
 protected:
  void SetUp() override {
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the address sanitizer objects to what is tested here: two libraries with the same symbols";
#endif
  }
};

TEST_F(ClassesTest, TwoLibrariesThatShowTheirSymbolsFindTheirClassesEachForItself) {
  InOwnProcess([] {
    const java::Vm vm = java::StartVm(FixtureSettings());
    const auto kept = [](const char* path) {
      return FunctionOf<jclass (*)(JavaVM*)>(path, RTLD_GLOBAL, "KeptClass")(RawVm());
    };
    jclass const one = kept(TORVAN_TEST_BINDING_ONE);
    jclass const other = kept(TORVAN_TEST_BINDING_OTHER);
    EXPECT_NE(one, other) << "one has found it for both";
    EXPECT_TRUE(java::Same(one, other));
  });
}

// As Java loads libraries. With RTLD_GLOBAL one would run the inline functions of the other.
TEST_F(ClassesTest, TwoLibrariesThatShowTheirSymbolsWalkThroughObjectsOfTheirOwnClasses) {
  InOwnProcess([] {
    constexpr java::StaticMethod<Local<java::Class>(std::string_view)> copyOf{"fixture/Strict", "copyOf"};
    constexpr java::Constructor<Natives(jint)> make;
    const java::Vm vm = java::StartVm(FixtureSettings());
    const Local<java::Class> copy = copyOf("fixture.Natives");
    const auto count = [](const char* path, const Local<Natives>& object) {
      const auto map = java::New<HashMap>();
      java::Call<void>(map, "put", object, object);
      return FunctionOf<jint (*)(JavaVM*, jobject)>(path, RTLD_LOCAL, "CountNatives")(RawVm(), map.Get());
    };
    EXPECT_EQ(count(TORVAN_TEST_BINDING_ONE, make(0)), 3);
    const java::ContextClassLoader scope(java::ClassLoader::Of(copy));
    EXPECT_EQ(count(TORVAN_TEST_BINDING_OTHER, make.In(copy)(0)), 3);
  });
}

}  // namespace
}  // namespace tests
