// Which threads end VMs: those that Java has called, and several at once.
#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>

#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

using namespace std::chrono_literals;
using java::Misuse;
using java::StartVm;
using java::Vm;
using java::VmEnd;
using testing::HasSubstr;

void ThrowPending(JNIEnv* env) { env->ThrowNew(env->FindClass("java/lang/IllegalStateException"), "left pending"); }

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
  return 0;
}

void EndWithAHookThatAsks(int milliseconds, std::chrono::milliseconds grace, VmEnd expected) {
  Vm vm = StartVm(FixtureSettings());
  TheHook().vm = &vm;
  ASSERT_TRUE(AnswerCallBack(&AskInHook));
  java::CallStatic<void>("fixture/Work", "callBackAtEnd", 1);
  CallStaticInt("fixture/Vms", "runFor", "(I)I", milliseconds);
  EXPECT_EQ(vm.End(grace), expected);
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
