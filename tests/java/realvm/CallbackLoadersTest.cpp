// C++ functions and classes of other loaders, which are not kept alive by them.
#include <atomic>
#include <string>

#include "java/realvm/Counted.h"
#include "java/realvm/JavaFiles.h"
#include "java/realvm/OneVm.h"

namespace tests {
namespace {

using java::Implement;
using java::Local;
using java::NativeMethod;
using java::Object;
using java::Ref;
using java::StaticMethod;

class CallbackLoadersTest : public RealVmTest {};

constexpr StaticMethod<Local<java::Class>(std::string_view)> CopyOf{"fixture/Strict", "copyOf"};
constexpr StaticMethod<jint(jint, jlong, double)> AddNatively{"fixture/Natives", "add"};
constexpr StaticMethod<std::string(Ref<Object>, Ref<Object>)> CallBoth{
    "fixture/Callbacks", "generic", "(Lfixture/Callbacks$Shout;Lfixture/Callbacks$Named;)Ljava/lang/String;"};

// A class that is there until then.
bool IsCollected(const java::Weak<java::Class>& type) {
  for (int i = 0; i < 500 && type.Lock(); ++i) Collect();
  return !type.Lock();
}

TEST_F(CallbackLoadersTest, InterfacesOfALoaderThatFindsNothingElse) {
  std::atomic<int> count{0};
  java::Weak<java::Class> weak;
  {
    const Local<java::Class> callbacks = CopyOf("fixture.Callbacks");
    weak = java::Weak<java::Class>(callbacks);
    EXPECT_TRUE(weak.Lock());
    const java::ClassLoader loader = java::ClassLoader::Of(callbacks);
    const auto shout = Implement(loader.FindClass("fixture/Callbacks$Shout"))
                           .On("apply", [counted = Counted(count)](std::string value) { return value + "!"; });
    const auto named = Implement(loader.FindClass("fixture.Callbacks$Named")).On("get", [] { return "name"; });
    EXPECT_EQ(CallBoth.In(callbacks)(shout.New(), named.New()), "a!b!namename");
    EXPECT_THAT(
        WhatOf<java::Misuse>([&] { CallBoth(shout.New(), named.New()); }),
        testing::MatchesRegex("a .*Proxy.* is given as argument 1 of fixture\\.Callbacks\\.generic\\(.*\\), which "
                              "needs a fixture\\.Callbacks\\$Shout"));
  }
  EXPECT_TRUE(IsCollected(weak));
  EXPECT_TRUE(ComesDownTo(count, 0)) << count;
}

constexpr StaticMethod<Local<java::Class>(std::string_view, std::string_view, std::string_view)> FindInLayer{
    "fixture/Layers", "find"};
constexpr StaticMethod<bool(Ref<java::Class>)> IsInALayer{"fixture/Layers", "isInALayer"};

// The module exports nothing, and no other loader knows its classes.
TEST_F(CallbackLoadersTest, AnInterfaceOfAModuleInItsOwnLayer) {
  SKIP_BEFORE_JAVA_9("there are no modules");
  SKIP_UNLESS_JAVA_KNOWS(TORVAN_TEST_LAYER_JAR);
  std::atomic<int> count{0};
  java::Weak<java::Class> weak;
  {
    const Local<java::Class> hook = FindInLayer(TORVAN_TEST_LAYER_JAR, "fixture.layer", "fixture.layer.Hook");
    weak = java::Weak<java::Class>(hook);
    EXPECT_TRUE(IsInALayer(hook));
    EXPECT_FALSE(IsInALayer(java::FindClass("fixture/Layers")));
    EXPECT_THAT(WhatOf<java::Error>([] { java::FindClass("fixture/layer/Hook"); }),
                testing::StartsWith("java.lang.ClassNotFoundException: fixture.layer.Hook"));
    constexpr StaticMethod<jint(Ref<Object>, jint)> call{"fixture/layer/Hook", "call", "(Lfixture/layer/Hook;I)I"};
    const auto made = [&](auto function) { return Implement(hook).On("hook", function).New(); };
    EXPECT_EQ(call.In(hook)(made([counted = Counted(count)](jint x) { return x + 1; }), 20), 42);
    EXPECT_EQ(java::Call<jint>(made([](jint x) { return -x; }), "twice", 4), -8);
    EXPECT_EQ(
        WhatOf<java::Error>([&] { call.In(hook)(made([](jint) -> jint { throw std::runtime_error("thrown"); }), 1); }),
        "java.lang.RuntimeException: thrown");
    EXPECT_TRUE(weak.Lock());
  }
  EXPECT_TRUE(IsCollected(weak));
  EXPECT_TRUE(ComesDownTo(count, 0)) << count;
}

// What was found out about a class's methods is kept with the implementation, and no longer.
TEST_F(CallbackLoadersTest, MethodsOfAClassAreLookedUpOnce) {
  static const JNINativeInterface_* real = nullptr;
  static int calls = 0;
  static JNINativeInterface_ table;
  JNIEnv* const env = java::detail::Env();
  const auto callsOf = [&](const auto& implementation) {
    real = env->functions;
    table = *real;
    table.CallObjectMethodA = [](JNIEnv* e, jobject object, jmethodID id, const jvalue* arguments) -> jobject {
      ++calls;
      return real->CallObjectMethodA(e, object, id, arguments);
    };
    calls = 0;
    env->functions = &table;
    implementation.New();
    env->functions = real;
    return calls;
  };
  const int ofTheObject = BeforeJava9() ? 1 : 2;  // what makes it, and the Cleaner's
  const Local<java::Class> type = java::FindClass("java/lang/Runnable");
  auto implementation = Implement(type).On("run", [] {});
  EXPECT_GT(callsOf(implementation), 10);
  EXPECT_EQ(callsOf(implementation), ofTheObject);
  const auto copy = implementation;
  EXPECT_EQ(callsOf(copy), ofTheObject);
  implementation.On("toString", [] { return "own"; });
  EXPECT_GT(callsOf(implementation), 10);
  EXPECT_EQ(java::Call<std::string>(implementation.New(), "toString"), "own");
  EXPECT_EQ(callsOf(copy), ofTheObject);
  EXPECT_NE(java::Call<std::string>(copy.New(), "toString"), "own");
}

TEST_F(CallbackLoadersTest, NativeMethodsGoWithTheirClass) {
  constexpr NativeMethod<jint(jint, jlong, double)> native{"fixture/Natives", "add"};
  for (int i = 0; i < 3; ++i) {
    static std::atomic<int> count;
    count = 0;
    java::Weak<java::Class> weak;
    {
      const Local<java::Class> natives = CopyOf("fixture.Natives");
      weak = java::Weak<java::Class>(natives);
      const auto sum = [counted = Counted(count), i](jint a, jlong b, double) { return a + static_cast<jint>(b) + i; };
      native.In(natives).Bind(sum);
      native.In(natives).Bind(sum);
      EXPECT_EQ(AddNatively.In(natives)(1, 2, 3), 3 + i);
      Collect();
      EXPECT_EQ(count, 3);
      EXPECT_TRUE(weak.Lock());
    }
    EXPECT_TRUE(IsCollected(weak));
    EXPECT_TRUE(ComesDownTo(count, 0)) << count;
  }
}

TEST_F(CallbackLoadersTest, TheSameMethodOfTwoLoadersHasTwoFunctions) {
  constexpr NativeMethod<jint(jint, jlong, double)> native{"fixture/Natives", "add"};
  const Local<java::Class> one = CopyOf("fixture.Natives");
  const Local<java::Class> other = CopyOf("fixture.Natives");
  const auto bind = [&](const Local<java::Class>& type, jint result) {
    native.In(type).Bind([result](jint, jlong, double) { return result; });
  };
  bind(one, 1);
  bind(other, 2);
  EXPECT_EQ(AddNatively.In(one)(0, 0, 0), 1);
  EXPECT_EQ(AddNatively.In(other)(0, 0, 0), 2);
}

TEST_F(CallbackLoadersTest, FunctionsOfOneTypeHaveALimitThatIsSaid) {
  constexpr NativeMethod<jint(jint, jlong, double)> native{"fixture/Natives", "add"};
  std::vector<java::Global<java::Class>> types;
  const auto bindAll = [&] {
    for (int i = 0; i < 65; ++i) {
      types.emplace_back(CopyOf("fixture.Natives"));
      native.In(types.back()).Bind([](jint, jlong, double) { return 0; });
    }
  };
  EXPECT_EQ(
      WhatOf<java::Misuse>(bindAll),
      "fixture.Natives.add(int, long, double) cannot be bound: 64 native methods have functions of this C++ type; "
      "pass a separate lambda expression");
  EXPECT_EQ(types.size(), 65u);
  EXPECT_EQ(AddNatively.In(types.front())(0, 0, 0), 0);
}

}  // namespace
}  // namespace tests
