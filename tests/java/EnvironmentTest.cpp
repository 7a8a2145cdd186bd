// How threads come to the VM and leave it.
#include <torvan/java/Elements.h>
#include <torvan/java/Failure.h>
#include <torvan/java/Local.h>
#include <torvan/java/Thread.h>

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include "java/CountedVm.h"
#include "java/Threads.h"
#include "java/What.h"

namespace tests {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using torvan::java::Failure;
using torvan::java::Local;
using torvan::java::Misuse;
using torvan::java::Thread;
using torvan::java::detail::AttachmentNumber;
using torvan::java::detail::EndCalls;
using torvan::java::detail::Env;
using torvan::java::detail::EnvIfAttached;
using torvan::java::detail::ForgetEnv;
using torvan::java::detail::IsAttachedByLayer;
using torvan::java::detail::LeaveVm;
using torvan::java::detail::OpenMemory;
using torvan::java::detail::threadEndsAreSeen;
using torvan::java::detail::UseVm;

class EnvironmentTest : public CountedVmTest {
 protected:
  EnvironmentTest() {
    jvm.On<&Invocation::AttachCurrentThreadAsDaemon>([this](void** env, void* arguments) {
      const auto& given = *static_cast<const JavaVMAttachArgs*>(arguments);
      name = given.name != nullptr ? given.name : "(none)";
      *env = jvm.Env();
      isAttached = status == JNI_OK;
      return status;
    });
    jvm.On<&Invocation::DetachCurrentThread>([] {
      isAttached = false;
      return JNI_OK;
    });
  }

  // Runs a function in a new thread that is not attached.
  template <typename Function>
  static void Elsewhere(Function function) {
    std::thread([&] {
      isAttached = false;
      function();
    }).join();
  }

  jint status = JNI_OK;
  std::string name;
};

TEST_F(EnvironmentTest, AThreadIsAttachedByItsFirstCallAndDetachedAtItsEnd) {
  Elsewhere([&] {
    EXPECT_EQ(EnvIfAttached(), nullptr);
    EXPECT_EQ(Calls("AttachCurrentThreadAsDaemon"), 0u);
    EXPECT_EQ(Env(), jvm.Env());
    EXPECT_EQ(Env(), jvm.Env());
    EXPECT_EQ(EnvIfAttached(), jvm.Env());
    EXPECT_EQ(name, "(none)");
    EXPECT_EQ(Calls("DetachCurrentThread"), 0u);
  });
  EXPECT_EQ(Calls("AttachCurrentThreadAsDaemon"), 1u);
  EXPECT_EQ(Calls("DetachCurrentThread"), 1u);
}

TEST_F(EnvironmentTest, AThreadThatTheHostAttachedIsDetachedAtItsEnd) {
  std::thread([] {
    isAttached = true;
    Env();
  }).join();
  EXPECT_EQ(Calls("DetachCurrentThread"), 1u);
}

TEST_F(EnvironmentTest, ANamedThreadIsDetachedAtTheEndOfItsScope) {
  Elsewhere([&] {
    {
      const Thread thread(
          "Gr\xC3\xBC\xC3\x9F"
          "e \xF0\x9F\x98\x80");
      EXPECT_EQ(name,
                "Gr\xC3\xBC\xC3\x9F"
                "e \xED\xA0\xBD\xED\xB8\x80")
          << "what JNI calls UTF-8";
      EXPECT_EQ(thread.Env(), jvm.Env());
      const Thread inner("inner");
      EXPECT_EQ(Calls("AttachCurrentThreadAsDaemon"), 1u);
    }
    EXPECT_FALSE(isAttached);
    EXPECT_EQ(Calls("DetachCurrentThread"), 1u);
  });
  EXPECT_EQ(Calls("DetachCurrentThread"), 1u);
}

TEST_F(EnvironmentTest, ANamedThreadOfAVmWithoutNumbersIsDetachedByItsEnvironment) {
  Elsewhere([&] {
    {
      const Thread thread("named");
      isAttached = false;  // other code has detached it
    }
    EXPECT_EQ(Calls("DetachCurrentThread"), 0u);
    {
      const Thread thread("named");
      EndCalls();
    }
    EXPECT_FALSE(isAttached);
  });
  EXPECT_EQ(Calls("DetachCurrentThread"), 1u);
}

TEST_F(EnvironmentTest, ANamedThreadOfAVmWithoutNumbersLeavesAnotherEnvironmentAlone) {
  static JNIEnv other = *jvm.Env();
  Elsewhere([&] {
    {
      const Thread thread("named");
      jvm.On<&Invocation::GetEnv>([](void** env, jint) {  // other code has detached it and attached it again
        *env = &other;
        return JNI_OK;
      });
    }
    EXPECT_EQ(Calls("DetachCurrentThread"), 0u);
  });
}

TEST_F(EnvironmentTest, AThreadWithoutANameStaysAttached) {
  Elsewhere([&] {
    { const Thread thread; }
    Thread();  // attaches, and needs no name in C++
    EXPECT_TRUE(isAttached);
  });
  EXPECT_EQ(Calls("DetachCurrentThread"), 1u);
}

TEST_F(EnvironmentTest, ANameThatIsNotUtf8IsRefusedBeforeTheThreadIsAttached) {
  Elsewhere([] { EXPECT_THROW(const Thread thread("\xFF"), Misuse); });
  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_F(EnvironmentTest, AThreadThatTheVmRefusesIsAFailure) {
  status = JNI_ENOMEM;
  Elsewhere([] {
    EXPECT_EQ(WhatOf<Failure>([] { Env(); }),
              "The Java VM does not attach this thread: there is not enough memory (JNI_ENOMEM)");
  });
  status = JNI_ERR;
  Elsewhere([] {
    EXPECT_EQ(WhatOf<Failure>([] { Env(); }),
              "The Java VM does not attach this thread: it refuses the thread (JNI_ERR)");
  });
  EXPECT_EQ(Calls("DetachCurrentThread"), 0u);
}

TEST_F(EnvironmentTest, AfterTheEndEveryCallThrowsAlsoWithAThread) {
  const Thread thread;
  jvm.TakeCalls();
  UseVm(nullptr);
  EXPECT_EQ(WhatOf<Misuse>([] { Env(); }), "The Java VM has ended");
  EXPECT_EQ(WhatOf<Misuse>([&] { thread.Env(); }), "The Java VM has ended");
  EXPECT_EQ(EnvIfAttached(), nullptr);
  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_F(EnvironmentTest, AThreadThatEndsAfterTheVmIsNotDetached) {
  Elsewhere([&] {
    Env();
    UseVm(nullptr);
  });
  EXPECT_EQ(Calls("DetachCurrentThread"), 0u);
}

TEST_F(EnvironmentTest, MemoryIsOpenUntilItIsReleasedAndNoneIsOpenedAfterTheEnd) {
  {
    const OpenMemory memory;
    EXPECT_TRUE(OpenMemory::IsOpenInThisThread());
    Elsewhere([] {
      EXPECT_TRUE(OpenMemory::IsOpen());
      EXPECT_FALSE(OpenMemory::IsOpenInThisThread());
      EXPECT_EQ(OpenMemory::Env(), nullptr);
    });
    EndCalls();
    EXPECT_EQ(WhatOf<Misuse>([] { const OpenMemory late; }), "The Java VM has ended");
    EXPECT_TRUE(OpenMemory::IsOpen());
    EXPECT_EQ(EnvIfAttached(), nullptr);
    EXPECT_EQ(OpenMemory::Env(), jvm.Env()) << "it lives as long as its end waits";
    UseVm(nullptr);
    EXPECT_EQ(OpenMemory::Env(), nullptr);
  }
  EXPECT_FALSE(OpenMemory::IsOpen());
  EXPECT_FALSE(OpenMemory::IsOpenInThisThread());
}

TEST_F(EnvironmentTest, AThreadThatEndsWhileTheEndOfTheVmWaitsIsDetached) {
  Elsewhere([&] {
    Env();
    EndCalls();
  });
  EXPECT_EQ(Calls("DetachCurrentThread"), 1u);
}

TEST_F(EnvironmentTest, TheEndWaitsForThreadsThatAreJustDetached) {
  std::atomic<bool> hasBegun{false};
  std::atomic<bool> isDone{false};
  jvm.On<&Invocation::DetachCurrentThread>([&] {
    hasBegun = true;
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    isDone = true;
    return JNI_OK;
  });
  std::thread leaving([] {
    isAttached = true;
    Env();
  });
  while (!hasBegun) std::this_thread::yield();
  LeaveVm();
  EXPECT_TRUE(isDone);
  leaving.join();
}

// A VM that reports each thread that leaves it.
class EnvironmentNumberedTest : public EnvironmentTest {
 protected:
  EnvironmentNumberedTest() {
    jvm.On<&Invocation::DetachCurrentThread>([] {
      isAttached = false;
      ForgetEnv();
      return JNI_OK;
    });
    threadEndsAreSeen = true;
  }

  // What other code does in the calling thread.
  void DetachAndAttachAgain() {
    jvm.Vm()->DetachCurrentThread();
    isAttached = true;
  }
};

TEST_F(EnvironmentNumberedTest, EachAttachmentHasANumberThatTellsWhetherTheLayerMadeIt) {
  Elsewhere([&] {
    EXPECT_EQ(AttachmentNumber(), 0u);
    EXPECT_FALSE(IsAttachedByLayer());
    Env();
    const std::uintptr_t first = AttachmentNumber();
    EXPECT_NE(first, 0u);
    EXPECT_TRUE(IsAttachedByLayer());
    DetachAndAttachAgain();
    EXPECT_FALSE(IsAttachedByLayer());
    Env();
    const std::uintptr_t second = AttachmentNumber();
    EXPECT_NE(second, 0u);
    EXPECT_FALSE(IsAttachedByLayer());
    Env();
    EXPECT_EQ(AttachmentNumber(), second);
    jvm.Vm()->DetachCurrentThread();
    Env();
    EXPECT_TRUE(IsAttachedByLayer());
    EXPECT_NE(AttachmentNumber() / 2, first / 2);
    EXPECT_NE(AttachmentNumber() / 2, second / 2);
  });
}

TEST_F(EnvironmentNumberedTest, ANamedThreadLeavesALaterAttachmentAlone) {
  Elsewhere([&] {
    {
      const Thread thread("first");
      DetachAndAttachAgain();
      const Thread other("second");
    }
    EXPECT_TRUE(isAttached);
    EXPECT_EQ(Calls("DetachCurrentThread"), 1u);
  });
}

TEST_F(EnvironmentNumberedTest, ANamedThreadIsDetachedWhileTheEndOfTheVmWaits) {
  Elsewhere([&] {
    {
      const Thread thread("named");
      EndCalls();
    }
    EXPECT_FALSE(isAttached);
  });
  EXPECT_EQ(Calls("DetachCurrentThread"), 1u);
}

TEST_F(EnvironmentNumberedTest, ALocalIsNotTouchedOnceTheEndOfTheVmHasBegun) {
  Elsewhere([&] {
    JNIEnv* const env = Env();
    Local<> local = torvan::java::detail::Own<torvan::java::Object>(env, NewLocal());
    EndCalls();
    local.Reset();
    EXPECT_FALSE(local);
  });
  EXPECT_EQ(locals, 1);
  locals = 0;
}

TEST_F(EnvironmentNumberedTest, ElementsAreReleasedInTheirOwnAttachmentAsLongAsTheVmIsThere) {
  static jint memory[3];
  int released = 0;
  jvm.Return<&Jni::GetArrayLength>(3);
  jvm.On<&Jni::GetIntArrayElements>([](jintArray, jboolean*) { return memory; });
  jvm.On<&Jni::ReleaseIntArrayElements>([&](jintArray, jint*, jint) { ++released; });
  const auto releasedAfter = [&](const auto& meanwhile) {
    UseVm(jvm.Vm());
    threadEndsAreSeen = true;
    released = 0;
    Elsewhere([&] {
      JNIEnv* const env = Env();
      const auto array = torvan::java::detail::Own<torvan::java::Array<jint>>(env, NewLocal());
      const torvan::java::Elements<jint> elements(array);
      meanwhile();
    });
    locals = 0;  // of attachments that have ended
    return released;
  };
  EXPECT_EQ(releasedAfter([] {}), 1);
  EXPECT_EQ(releasedAfter([] { EndCalls(); }), 1) << "the end waits for them";
  EXPECT_EQ(releasedAfter([] { UseVm(nullptr); }), 0);
  EXPECT_EQ(releasedAfter([&] {
              DetachAndAttachAgain();
              Env();
            }),
            0);
}

TEST_F(EnvironmentNumberedTest, CriticalElementsOfAnEarlierAttachmentEndNevertheless) {
  static jint memory[3];
  jvm.Return<&Jni::GetArrayLength>(3);
  jvm.On<&Jni::GetPrimitiveArrayCritical>([](jarray, jboolean*) -> void* { return memory; });
  Elsewhere([&] {
    JNIEnv* const env = Env();
    {
      const auto array = torvan::java::detail::Own<torvan::java::Array<jint>>(env, NewLocal());
      const torvan::java::CriticalElements<jint> elements(array);
      DetachAndAttachAgain();
    }
    EXPECT_EQ(WhatOf<Misuse>([] { Env(); }), "nothing");
  });
  locals = 0;  // of the attachment that has ended
}

// In a process that never had a VM.
TEST(EnvironmentWithoutVmTest, ACallBeforeTheStartSaysWhatToDo) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        const std::string what = WhatOf<Misuse>([] { Env(); });
        std::exit(what == "No Java VM runs: call StartVm or JoinVm first" ? 0 : 1);
      },
      testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace tests
