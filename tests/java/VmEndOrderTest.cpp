// What the end of the VM does in order, and what other threads ask the VM meanwhile.
#include <jvmti.h>
#include <torvan/java/Failure.h>
#include <torvan/java/Vm.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

#include "java/CountedVm.h"
#include "java/Threads.h"
#include "java/VmState.h"
#include "java/What.h"

namespace tests {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using torvan::java::JoinVm;
using torvan::java::Misuse;
using torvan::java::Vm;
using torvan::java::VmEnd;
using torvan::java::detail::EndNow;
using torvan::java::detail::Env;
using torvan::java::detail::livingVm;
using torvan::java::detail::LockVm;
using torvan::java::detail::TheVm;
using torvan::java::detail::vmDeathIsSeen;
using torvan::java::detail::VmLock;
using torvan::java::detail::WatchVm;

jvmtiEventCallbacks s_callbacks;
jvmtiError JNICALL Notify(jvmtiEnv*, jvmtiEventMode, jvmtiEvent, jthread, ...) { return JVMTI_ERROR_NONE; }

// A VM without JVMTI, in which no other thread runs.
class VmEndOrderTest : public CountedVmTest {
 protected:
  VmEndOrderTest() {
    jvm.AnswerLookups();
    jvm.AnswerCheck();
    jvm.Return<&Jni::PushLocalFrame>(JNI_OK);
    jvm.Return<&Jni::PopLocalFrame>(jobject{});
    jvm.On<&Jni::CallStaticObjectMethodA>([this](jclass, jmethodID, const jvalue*) { return jvm.NewObject(); });
    jvm.On<&Jni::CallObjectMethodA>([this](jobject, jmethodID method, const jvalue*) {
      const bool isTrace = reinterpret_cast<const FakeMember*>(method)->name == "getStackTrace";
      return isTrace ? NewLocal() : jobject{};
    });
    jvm.Return<&Jni::GetArrayLength>(1);
    jvm.Return<&Jni::CallIntMethodA>(0);
    jvm.On<&Jni::NewObjectArray>([this](jsize, jclass, jobject) { return static_cast<jobjectArray>(NewLocal()); });
    jvm.On<&Invocation::GetEnv>([this](void** env, jint version) {
      if ((version & 0x30000000) != 0) {
        *env = m_hasTools ? &m_tools : nullptr;
        return m_hasTools ? JNI_OK : JNI_EVERSION;
      }
      ++asked;
      *env = isAttached ? jvm.Env() : nullptr;
      return isAttached ? JNI_OK : JNI_EDETACHED;
    });
    jvm.On<&Invocation::DetachCurrentThread>([this] {
      ++detached;
      return JNI_OK;
    });
  }
  ~VmEndOrderTest() override {
    TheVm().end.reset();
    vmDeathIsSeen = false;
  }

  // From now on the VM reports its death, and does so when it is destroyed.
  void ReportDeath() {
    m_table.SetEventCallbacks = [](jvmtiEnv*, const jvmtiEventCallbacks* callbacks, jint) {
      s_callbacks = *callbacks;
      return JVMTI_ERROR_NONE;
    };
    m_table.SetEventNotificationMode = &Notify;
    m_hasTools = true;
    WatchVm(jvm.Vm());
  }
  void Die() {
    if (m_hasTools) s_callbacks.VMDeath(&m_tools, jvm.Env());
  }

  // Ends the VM, and calls the functions while it is destroyed, before its death and after.
  VmEnd End(
      const std::function<void()>& before, const std::function<void()>& after = [] {}) {
    jvm.On<&Invocation::DestroyJavaVM>([this, before, after] {
      before();
      Die();
      after();
      return JNI_OK;
    });
    const VmLock lock = LockVm([] { return false; });
    return EndNow(jvm.Vm(), jvm.Env(), 0ms);
  }

  // Has a thread leave the VM, which takes a while after the VM is not to be used any more.
  void ExpectALeavingThreadIsWaitedFor() {
    std::atomic<bool> hasBegun{false};
    std::atomic<bool> isDone{false};
    std::thread leaving([&] {
      isAttached = true;
      Env();
      jvm.On<&Invocation::DetachCurrentThread>([&, own = std::this_thread::get_id()] {
        if (std::this_thread::get_id() != own) return JNI_OK;
        hasBegun = true;
        while (livingVm != nullptr) std::this_thread::yield();
        std::this_thread::sleep_for(50ms);
        isDone = true;
        return JNI_OK;
      });
    });
    while (!hasBegun) std::this_thread::yield();
    bool wasDone = false;
    const std::function<void()> see = [&] { wasDone = isDone; };
    const std::function<void()> nothing = [] {};
    EXPECT_EQ(m_hasTools ? End(nothing, see) : End(see), VmEnd::Destroyed);
    EXPECT_TRUE(wasDone);
    leaving.join();
  }

  std::atomic<int> asked{0};
  std::atomic<int> detached{0};

 private:
  bool m_hasTools = false;
  jvmtiInterface_1_ m_table{};
  jvmtiEnv m_tools{&m_table};
};

TEST_F(VmEndOrderTest, TheVmIsDestroyedByAThreadThatIsDetached) {
  EXPECT_EQ(End([] {}), VmEnd::Destroyed);
  const auto& calls = jvm.Calls();
  ASSERT_GE(calls.size(), 2u);
  EXPECT_EQ(calls[calls.size() - 2], "DetachCurrentThread");
  EXPECT_EQ(calls.back(), "DestroyJavaVM");
  EXPECT_EQ(livingVm, nullptr);
}

TEST_F(VmEndOrderTest, TheVmIsNotDestroyedWhileAThreadLeavesIt) { ExpectALeavingThreadIsWaitedFor(); }

TEST_F(VmEndOrderTest, TheVmDoesNotDieWhileAThreadLeavesIt) {
  ReportDeath();
  ExpectALeavingThreadIsWaitedFor();
}

TEST_F(VmEndOrderTest, AThreadThatEndsBeforeTheVmDiesIsDetached) {
  ReportDeath();
  std::atomic<bool> isHere{false};
  std::atomic<bool> mayEnd{false};
  std::thread other([&] {
    isAttached = true;
    Env();
    isHere = true;
    while (!mayEnd) std::this_thread::yield();
  });
  while (!isHere) std::this_thread::yield();
  const auto end = [&] {
    EXPECT_EQ(detached, 1) << "the thread that ends the VM";
    mayEnd = true;
    other.join();
    EXPECT_EQ(detached, 2);
    EXPECT_EQ(livingVm, jvm.Vm());
  };
  EXPECT_EQ(End(end, [] { EXPECT_EQ(livingVm, nullptr); }), VmEnd::Destroyed);
}

TEST_F(VmEndOrderTest, AThreadThatEndsAVmThatIsBeingDestroyedDoesNotAskItAndFails) {
  Vm vm = JoinVm(jvm.Vm());
  EXPECT_EQ(End([&] {
              std::thread([&] {
                asked = 0;
                isAttached = false;
                EXPECT_EQ(WhatOf<Misuse>([&] { vm.End(); }), "The Java VM has ended");
                EXPECT_EQ(asked, 0);
              }).join();
            }),
            VmEnd::Destroyed);
}

TEST_F(VmEndOrderTest, AThreadThatEndsAVmThatHasDiedDoesNotAskItAndWaits) {
  ReportDeath();
  Vm vm = JoinVm(jvm.Vm());
  std::thread other;
  EXPECT_EQ(End([] {},
                [&] {
                  asked = 0;
                  other = std::thread([&] {
                    isAttached = true;
                    EXPECT_EQ(vm.End(), VmEnd::Destroyed);
                  });
                  std::this_thread::sleep_for(20ms);
                  EXPECT_EQ(asked, 0);
                }),
            VmEnd::Destroyed);
  other.join();
}

TEST_F(VmEndOrderTest, AVmThatWasToReportItsDeathAndDidNotIsNotAskedAfterItsEnd) {
  vmDeathIsSeen = true;
  EXPECT_EQ(End([] {}), VmEnd::Destroyed);
  EXPECT_EQ(livingVm, nullptr);
}

// Until then it is asked once.
TEST_F(VmEndOrderTest, AThreadThatEndsAVmBeforeItDiesAsksItOnce) {
  ReportDeath();
  Vm vm = JoinVm(jvm.Vm());
  std::thread other;
  const auto end = [&] {
    asked = 0;
    other = std::thread([&] {
      isAttached = false;
      EXPECT_EQ(vm.End(), VmEnd::Destroyed);
    });
    while (asked == 0) std::this_thread::yield();
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(asked, 1);
  };
  EXPECT_EQ(End(end), VmEnd::Destroyed);
  other.join();
}

}  // namespace
}  // namespace tests
