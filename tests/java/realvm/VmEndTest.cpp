// How VMs end.
#include <atomic>
#include <chrono>
#include <thread>

#include "java/realvm/CountedReferences.h"
#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

using namespace std::chrono_literals;
using java::Misuse;
using java::StartVm;
using java::Vm;
using java::VmEnd;
using Clock = std::chrono::steady_clock;

// A shutdown hook that writes the text into the note.
void AddHook(const Note& note) {
  const auto path = NewText(note.Path().c_str());
  CallStaticInt("fixture/Vms", "addHook", "(Ljava/lang/String;)I", path.Get());
}

TEST(VmEndTest, TheDestructorEndsTheVmAndItsHooksRun) {
  const Note note;
  InOwnProcess([&] {
    {
      const Vm vm = StartVm(FixtureSettings());
      AddHook(note);
    }
    EXPECT_EQ(note.Text(), "hook");
    EXPECT_EQ(WhatOf<Misuse>([] { const java::Thread thread; }), "The Java VM has ended");
    EXPECT_EQ(WhatOf<java::StartFailure>([] { const Vm second = StartVm(FixtureSettings()); }),
              "The Java VM has ended; a process can have one, and only once");
    EXPECT_EQ(WhatOf<java::StartFailure>([] { java::JoinVm(); }), "No Java VM runs in this process");
  });
}

TEST(VmEndTest, EndingItAgainTellsTheSame) {
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    const auto start = Clock::now();
    EXPECT_EQ(vm.End(), VmEnd::Destroyed);
    EXPECT_LT(Clock::now() - start, 5s);
    EXPECT_EQ(vm.End(), VmEnd::Destroyed);
  });
}

TEST(VmEndTest, AnExceptionThatIsPendingDoesNotKeepItFromEnding) {
  const Note note;
  InOwnProcess([&] {
    {
      const Vm vm = StartVm(FixtureSettings());
      AddHook(note);
      ThrowPending(java::detail::Env());
    }
    EXPECT_EQ(note.Text(), "hook");
  });
}

TEST(VmEndTest, AFailureOfJavasLeavesNothingAndTheEndCanBeTriedAgain) {
  const Note note;
  InOwnProcess([&] {
    Vm vm = StartVm(FixtureSettings());
    AddHook(note);
    for (const int step : {2, 3}) {  // the first is a frame for references, without which it goes on
      const CountedReferences counted(java::detail::Env());
      CountedReferences::FailAt(step);
      EXPECT_EQ(WhatOf<java::Error>([&] { vm.End(); }), "java.lang.OutOfMemoryError: as the test wants");
      EXPECT_EQ(counted.Locals(), 0);
    }
    EXPECT_EQ(vm.End(), VmEnd::Destroyed);
    EXPECT_EQ(note.Text(), "hook");
  });
}

TEST(VmEndTest, AFailureOfJavasIsReadInAVmThatWasNeverJoined) {
  InOwnProcess([] {
    const torvan::jni::CJavaVm vm = FixedVm();
    const CountedReferences counted(vm.Attach());
    CountedReferences::FailAt(36);  // after what reads it was looked up
    EXPECT_EQ(WhatOf<java::Error>([&] { java::EndVm(vm); }), "java.lang.OutOfMemoryError: as the test wants");
  });
}

TEST(VmEndTest, TheGraceMayBeAsLongAsItsTypeAllows) {
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    CallStaticInt("fixture/Vms", "runFor", "(I)I", 200);
    EXPECT_EQ(vm.End(std::chrono::milliseconds::max()), VmEnd::Destroyed);
  });
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    CallStaticInt("fixture/Vms", "runFor", "(I)I", 600000);
    EXPECT_EQ(vm.End(std::chrono::milliseconds::min()), VmEnd::LeftRunning);
  });
}

TEST(VmEndTest, AThreadThatEndsInTheGraceIsNotWaitedFor) {
  InOwnProcess([] {
    const torvan::jni::CJavaVm fixed = FixedVm();
    Vm vm = java::JoinVm();
    std::atomic<bool> isAttached{false};
    std::thread ending([&] {
      fixed.Attach();  // not as a daemon
      const java::Thread thread;
      isAttached = true;
      std::this_thread::sleep_for(200ms);
    });
    while (!isAttached) std::this_thread::yield();
    EXPECT_EQ(java::EndVm(fixed, 20s), VmEnd::Destroyed);
    ending.join();
  });
}

TEST(VmEndTest, AnyThreadEndsIt) {
  const Note note;
  InOwnProcess([&] {
    Vm vm = StartVm(FixtureSettings());
    AddHook(note);
    std::thread([&] { EXPECT_EQ(vm.End(), VmEnd::Destroyed); }).join();
    EXPECT_EQ(note.Text(), "hook");
  });
}

TEST(VmEndTest, ThreadsOfTheHostAreNotWaitedFor) {
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    std::atomic<int> attached{0};
    std::atomic<bool> over{false};
    std::thread idle([&] {
      const java::Thread thread;
      ++attached;
      while (!over) std::this_thread::sleep_for(1ms);
      EXPECT_EQ(WhatOf<Misuse>([&] { thread.Env(); }), "The Java VM has ended");
    });
    std::thread([&] {  // ends without detaching, as the fixed interface lets it
      vm.Handle().Attach();
      const java::Thread thread;
    })
        .join();
    while (attached == 0) std::this_thread::sleep_for(1ms);
    EXPECT_EQ(vm.End(20s), VmEnd::Destroyed);
    over = true;
    idle.join();
  });
}

TEST(VmEndTest, AThreadOfJavasOwnIsWaitedForAsLongAsTheGrace) {
  const Note note;
  InOwnProcess([&] {
    Vm vm = StartVm(FixtureSettings());
    AddHook(note);
    const auto start = Clock::now();
    CallStaticInt("fixture/Vms", "runFor", "(I)I", 300);
    EXPECT_EQ(vm.End(20s), VmEnd::Destroyed);
    EXPECT_GE(Clock::now() - start, 200ms);
    EXPECT_LT(Clock::now() - start, 15s);
    EXPECT_EQ(note.Text(), "hook");
  });
}

TEST(VmEndTest, WhenTheGraceIsOverTheHooksRunNevertheless) {
  const Note note;
  InOwnProcess([&] {
    Vm vm = StartVm(FixtureSettings());
    AddHook(note);
    CallStaticInt("fixture/Vms", "runFor", "(I)I", 600000);
    const auto start = Clock::now();
    EXPECT_EQ(vm.End(200ms), VmEnd::LeftRunning);
    EXPECT_LT(Clock::now() - start, 15s);
    EXPECT_EQ(note.Text(), "hook");
    EXPECT_EQ(vm.End(), VmEnd::LeftRunning);
    EXPECT_EQ(WhatOf<Misuse>([] { const java::Thread thread; }), "The Java VM has ended");
    EXPECT_EQ(WhatOf<Misuse>([] { java::JoinVm(); }), "The Java VM has ended");
  });
}

TEST(VmEndTest, AThreadInsideACallAtThatMomentFailsOrStops) {
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    static std::atomic<long> calls{0};
    static std::atomic<bool> told{false};
    std::thread([] {
      try {
        for (;; ++calls) CallStaticInt("java/lang/Math", "abs", "(I)I", -1);
      } catch (const Misuse&) {
        told = true;
      }
    }).detach();
    while (calls < 1000) std::this_thread::yield();
    EXPECT_EQ(vm.End(), VmEnd::Destroyed);
    for (int i = 0; i < 100 && !told; ++i) std::this_thread::sleep_for(2ms);
    const long atEnd = calls;
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(calls, atEnd);
  });
}

// Opens the elements of a new array of three on another thread; when it is told to, writes the first and closes them.
template <typename Elements>
struct Writer {
  Writer()
      : array(java::NewArray<jint>(3)), thread([this] {
          Elements elements{array};
          open = true;
          for (int i = 0; i < 20000 && !closes; ++i) std::this_thread::sleep_for(1ms);
          elements.At(0) = 7;
        }) {
    while (!open) std::this_thread::yield();
  }

  // As raw JNI reads it: the layer calls no more.
  jint First(JNIEnv* env) const {
    jint first = 0;
    env->GetIntArrayRegion(static_cast<jintArray>(array.Get()), 0, 1, &first);
    return first;
  }

  java::Global<java::Array<jint>> array;
  std::atomic<bool> open{false};
  std::atomic<bool> closes{false};
  std::thread thread;
};

template <typename Elements>
void EndWaitsFor() {
  Vm vm = StartVm(FixtureSettings());
  Writer<Elements> writer;
  const auto start = Clock::now();
  std::thread closing([&writer] {
    std::this_thread::sleep_for(300ms);
    writer.closes = true;
  });
  EXPECT_EQ(vm.End(20s), VmEnd::Destroyed);
  EXPECT_GE(Clock::now() - start, 200ms);
  EXPECT_LT(Clock::now() - start, 15s);
  closing.join();
  writer.thread.join();
  EXPECT_EQ(WhatOf<Misuse>([&] { Elements{writer.array}; }), "The Java VM has ended");
}

template <typename Elements>
void ClosesAfterTheGrace() {
  Vm vm = StartVm(FixtureSettings());
  JNIEnv* const env = java::detail::Env();
  Writer<Elements> writer;
  const VmEnd end = vm.End(100ms);
  writer.closes = true;
  writer.thread.join();
  ASSERT_EQ(end, VmEnd::LeftRunning);  // else there is no VM to read it
  EXPECT_EQ(writer.First(env), 7);
  // The garbage collector does not wait for them any more.
  jclass const system = env->FindClass("java/lang/System");
  env->CallStaticVoidMethod(system, env->GetStaticMethodID(system, "gc", "()V"));
  EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
}

TEST(VmEndTest, ElementsThatAreOpenAreWaitedFor) {
  InOwnProcess(&EndWaitsFor<java::Elements<jint>>);
  InOwnProcess(&EndWaitsFor<java::CriticalElements<jint>>);
}

TEST(VmEndTest, ElementsThatAreOpenAfterTheGraceAreWrittenNevertheless) {
  InOwnProcess(&ClosesAfterTheGrace<java::Elements<jint>>);
  InOwnProcess(&ClosesAfterTheGrace<java::CriticalElements<jint>>);
}

TEST(VmEndTest, AThreadWithElementsCannotEndIt) {
  InOwnProcess([] {
    Vm vm = StartVm(FixtureSettings());
    const java::Local<java::Array<jint>> array = java::NewArray<jint>(1);
    {
      const java::Elements<jint> elements(array);
      EXPECT_EQ(WhatOf<Misuse>([&] { vm.End(); }),
                "The Java VM cannot be ended while Elements are open in this thread");
      EXPECT_EQ(WhatOf<Misuse>([&] { java::EndVm(vm.Handle()); }),
                "The Java VM cannot be ended while Elements are open in this thread");
      elements.At(0) = 7;
    }
    {
      const java::CriticalElements<jint> elements(array);
      EXPECT_EQ(WhatOf<Misuse>([&] { vm.End(); }), "Java is called while CriticalElements are open in this thread");
    }
    EXPECT_EQ(java::Elements<const jint>(array).At(0), 7);
    EXPECT_EQ(vm.End(), VmEnd::Destroyed);
  });
}

TEST(VmEndTest, AReleasedVmGoesOn) {
  const Note note;
  InOwnProcess([&] {
    {
      Vm vm = StartVm(FixtureSettings());
      AddHook(note);
      vm.Release();
      EXPECT_THROW(vm.End(), Misuse);
    }
    EXPECT_EQ(CallStaticInt("java/lang/Math", "abs", "(I)I", -7), 7);
    EXPECT_EQ(note.Text(), "");
  });
}

TEST(VmEndTest, AMovedVmIsEndedOnce) {
  const Note note;
  InOwnProcess([&] {
    Vm first = StartVm(FixtureSettings());
    AddHook(note);
    {
      Vm second = std::move(first);
      EXPECT_THROW(first.End(), Misuse);
      first = std::move(second);
    }
    EXPECT_EQ(note.Text(), "");
    EXPECT_EQ(first.End(), VmEnd::Destroyed);
    EXPECT_EQ(note.Text(), "hook");
  });
}

TEST(VmEndTest, AHostOfTheFixedInterfaceEndsItsVm) {
  const Note note;
  InOwnProcess([&] {
    const torvan::jni::CJavaVm vm = FixedVm();
    const torvan::jni::CJavaString path = vm.NewString(Wide(note.Path()).c_str());
    vm.FindClass("fixture/Vms").CallStaticIntMethod("addHook", "(Ljava/lang/String;)I", static_cast<jstring>(path));
    EXPECT_EQ(java::EndVm(vm), VmEnd::Destroyed);
    EXPECT_EQ(note.Text(), "hook");
    EXPECT_EQ(java::EndVm(vm), VmEnd::Destroyed);
  });
}

TEST(VmEndTest, AVmThatWasNeverJoinedEndsWithAnExceptionPending) {
  const Note note;
  InOwnProcess([&] {
    const torvan::jni::CJavaVm vm = FixedVm();
    const torvan::jni::CJavaString path = vm.NewString(Wide(note.Path()).c_str());
    vm.FindClass("fixture/Vms").CallStaticIntMethod("addHook", "(Ljava/lang/String;)I", static_cast<jstring>(path));
    ThrowPending(vm.Attach());
    EXPECT_EQ(java::EndVm(vm), VmEnd::Destroyed);
    EXPECT_EQ(note.Text(), "hook");
    EXPECT_EQ(WhatOf<Misuse>([] { const java::Thread thread; }), "The Java VM has ended");
  });
}

TEST(VmEndTest, AThreadThatTheFixedInterfaceLeftAttachedIsWaitedFor) {
  const Note note;
  InOwnProcess([&] {
    const torvan::jni::CJavaVm vm = FixedVm();
    std::thread([&] { vm.Attach(); }).join();
    EXPECT_EQ(java::EndVm(vm, 100ms), VmEnd::LeftRunning);
  });
}

TEST(VmEndTest, ReferencesAndErrorsOutliveTheVm) {
  InOwnProcess([] {
    static java::Global<> inStatic;
    Vm vm = StartVm(FixtureSettings());
    const java::Local<> local(NewText("text"));
    const java::Global<> global{java::Ref<java::Object>(local)};
    const java::Weak<> weak{java::Ref<java::Object>(local)};
    inStatic = global;
    std::optional<java::Error> read;
    std::optional<java::Error> unread;
    for (std::optional<java::Error>* error : {&read, &unread}) {
      try {
        CallStaticInt("fixture/Failures", "failLater", "(I)I", 1);
      } catch (const java::Error& caught) {
        *error = caught;
      }
    }
    const std::string trace = read->StackTrace();
    read->Cause();
    EXPECT_EQ(vm.End(), VmEnd::Destroyed);
    EXPECT_EQ(read->StackTrace(), trace);
    EXPECT_FALSE(read->Cause().has_value());
    EXPECT_STREQ(unread->what(), "java.lang.NumberFormatException: For input string: \"x\"");
    EXPECT_EQ(unread->StackTrace(),
              "java.lang.NumberFormatException: For input string: \"x\"\n"
              "\t(the stack trace was not read: the Java VM has ended)\n");
    EXPECT_EQ(WhatOf<Misuse>([&] { unread->Cause(); }), "The Java VM has ended");
    EXPECT_EQ(WhatOf<Misuse>([&] { java::Local<>{global}; }), "The Java VM has ended");
    EXPECT_EQ(WhatOf<Misuse>([&] { weak.Lock(); }), "The Java VM has ended");
    EXPECT_EQ(WhatOf<Misuse>([&] { java::Handle(global); }), "The Java VM has ended");
    EXPECT_EQ(WhatOf<Misuse>([] { java::MakeFailuresReadable(); }), "The Java VM has ended");
    EXPECT_EQ(WhatOf<Misuse>([] { java::TakePending(); }), "The Java VM has ended");
  });
}

}  // namespace
}  // namespace tests
