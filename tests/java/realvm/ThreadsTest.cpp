// Threads of the host in one VM.
#include <atomic>
#include <cstdlib>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "java/realvm/OneVm.h"
#include "java/realvm/Resident.h"

namespace tests {
namespace {

using java::Global;
using java::Local;
using java::detail::Env;
using java::detail::EnvIfAttached;

class ThreadsTest : public RealVmTest {};

template <typename Function>
void InThreads(int count, Function function) {
  std::vector<std::thread> threads;
  for (int i = 0; i < count; ++i) threads.emplace_back(function);
  for (std::thread& thread : threads) thread.join();
}

std::string ThreadName() {
  JNIEnv* const env = Env();
  const auto type = java::Adopt<java::Class>(java::detail::LoadClass(env, "fixture/Vms"));
  const auto raw = static_cast<jclass>(type.Get());
  const auto name =
      java::Adopt(env->CallStaticObjectMethod(raw, env->GetStaticMethodID(raw, "threadName", "()Ljava/lang/String;")));
  return java::detail::ReadUtf8(env, static_cast<jstring>(name.Get()));
}

TEST_F(ThreadsTest, AThousandThreadsLeaveNoneBehind) {
  const jint before = CallStaticInt("fixture/Vms", "threads", "()I");
  for (int round = 0; round < 125; ++round) {
    InThreads(8, [] { EXPECT_EQ(CallStaticInt("java/lang/Math", "abs", "(I)I", -3), 3); });
  }
  EXPECT_EQ(CallStaticInt("fixture/Vms", "threads", "()I"), before);
}

// A thread that ends waits for the VM, and what Java starts may wait for a thread that ends.
TEST_F(ThreadsTest, JavaStartsThreadsWhileThreadsOfTheHostEnd) {
  std::atomic<bool> goesOn{true};
  std::thread host([&] {
    while (goesOn) InThreads(8, [] { EXPECT_EQ(CallStaticInt("java/lang/Math", "abs", "(I)I", -3), 3); });
  });
  EXPECT_EQ(CallStaticInt("fixture/Vms", "startThreads", "(I)I", 800), 800);
  goesOn = false;
  host.join();
}

// Compiled code gets several times as deep as interpreted, which the first thread partly runs.
TEST_F(ThreadsTest, AThreadOfJavasHasTheStackThatItAsksFor) {
  const jint large = CallStaticInt("fixture/Vms", "depth", "(I)I", 64);
  const jint small = CallStaticInt("fixture/Vms", "depth", "(I)I", 1);
  EXPECT_GT(small, 1000);
  EXPECT_GT(large, 4 * small);
}

TEST_F(ThreadsTest, AThreadThatIsUsedElsewhereIsFoundOutWithAssertions) {
#ifdef NDEBUG
  GTEST_SKIP() << "this build has no assertions";
#else
  const std::string text = "This Thread belongs to another thread, or to one that was detached meanwhile";
  const java::Thread own;
  EXPECT_EQ(own.Env(), Env());
  InThreads(1, [&] {
    EXPECT_EQ(WhatOf<java::Misuse>([&] { own.Env(); }), text);
    std::optional<java::Thread> outer(std::in_place, "outer");
    const java::Thread inner;
    outer.reset();
    Env();
    EXPECT_EQ(WhatOf<java::Misuse>([&] { inner.Env(); }), text);
  });
#endif
}

TEST_F(ThreadsTest, ThreadsThatTheFixedInterfaceAttachedAreDetachedAtTheirEnd) {
  ASSERT_TRUE(java::MakeFailuresReadable());
  const jint before = CallStaticInt("fixture/Vms", "threads", "()I");
  InThreads(8, [] {
    JNIEnv* env = nullptr;
    JavaVM* const vm = java::detail::runningVm;
    vm->AttachCurrentThread(reinterpret_cast<void**>(&env), nullptr);
    EXPECT_EQ(Env(), env);
  });
  EXPECT_EQ(CallStaticInt("fixture/Vms", "threads", "()I"), before);
}

TEST_F(ThreadsTest, AttachedThreadsAreDaemonsThatFindServices) {
  InThreads(1, [] {
    EXPECT_EQ(CallStaticInt("fixture/Vms", "isDaemon", "()I"), 1);
    EXPECT_EQ(CallStaticInt("fixture/Vms", "hasContextLoader", "()I"), 1);
    EXPECT_EQ(CallStaticInt("fixture/Driver", "found", "()I"), 1);
    EXPECT_EQ(CallStaticInt("fixture/Driver", "connects", "()I"), 1);
  });
  EXPECT_EQ(CallStaticInt("fixture/Driver", "found", "()I"), 1);
}

// Java's drivers are those that the context class loader of the thread knows, unless a class of Java's calls.
constexpr java::StaticMethod<Local<>(std::string_view)> Connect{"java/sql/DriverManager", "getConnection",
                                                                "(Ljava/lang/String;)Ljava/sql/Connection;"};

TEST_F(ThreadsTest, ThreadsThatTheFixedInterfaceAttachedFindServices) {
  EXPECT_TRUE(Connect("jdbc:fixture:"));
  InThreads(1, [] {
    TheVm().Handle().Attach();
    EXPECT_TRUE(Connect("jdbc:fixture:"));
    EXPECT_EQ(CallStaticInt("fixture/Vms", "hasContextLoader", "()I"), 1);
  });
  java::Global<> dropped(java::NewString("dropped"));
  InThreads(1, [&dropped] {  // dropping is no call yet
    TheVm().Handle().Attach();
    dropped.Reset();
    EXPECT_TRUE(Connect("jdbc:fixture:"));
  });
  InThreads(1, [] {
    TheVm().Handle().Attach()->FindClass("no/Such");  // what is pending stays so
    EXPECT_EQ(WhatOf<java::Error>([] { Connect("jdbc:fixture:"); }), "java.lang.NoClassDefFoundError: no/Such");
    EXPECT_EQ(CallStaticInt("fixture/Vms", "hasContextLoader", "()I"), 1);
  });
}

TEST_F(ThreadsTest, AContextClassLoaderThatTheHostHasSetIsKept) {
  const auto platform = java::ClassLoader::Platform().Loader();
  InThreads(1, [&platform] {
    JNIEnv* const env = TheVm().Handle().Attach();
    jclass const type = env->FindClass("java/lang/Thread");
    jobject const thread =
        env->CallStaticObjectMethod(type, env->GetStaticMethodID(type, "currentThread", "()Ljava/lang/Thread;"));
    EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
    env->CallVoidMethod(thread, env->GetMethodID(type, "setContextClassLoader", "(Ljava/lang/ClassLoader;)V"),
                        platform.Get());
    EXPECT_EQ(CallStaticInt("fixture/Vms", "hasContextLoader", "()I"), 0);
  });
}

TEST_F(ThreadsTest, AThreadHasItsNameForItsScope) {
  EXPECT_EQ(ThreadName(), "main");
  InThreads(1, [] {
    {
      const java::Thread thread(
          "Gr\xC3\xBC\xC3\x9F"
          "e \xF0\x9F\x98\x80");
      EXPECT_EQ(ThreadName(),
                "Gr\xC3\xBC\xC3\x9F"
                "e \xF0\x9F\x98\x80");
      const java::Thread inner("inner");
      EXPECT_NE(ThreadName(), "inner");
    }
    EXPECT_EQ(EnvIfAttached(), nullptr);
    EXPECT_NE(ThreadName(), "inner");
  });
}

// The environment that is cached for a thread must not be used after other code has detached the thread.
TEST_F(ThreadsTest, AThreadThatTheHostDetachesIsAttachedAgain) {
  InThreads(4, [] {
    for (int i = 0; i < 200; ++i) {
      EXPECT_EQ(CallStaticInt("java/lang/Math", "abs", "(I)I", -i), i);
      Local<> stray(NewText("stray"));
      JavaVM* const vm = java::detail::runningVm;
      EXPECT_EQ(vm->DetachCurrentThread(), JNI_OK);
      EXPECT_EQ(EnvIfAttached(), nullptr);
    }
  });
}

TEST_F(ThreadsTest, EightThreadsShareAGlobalAndItsCopies) {
  const Global<Child> shared(New<Child>());
  std::atomic<int> right{0};
  InThreads(8, [&] {
    for (int i = 0; i < 20000; ++i) {
      const Global<Parent> copy = shared;
      const Local<Named> local{java::Ref<Named>(copy)};
      const java::Weak<Child> weak(shared);
      if (java::Same(local, copy) && java::Same(weak.Lock(), shared)) ++right;
    }
  });
  EXPECT_EQ(right, 8 * 20000);
}

constexpr java::StaticMethod<jint(jint)> Abs{"java/lang/Math", "abs"};
constexpr java::Method<Parent, jint()> Number{"number"};
constexpr java::Method<Parent, std::string()> Name{"name"};

// One Vm, one Global and the same members for all; the VM that checks each call makes fewer.
TEST_F(ThreadsTest, EightThreadsMakeFiveMillionCallsAndNothingGrows) {
  const char* const option = std::getenv("TORVAN_TEST_VM_OPTION");
  const int rounds = option != nullptr && *option != '\0' ? 2000 : 200000;
  const Global<Child> shared(New<Child>());
  const auto call = [&shared, rounds] {
    for (int i = 0; i < rounds; ++i) {
      ASSERT_EQ(Abs(-i), i);
      ASSERT_EQ(Number(shared), 2);
      const Global<Child> copy = shared;
      ASSERT_EQ(Number(copy) + Abs(-1), 3);
    }
    ASSERT_EQ(Name(shared), "child");
  };
  const auto ofJava = [] { return static_cast<std::size_t>(CallStaticInt("fixture/Vms", "usedKibibytes", "()I")); };
  ExpectGrowthToEnd({{"the process", ResidentKibibytes, 16 * 1024},
                     {"the C++ heap", HeapKibibytes, 512},
                     {"Java's heap", ofJava, 512}},
                    [&call] { InThreads(8, call); });
}

// Dropped by threads that are not attached while others make and sweep.
TEST_F(ThreadsTest, ReferencesAreDroppedAndSweptByManyThreads) {
  const Global<Child> kept(New<Child>());
  InThreads(4, [&] {
    for (int i = 0; i < 200; ++i) {
      std::vector<Global<Child>> made;
      for (int j = 0; j < 10; ++j) made.emplace_back(kept);
      for (int j = 0; j < 10; ++j) made.emplace_back(java::Ref<Child>(kept));
      std::thread([&] {
        EXPECT_EQ(EnvIfAttached(), nullptr);
        made.clear();
      }).join();
    }
  });
  EXPECT_TRUE(java::IsInstance<Child>(kept));
}

TEST_F(ThreadsTest, ManyThreadsFindOneClassAtOnce) {
  std::atomic<jclass> place{nullptr};
  InThreads(8, [&] {
    jclass const found = java::detail::KeepClass(Env(), "fixture/Work", place);
    EXPECT_EQ(found, place.load());
  });
}

}  // namespace
}  // namespace tests
