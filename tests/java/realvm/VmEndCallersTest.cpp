// Which threads end VMs: those that Java has called, and several at once.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <optional>
#include <string>
#include <thread>

#include "java/realvm/CallbackTags.h"
#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

using namespace std::chrono_literals;
using java::Misuse;
using java::StartVm;
using java::Vm;
using java::VmEnd;
using testing::HasSubstr;

// Has fixture.Work.callBack call a function.
bool AnswerCallBack(jint(JNICALL* function)(JNIEnv*, jclass, jint)) {
  JNIEnv* const env = java::detail::Env();
  const auto type = java::Adopt<java::Class>(java::detail::LoadClass(env, "fixture/Work"));
  char name[] = "callBack";
  char signature[] = "(I)I";
  const JNINativeMethod method = {name, signature, reinterpret_cast<void*>(function)};
  return env->RegisterNatives(static_cast<jclass>(type.Get()), &method, 1) == JNI_OK;
}

// What the layer says to a shutdown hook, which the end of the VM waits for.
struct SaidToHook {
  Vm* vm = nullptr;
  std::vector<std::string> texts;
  std::atomic<bool> isComplete{false};
};
SaidToHook& TheHook() {
  static SaidToHook said;
  return said;
}
jint JNICALL AskInHook(JNIEnv*, jclass, jint) {
  Vm& vm = *TheHook().vm;
  TheHook().texts = {WhatOf<Misuse>([] { java::JoinVm(); }), WhatOf<Misuse>([&] { java::JoinVm(vm.Handle()); }),
                     WhatOf<Misuse>([&] { java::EndVm(vm.Handle()); }), WhatOf<Misuse>([&] { vm.End(); }),
                     WhatOf<java::StartFailure>([] { const Vm second = StartVm(); })};
  TheHook().isComplete = true;
  return 0;
}

void EndWithAHookThatAsks(int milliseconds, std::chrono::milliseconds grace, VmEnd expected) {
  Vm vm = StartVm(FixtureSettings());
  TheHook().vm = &vm;
  ASSERT_TRUE(AnswerCallBack(&AskInHook));
  java::CallStatic<void>("fixture/Work", "callBackAtEnd", 1);
  CallStaticInt("fixture/Vms", "runFor", "(I)I", milliseconds);
  EXPECT_EQ(vm.End(grace), expected);
  ASSERT_TRUE(TheHook().isComplete);
  const std::string ended = "The Java VM has ended";
  EXPECT_THAT(TheHook().texts,
              testing::ElementsAre(ended, ended, ended, ended, ended + "; a process can have one, and only once"));
}

TEST(VmEndCallersTest, AShutdownHookFailsAndDoesNotWait) {
  InOwnProcess([] { EndWithAHookThatAsks(0, 20s, VmEnd::Destroyed); });
  InOwnProcess([] { EndWithAHookThatAsks(600000, 500ms, VmEnd::LeftRunning); });
}

// Ends the VM again and again, until another thread does.
std::atomic<bool> s_hookRuns{false};
jint JNICALL EndInHook(JNIEnv*, jclass, jint) {
  CallStaticInt("java/lang/Math", "abs", "(I)I", -1);
  s_hookRuns = true;
  const std::string called = "The Java VM cannot be ended by a thread that Java has called";
  std::string said = called;
  while (said == called) said = WhatOf<Misuse>([] { TheHook().vm->End(); });
  std::fprintf(stderr, "told: %s\n", said.c_str());
  return 0;
}

TEST(VmEndCallersTest, AHookOfAnExitByJavaThatHasCalledFailsWhileAnotherThreadEndsTheVm) {
  InOwnProcess(
      [] {
        Vm vm = StartVm(FixtureSettings());
        TheHook().vm = &vm;
        ASSERT_TRUE(AnswerCallBack(&EndInHook));
        java::CallStatic<void>("fixture/Work", "callBackAtEnd", 1);
        std::thread([] { CallStaticInt("fixture/Vms", "exit", "(I)I", 7); }).detach();
        while (!s_hookRuns) std::this_thread::yield();
        std::thread([] {
          std::this_thread::sleep_for(60s);
          std::_Exit(3);  // all threads wait for one another
        }).detach();
        vm.End();
      },
      {7, HasSubstr("told: The Java VM has ended")});
}

// The thread that reads the trace waits in Java for a lock, and never returns.
TEST(VmEndCallersTest, AnErrorWhoseTraceWasBeingReadSaysThatTheVmHasEnded) {
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    std::optional<java::Error> error;
    try {
      java::CallStatic<void>("fixture/Errors", "locked");
    } catch (const java::Error& thrown) {
      error = thrown;
    }
    std::atomic<bool> isLocked{false};
    std::thread([error, &isLocked] {
      isLocked = java::detail::Env()->MonitorEnter(error->Throwable().Get()) == JNI_OK;
      std::this_thread::sleep_for(1h);  // the process ends before
    }).detach();
    while (!isLocked) std::this_thread::yield();
    std::thread([error] { error->StackTrace(); }).detach();
    java::CallStatic<void>("fixture/Errors", "awaitPrinting");
    EXPECT_EQ(vm.End(), VmEnd::Destroyed);
    EXPECT_EQ(error->StackTrace(),
              "fixture.Errors$Locked: locked\n\t(the stack trace was not read: the Java VM has ended)\n");
    EXPECT_EQ(WhatOf<Misuse>([&] { error->Cause(); }), "The Java VM has ended");
  });
}

TEST(VmEndCallersTest, AThreadThatEndsItMeanwhileWaitsUnlessItIsWaitedFor) {
  InOwnProcess([] {
    const torvan::jni::CJavaVm fixed = FixedVm();
    const Vm vm = java::JoinVm();
    std::atomic<int> ready{0};
    const auto endsAfterTheFirst = [&] {
      ++ready;
      while (java::detail::HasVm()) std::this_thread::yield();
      return java::EndVm(fixed);
    };
    std::thread unattached([&] { EXPECT_EQ(endsAfterTheFirst(), VmEnd::Destroyed); });
    std::thread byTheLayer([&] {
      const java::Thread thread;
      const bool isNumbered = java::detail::AttachmentNumber() != 0;  // else nothing tells who has attached it
      EXPECT_EQ(WhatOf<Misuse>([&] { EXPECT_EQ(endsAfterTheFirst(), VmEnd::Destroyed); }),
                isNumbered ? "nothing" : "The Java VM has ended");
    });
    std::thread byTheFixedInterface([&] {
      fixed.Attach();
      EXPECT_EQ(WhatOf<Misuse>(endsAfterTheFirst), "The Java VM has ended");
      fixed.Detach();
    });
    while (ready != 3) std::this_thread::yield();
    CallStaticInt("fixture/Vms", "runFor", "(I)I", 300);
    EXPECT_EQ(java::EndVm(fixed, 20s), VmEnd::Destroyed);
    for (std::thread* thread : {&unattached, &byTheLayer, &byTheFixedInterface}) thread->join();
  });
}

TEST(VmEndCallersTest, TwoThreadsEndAVmThatWasNeverJoined) {
  InOwnProcess([] {
    const torvan::jni::CJavaVm fixed = FixedVm();
    fixed.FindClass("fixture/Vms").CallStaticIntMethod("runFor", "(I)I", jint{300});
    fixed.Detach();
    const auto end = [&] { EXPECT_EQ(java::EndVm(fixed, 20s), VmEnd::Destroyed); };
    std::thread first(end);
    std::thread second(end);
    first.join();
    second.join();
  });
}

// What End() throws in a thread that ends the VM from inside a call by Java. That thread may never end.
std::atomic<bool> s_isCalled{false};
std::atomic<bool> s_isTold{false};
std::string s_told;

void EndInsideACall(Vm& vm, bool isTime()) {
  std::thread([&vm, isTime] {
    const auto end = [&vm, isTime](jint number) {
      s_isCalled = true;
      while (!isTime()) std::this_thread::yield();
      s_told = WhatOf<Misuse>([&vm] { vm.End(); });
      s_isTold = true;
      return number;
    };
    Nest(end, 1);
  }).detach();
  while (!s_isCalled) std::this_thread::yield();
}

void WaitUntilItIsTold() {
  for (int i = 0; i < 10000 && !s_isTold; ++i) std::this_thread::sleep_for(1ms);
}

// It may hold a lock of Java's that a shutdown hook waits for.
TEST(VmEndCallersTest, AThreadThatJavaHasCalledDoesNotWaitForAnEndThatIsInItsGrace) {
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    EndInsideACall(vm, [] { return !java::detail::HasVm(); });
    std::atomic<bool> isOpen{false};
    std::thread kept([&isOpen] {
      const java::Elements<jint> elements(java::NewArray<jint>(1));
      isOpen = true;
      WaitUntilItIsTold();
    });
    while (!isOpen) std::this_thread::yield();
    EXPECT_EQ(vm.End(60s), VmEnd::Destroyed);
    kept.join();
    EXPECT_EQ(s_told, "The Java VM has ended");
  });
}

std::atomic<bool> s_otherHookRuns{false};
jint JNICALL WaitInHook(JNIEnv*, jclass, jint number) {
  s_otherHookRuns = true;
  WaitUntilItIsTold();
  return number;
}

TEST(VmEndCallersTest, AThreadThatJavaHasCalledDoesNotWaitForShutdownHooks) {
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    ASSERT_TRUE(AnswerCallBack(&WaitInHook));
    java::CallStatic<void>("fixture/Work", "callBackAtEnd", 1);
    EndInsideACall(vm, [] { return s_otherHookRuns.load(); });
    EXPECT_EQ(vm.End(20s), VmEnd::Destroyed);
    EXPECT_TRUE(s_isTold);
    EXPECT_EQ(s_told, "The Java VM has ended");
  });
}

TEST(VmEndCallersTest, AThreadOfTheHostWaitsForShutdownHooks) {
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    ASSERT_TRUE(AnswerCallBack([](JNIEnv*, jclass, jint number) -> jint {
      s_otherHookRuns = true;
      std::this_thread::sleep_for(50ms);
      return number;
    }));
    java::CallStatic<void>("fixture/Work", "callBackAtEnd", 1);
    std::atomic<int> ready{0};
    const auto endInTheHook = [&] {
      ++ready;
      while (!s_otherHookRuns) std::this_thread::yield();
      return vm.End();
    };
    std::thread unattached([&] { EXPECT_EQ(endInTheHook(), VmEnd::Destroyed); });
    std::thread attached([&] {
      const java::Thread thread;
      EXPECT_EQ(endInTheHook(), VmEnd::Destroyed);
    });
    while (ready != 2) std::this_thread::yield();
    EXPECT_EQ(vm.End(20s), VmEnd::Destroyed);
    unattached.join();
    attached.join();
  });
}

TEST(VmEndCallersTest, AThreadWithOpenElementsDoesNotWaitForTheEndThatWaitsForIt) {
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    std::atomic<bool> isOpen{false};
    std::thread other([&] {
      const auto array = java::NewArray<jint>(3);
      const java::Elements<jint> elements(array);
      isOpen = true;
      while (java::detail::HasVm()) std::this_thread::yield();
      EXPECT_EQ(WhatOf<Misuse>([&] { java::EndVm(vm.Handle()); }), "The Java VM has ended");
    });
    while (!isOpen) std::this_thread::yield();
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(vm.End(60s), VmEnd::Destroyed);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 30s);
    other.join();
  });
}

jint JNICALL EndInCallBack(JNIEnv*, jclass, jint) {
  Vm vm = java::JoinVm();
  EXPECT_EQ(WhatOf<Misuse>([&] { java::EndVm(vm.Handle()); }),
            "The Java VM cannot be ended by a thread that Java has called");
  ThrowPending(java::detail::Env());
  EXPECT_THROW(java::EndVm(vm.Handle()), Misuse);
  const auto pending = java::TakePending();
  EXPECT_TRUE(pending.has_value() && *pending->Message() == "left pending");
  return 5;
}

TEST(VmEndCallersTest, AThreadThatJavaCalledCannotEndIt) {
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    ASSERT_TRUE(AnswerCallBack(&EndInCallBack));
    EXPECT_EQ(CallStaticInt("fixture/Work", "callBack", "(I)I", 1), 5);
    EXPECT_EQ(vm.End(), VmEnd::Destroyed);
  });
}

}  // namespace
}  // namespace tests
