// C++ called from Java in VMs that end, that have no Cleaner, or that were started in another way.
#include <atomic>
#include <chrono>
#include <memory>
#include <string>
#include <thread>

#include "java/realvm/AtOnce.h"
#include "java/realvm/Counted.h"
#include "java/realvm/CountedReferences.h"
#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

using namespace std::chrono_literals;
using java::Implement;
using java::Local;
using java::Misuse;
using java::Ref;
using java::StartVm;
using java::StaticMethod;
using java::Vm;
using java::VmEnd;

constexpr StaticMethod<void(Ref<Runnable>)> RunForEver{"fixture/Callbacks", "runForEver"};

TEST(CallbackVmTest, TheVmEndsWhileAFunctionRunsAgainAndAgain) {
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    static std::atomic<int> runs{0};
    RunForEver([] { ++runs; });
    RunForEver([] {
      ++runs;
      Abs(-1);
    });
    while (runs < 1000) std::this_thread::sleep_for(1ms);
    EXPECT_EQ(vm.End(), VmEnd::Destroyed);
  });
}

// What all objects share is made when the first one is: the class that calls C++, and the queue of collected buffers.
TEST(CallbackVmTest, EightThreadsMakeTheFirstObjects) {
  InOwnProcess([] {
    const Vm vm = StartVm(FixtureSettings());
    std::atomic<int> wrong{0};
    InEightThreadsAtOnce([&] {
      const Local<IntOperator> added = Implement<IntOperator>().On("applyAsInt", [](jint x) { return x + 1; }).New();
      const auto bytes = std::make_shared<std::string>(16, 'x');
      const java::ByteBuffer buffer(bytes->data(), bytes->size(), bytes);
      if (Nest(added, 4) != 5 || java::Call<jint>(buffer, "capacity") != 16) ++wrong;
    });
    EXPECT_EQ(wrong, 0);
  });
}

TEST(CallbackVmTest, WhatIsLeftAfterTheEndIsDroppedQuietly) {
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    std::atomic<int> count{0};
    const auto implementation = Implement<Runnable>().On("run", [counted = Counted(count)] {});
    const Local<Runnable> local = implementation.New();
    const java::Global<Runnable> global(local);
    EXPECT_EQ(vm.End(), VmEnd::Destroyed);
    EXPECT_EQ(WhatOf<Misuse>([&] { implementation.New(); }), "The Java VM has ended");
    EXPECT_EQ(WhatOf<Misuse>([&] { Implement<Runnable>().On("run", [] {}).New(); }), "The Java VM has ended");
    EXPECT_EQ(WhatOf<Misuse>([] { java::NativeMethod<jint(jint)>("a/B", "f").Bind([](jint a) { return a; }); }),
              "The Java VM has ended");
    EXPECT_EQ(count, 1);
  });
}

std::string ClassOf(const java::ClassLoader& loader) {
  return java::Call<std::string>(java::Call<Local<java::Class>>(loader.Loader(), "getClass"), "getName");
}

std::string PlatformLoader() { return BeforeJava9() ? "$ExtClassLoader" : "$PlatformClassLoader"; }

// Destroyed while the process exits; takes its time.
struct Slow {
  ~Slow() {
    const int before = runs;
    for (int i = 0; i < 20000 && runs < before + 50; ++i) std::this_thread::sleep_for(1ms);
    std::fprintf(stderr, "%s\n", runs >= before + 50 ? "runs while the process exits" : "has stopped");
  }
  std::atomic<int> runs{0};
};

// Functions are made, called and destroyed, and what they throw is read, until the process is gone.
TEST(CallbackVmTest, AProcessThatExitsWithoutTheEndOfItsVm) {
  SKIP_BEFORE_JAVA_9("a VM that collects while the process exits crashes by itself");
  Expected expected;
  expected.printed = testing::HasSubstr("runs while the process exits");
  InOwnProcess(
      [] {
        static Slow slow;
        Vm vm = StartVm(FixtureSettings());
        vm.Release();
        RunForEver([held = java::Global<java::Class>(java::FindClass("fixture/Callbacks"))] {
          const java::NativeMethod<jint(jint, jlong, double)> native{"fixture/Natives", "add"};
          native.Bind([held = std::string(100, 'x')](jint, jlong, double) { return 1; });
          Nest([held = std::string(100, 'x')](jint x) { return x + 1; }, 1);
          Thrown([] { Abs.In(nullptr); });
          Thrown([held] { throw std::runtime_error("thrown"); });
          ++slow.runs;
        });
        RunForEver([] { Collect(); });
        while (slow.runs < 10) std::this_thread::sleep_for(1ms);
      },
      expected);
}

// Goes down to zero through Java and back. Its process ends with the test.
java::Global<IntOperator> s_nested;
jint Descend(jint depth) { return depth == 0 ? 0 : Nest(s_nested, depth - 1) + 1; }

TEST(CallbackVmTest, TheStackOfTheMainThreadRunsOut) {
  InOwnProcess([] {
    const Vm vm = StartVm(FixtureSettings());
    s_nested = java::Global<IntOperator>(Implement<IntOperator>().On("applyAsInt", &Descend).New());
    for (int i = 0; i < 3; ++i) {
      EXPECT_EQ(WhatOf<java::Error>([&] { Nest(s_nested, 1000000); }), "java.lang.StackOverflowError");
      EXPECT_EQ(Nest(s_nested, 10), 10);
    }
  });
}

bool IsNameOfCleaner(JNIEnv* env, jstring text) {
  const char* const name = env->GetStringUTFChars(text, nullptr);
  const bool isIt = std::string(name) == "java.lang.ref.Cleaner";
  env->ReleaseStringUTFChars(text, name);
  return isIt;
}

// Replaces the thread's table of JNI functions, so that the VM looks like a Java before version 9.
void HideWhatIsNew(JNIEnv* env) {
  static const JNINativeInterface_* const real = env->functions;
  static JNINativeInterface_ table = *real;
  static const jmethodID forName =
      env->GetStaticMethodID(java::detail::ClassOf<java::Class>(env), "forName",
                             "(Ljava/lang/String;ZLjava/lang/ClassLoader;)Ljava/lang/Class;");
  table.CallStaticObjectMethodA = [](JNIEnv* e, jclass type, jmethodID id, const jvalue* arguments) -> jobject {
    if (id != forName || !IsNameOfCleaner(e, static_cast<jstring>(arguments[0].l))) {
      return real->CallStaticObjectMethodA(e, type, id, arguments);
    }
    jclass const missing = real->FindClass(e, "java/lang/ClassNotFoundException");
    real->ThrowNew(e, missing, "java.lang.ref.Cleaner");
    real->DeleteLocalRef(e, missing);
    return nullptr;
  };
  table.GetStaticMethodID = [](JNIEnv* e, jclass type, const char* name, const char* descriptor) -> jmethodID {
    const char* const known = std::string(name) == "getPlatformClassLoader" ? "noSuchMethod" : name;
    return real->GetStaticMethodID(e, type, known, descriptor);
  };
  env->functions = &table;
}

TEST(CallbackVmTest, ThePlatformLoaderBeforeJava9) {
  InOwnProcess([] {
    java::VmSettings settings = FixtureSettings();
    const Vm vm = StartVm(settings.Property("java.system.class.loader", "fixture.Strict"));
    HideWhatIsNew(java::detail::Env());
    EXPECT_THAT(ClassOf(java::ClassLoader::Platform()), testing::EndsWith(PlatformLoader()));
  });
}

TEST(CallbackVmTest, WithoutACleanerFunctionsAreNeverDestroyed) {
  InOwnProcess([] {
    const Vm vm = StartVm(FixtureSettings());
    HideWhatIsNew(java::detail::Env());
    static std::atomic<int> count{0};
    for (int i = 0; i < 100; ++i) {
      EXPECT_EQ(Nest([counted = Counted(count)](jint x) { return x + 1; }, i), i + 1);
    }
    for (int i = 0; i < 10; ++i) Collect();
    EXPECT_EQ(count, 100);
  });
}

// How many global references are kept with the first object of an implementation; one of them is the Cleaner.
int KeptWithTheFirst() { return BeforeJava9() ? 14 : 15; }

// How many they are, after a failure at each step on the way.
int MadeAtLast(bool fails) {
  const Vm vm = StartVm(FixtureSettings());
  JNIEnv* const env = java::detail::Env();
  const auto make = [] { Implement<Runnable>().On("run", [] {}).New(); };
  int kept = 0;
  int failures = 0;
  for (int step = 1;;) {
    const CountedReferences counted(env);
    if (fails) CountedReferences::FailAt(step);
    std::string thrown;
    try {
      make();
    } catch (const java::Error& error) {
      thrown = error.what();
    }
    EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE) << "step " << step;
    EXPECT_EQ(counted.Locals(), 0) << "step " << step;
    kept += counted.Globals();
    if (!CountedReferences::HasFailed()) {
      EXPECT_EQ(thrown, "");
      break;
    }
    if (!fails) break;
    // A failure while the text of what says that there is no Cleaner is made changes only that text.
    if (!BeforeJava9() || !thrown.empty()) {
      EXPECT_EQ(thrown, "java.lang.OutOfMemoryError: as the test wants") << "step " << step;
    }
    ++failures;
    // It goes on from what was kept, so that the steps are counted anew.
    step = counted.Globals() != 0 ? 1 : step + 1;
  }
  EXPECT_GT(failures, !fails ? -1 : BeforeJava9() ? 50 : 100);
  EXPECT_EQ(Nest([](jint x) { return 2 * x; }, 21), 42);
  EXPECT_EQ(Thrown([] { throw std::runtime_error("thrown"); }), "java.lang.RuntimeException: thrown");
  return kept;
}

TEST(CallbackVmTest, TheFirstObjectFailsAtAnyStepAndIsMadeAtLast) {
  InOwnProcess([] { EXPECT_EQ(MadeAtLast(false), KeptWithTheFirst()); });
  InOwnProcess([] { EXPECT_EQ(MadeAtLast(true), KeptWithTheFirst()); });
}

TEST(CallbackVmTest, ThePlatformLoaderBesideASystemLoaderOfTheHosts) {
  InOwnProcess([] {
    java::VmSettings settings = FixtureSettings();
    const Vm vm = StartVm(settings.Property("java.system.class.loader", "fixture.Strict"));
    const auto platform = java::ClassLoader::Platform();
    EXPECT_EQ(ClassOf(java::ClassLoader::System()), "fixture.Strict");
    EXPECT_THAT(ClassOf(platform), testing::EndsWith(PlatformLoader()));
    EXPECT_EQ(WhatOf<Misuse>([] { java::ClassLoader::System().Close(); }),
              "a fixture.Strict is no class loader that can be closed");
    EXPECT_TRUE(platform.FindClass("java.util.List"));
    EXPECT_THAT(WhatOf<java::Error>([&] { platform.FindClass("fixture.Callbacks"); }),
                testing::StartsWith("java.lang.ClassNotFoundException: fixture.Callbacks"));
  });
}

TEST(CallbackVmTest, AnOwnBootLayer) {
  SKIP_BEFORE_JAVA_9("there are no modules");
  InOwnProcess([] {
    java::VmSettings settings = FixtureSettings();
    settings.ModulePath({TORVAN_TEST_LAYER}).Option("--limit-modules=java.base,fixture.layer");
    const Vm vm = StartVm(settings.Option("--add-modules=fixture.layer"));
    constexpr StaticMethod<jint(Ref<java::Object>, jint)> call{"fixture/layer/Hook", "call",
                                                               "(Lfixture/layer/Hook;I)I"};
    EXPECT_EQ(call(Implement("fixture/layer/Hook").On("hook", [](jint x) { return x + 1; }).New(), 20), 42);
    EXPECT_EQ(Nest([](jint x) { return 2 * x; }, 21), 42);
    EXPECT_EQ(Thrown([] { throw std::runtime_error("thrown"); }), "java.lang.RuntimeException: thrown");
  });
}

TEST(CallbackVmTest, ASystemClassLoaderThatRefusesWhatItDoesNotKnow) {
  InOwnProcess([] {
    java::VmSettings settings = FixtureSettings();
    const Vm vm = StartVm(settings.Property("java.system.class.loader", "fixture.Strict"));
    EXPECT_EQ(WhatOf<java::Error>([] { java::FindClass("torvan/java/Handler"); }),
              "java.lang.SecurityException: refused: torvan.java.Handler");
    EXPECT_EQ(Nest([](jint x) { return 2 * x; }, 21), 42);
    EXPECT_EQ(Thrown([] { throw std::runtime_error("thrown"); }), "java.lang.RuntimeException: thrown");
    // Nor does it find Java's Cleaner, which destroys functions.
    std::atomic<int> count{0};
    Nest([counted = Counted(count)](jint x) { return x; }, 1);
    EXPECT_TRUE(ComesDownTo(count, 0)) << count;
  });
}

}  // namespace
}  // namespace tests
