// How the VM is joined, and who waits while another thread starts or ends it.
#include <torvan/java/Failure.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <thread>

#include "java/CountedVm.h"
#include "java/VmState.h"
#include "java/What.h"

namespace tests {
namespace {

using torvan::java::StartFailure;
using torvan::java::detail::LockVm;
using torvan::java::detail::VmLock;

std::atomic<int> s_asked{0};
std::atomic<bool> s_isRefused{false};

void WaitFor(const std::function<bool()>& isDone) {
  for (int i = 0; i < 10000 && !isDone(); ++i) std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

// The end that another thread begins while it has the lock may wait for this one.
TEST(VmTest, AThreadThatWaitsAsksAgainWhetherItMustNot) {
  VmLock lock = LockVm([] { return false; });
  EXPECT_TRUE(lock);
  std::atomic<bool> isBack{false};
  std::thread other([&] {
    EXPECT_FALSE(LockVm([] {
      ++s_asked;
      return s_isRefused.load();
    }));
    isBack = true;
  });
  WaitFor([] { return s_asked > 1; });
  EXPECT_FALSE(isBack);
  s_isRefused = true;
  WaitFor([&] { return isBack.load(); });
  EXPECT_TRUE(isBack);
  lock.unlock();
  other.join();
}

using VmJoinTest = CountedVmTest;

TEST_F(VmJoinTest, AJoinThatFailsDetachesTheThreadThatItAttached) {
  torvan::java::detail::UseVm(nullptr);
  jvm.On<&Invocation::AttachCurrentThreadAsDaemon>([this](void** env, void*) {
    *env = jvm.Env();
    isAttached = true;
    return JNI_OK;
  });
  jvm.On<&Invocation::DetachCurrentThread>([] {
    isAttached = false;
    return JNI_OK;
  });
  jvm.AnswerCheck();
  jvm.On<&Jni::ExceptionClear>([] {});
  jvm.On<&Jni::FindClass>([](const char*) { return jclass{}; });
  const auto join = [this] { return WhatOf<StartFailure>([this] { torvan::java::JoinVm(jvm.Vm()); }); };
  std::thread([&] {
    isAttached = false;
    EXPECT_EQ(join(), "This Java VM has no java/lang/Class");
    EXPECT_FALSE(isAttached);
    isAttached = true;
    EXPECT_EQ(join(), "This Java VM has no java/lang/Class");
    EXPECT_TRUE(isAttached) << "other code has attached it";
  }).join();
}

TEST_F(VmJoinTest, AThreadThatIsRefusedSaysWhy) {
  torvan::java::detail::UseVm(nullptr);
  std::thread([this] {
    isAttached = false;
    jvm.Return<&Invocation::AttachCurrentThreadAsDaemon>(JNI_ENOMEM);
    EXPECT_EQ(WhatOf<StartFailure>([this] { torvan::java::JoinVm(jvm.Vm()); }),
              "The Java VM does not attach this thread: there is not enough memory (JNI_ENOMEM)");
    jvm.Return<&Invocation::AttachCurrentThreadAsDaemon>(JNI_ERR);
    EXPECT_EQ(WhatOf<StartFailure>([this] { torvan::java::JoinVm(jvm.Vm()); }),
              "The Java VM does not attach this thread: it refuses the thread (JNI_ERR)");
  }).join();
}

}  // namespace
}  // namespace tests
