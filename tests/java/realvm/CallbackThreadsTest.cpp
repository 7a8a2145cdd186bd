// C++ functions on threads that Java has started, deeply nested, and how long they live.
#include <ThisSystem.h>
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>

#include "ThreadSanitizer.h"
#include "java/realvm/AtOnce.h"
#include "java/realvm/Counted.h"
#include "java/realvm/OneVm.h"
#include "java/realvm/Resident.h"

namespace tests {
namespace {

using java::Error;
using java::Global;
using java::Implement;
using java::Local;
using java::Ref;
using java::StaticMethod;

class CallbackThreadsTest : public RealVmTest {};

bool IsChecked() {
  const char* const option = std::getenv("TORVAN_TEST_VM_OPTION");
  return option != nullptr && *option != '\0';
}

TEST_F(CallbackThreadsTest, EightThreadsOfJavasMakeAMillionCalls) {
  std::atomic<jlong> calls{0};
  const int times = IsChecked() ? 2000 : 125000;
  const jlong sum = CallFromThreads(
      [&](jint x) {
        ++calls;
        return x + 1;
      },
      8, times);
  EXPECT_EQ(calls, 8 * times);
  EXPECT_EQ(sum, 8 * (static_cast<jlong>(times) * (times + 1) / 2));
}

TEST_F(CallbackThreadsTest, AFunctionOnAThreadOfJavasCallsJava) {
  std::atomic<int> attached{0};
  const jlong sum = CallFromThreads(
      [&](jint x) {
        if (java::detail::EnvIfAttached() != nullptr) ++attached;
        const Local<Integer> made = NewInteger(x);
        return Abs(-java::Call<jint>(made, "intValue"));
      },
      8, 100);
  EXPECT_EQ(sum, 8 * 4950);
  EXPECT_EQ(attached, 800);
}

// Goes down to zero through Java and back.
struct Nested {
  jint operator()(jint depth) const { return depth == 0 ? 0 : Nest(self->Lock(), depth - 1) + 1; }
  std::shared_ptr<java::Weak<IntOperator>> self = std::make_shared<java::Weak<IntOperator>>();
};

Global<IntOperator> NewNested() {
  const Nested nested;
  const Global<IntOperator> made(Implement<IntOperator>().On("applyAsInt", nested).New());
  *nested.self = java::Weak<IntOperator>(made);
  return made;
}

TEST_F(CallbackThreadsTest, AThousandCallsDeepOnAThreadWithTheStackForIt) {
  const Global<IntOperator> nested = NewNested();
  if (!OnWindows) {  // a std::thread has a megabyte or two there
    std::thread([&] { EXPECT_EQ(Nest(nested, 1000), 1000); }).join();
  }
  EXPECT_EQ(NestInThread(nested, 1000, 64 << 20), "1000");
}

TEST_F(CallbackThreadsTest, StackThatRunsOutIsJavasError) {
  SKIP_AMOUNT_WITH_THREAD_SANITIZER();
  const Global<IntOperator> nested = NewNested();
  EXPECT_EQ(NestInThread(nested, 1000000, 1 << 20), "java.lang.StackOverflowError");
  std::thread([&] {
    EXPECT_EQ(WhatOf<Error>([&] { Nest(nested, 1000000); }), "java.lang.StackOverflowError");
    EXPECT_EQ(Nest(nested, 10), 10);
  }).join();
}

TEST_F(CallbackThreadsTest, AFunctionGoesWithItsObject) {
  std::atomic<int> count{0};
  {
    const Local<Runnable> runnable = Implement<Runnable>().On("run", [counted = Counted(count)] {}).New();
    EXPECT_EQ(count, 1);
    Collect();
    EXPECT_EQ(count, 1);
    EXPECT_EQ(Thrown(runnable), "nothing");
  }
  EXPECT_TRUE(ComesDownTo(count, 0)) << count;
}

TEST_F(CallbackThreadsTest, ObjectsOfOneImplementationShareItsFunctions) {
  std::atomic<int> count{0};
  std::optional<java::Implementation<Runnable>> implementation(
      Implement<Runnable>().On("run", [counted = Counted(count)] {}));
  Local<Runnable> one = implementation->New();
  Local<Runnable> other = implementation->New();
  EXPECT_EQ(count, 1);
  one.Reset();
  implementation.reset();
  Collect();
  Collect();
  EXPECT_EQ(count, 1);
  EXPECT_EQ(Thrown(other), "nothing");
  other.Reset();
  EXPECT_TRUE(ComesDownTo(count, 0)) << count;
}

TEST_F(CallbackThreadsTest, AMillionAreMadeAndCollectedAndMemoryIsFlat) {
  SKIP_BEFORE_JAVA_9("functions are never destroyed");
  std::atomic<int> count{0};
  const int times = IsChecked() || WithThreadSanitizer ? 10000 : 500000;
  const auto make = [&] {
    for (int i = 0; i < times; ++i) {
      Thrown([counted = Counted(count)] {});
      if (count > 100000) ComesDownTo(count, 50000);
    }
    EXPECT_TRUE(ComesDownTo(count, 0)) << count;
  };
  // 8 bytes for each object of one round, which is less than a reference of JNI or a block of memory takes. A short
  // round is within what the VM itself takes at its beginning.
  ExpectGrowthToEnd(std::max<std::size_t>(1024, static_cast<std::size_t>(times) * 8 / 1024), make);
}

struct Runnables {
  static constexpr char JavaName[] = "[Ljava/lang/Runnable;";
};

// Only the call itself still holds the object.
TEST_F(CallbackThreadsTest, AFunctionIsNotDestroyedWhileItRuns) {
  constexpr StaticMethod<void(Ref<Runnables>)> RunAndForget{"fixture/Callbacks", "runAndForget"};
  std::atomic<int> count{0};
  int during = 0;
  JNIEnv* const env = java::detail::Env();
  const auto array = java::Adopt<Runnables>(env->NewObjectArray(1, java::detail::ClassOf<Runnable>(env), nullptr));
  for (int i = 0; i < 20; ++i) {
    Local<Runnable> runnable = Implement<Runnable>()
                                   .On("run",
                                       [&during, counted = Counted(count)] {
                                         for (int k = 0; k < 5; ++k) Collect();
                                         during += *counted.count > 0 ? 1 : 0;
                                       })
                                   .New();
    env->SetObjectArrayElement(static_cast<jobjectArray>(array.Get()), 0, runnable.Get());
    runnable.Reset();
    RunAndForget(array);
    EXPECT_TRUE(ComesDownTo(count, 0)) << count;
  }
  EXPECT_EQ(during, 20);
}

// What a function holds is dropped on the thread that cleans.
TEST_F(CallbackThreadsTest, ReferencesInAFunctionAreDroppedWithIt) {
  SKIP_BEFORE_JAVA_9("functions are never destroyed");
  java::Weak<Integer> weak;
  {
    const Local<Integer> number = NewInteger(100000);
    weak = java::Weak<Integer>(number);
    EXPECT_EQ(Thrown([held = Global<Integer>(number)] {}), "nothing");
    EXPECT_TRUE(weak.Lock());
  }
  for (int i = 0; i < 500 && weak.Lock(); ++i) Collect();
  EXPECT_FALSE(weak.Lock());
}

TEST_F(CallbackThreadsTest, ManyThreadsMakeObjectsAtOnce) {
  std::atomic<int> count{0};
  std::vector<std::thread> threads;
  for (int t = 0; t < 8; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < 500; ++i) {
        ASSERT_EQ(Nest([counted = Counted(count), t](jint x) { return x + t; }, i), i + t);
        ASSERT_EQ(Thrown(Implement<Runnable>().On("run", [counted = Counted(count)] {})), "nothing");
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_TRUE(ComesDownTo(count, 0)) << count;
}

// No other test implements these two: what is kept of an interface, by its name and by its class, all make at once.
TEST_F(CallbackThreadsTest, EightThreadsImplementAnInterfaceFirst) {
  const auto byClass =
      Implement(java::FindClass("java/util/function/LongUnaryOperator")).On("applyAsLong", [](jlong x) {
        return x + 1;
      });
  std::atomic<int> wrong{0};
  InEightThreadsAtOnce([&] {
    const auto byName =
        Implement("java/util/function/DoubleUnaryOperator").On("applyAsDouble", [](double x) { return x / 2; });
    const Local<> halved = byName.New();
    const Local<> counted = byClass.New();
    if (java::Call<double>(halved, "applyAsDouble", 5.0) != 2.5) ++wrong;
    if (java::Call<jlong>(counted, "applyAsLong", jlong{5}) != 6) ++wrong;
  });
  EXPECT_EQ(wrong, 0);
}

}  // namespace
}  // namespace tests
