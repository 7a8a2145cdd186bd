// Threads of the host in one VM.
#include <set>
#include <thread>

#include "fakes/Failure.h"
#include "realvm/RealVmTest.h"

namespace tests {
namespace {

using torvan::jni::CJavaClass;
using torvan::jni::CJavaObject;
using torvan::jni::CJavaString;
using torvan::jni::CJavaVm;
using torvan::jni::CJavaVmException;

class ThreadTest : public RealVmTest {
 protected:
  // Whether the calling thread is attached; the VM itself is asked.
  bool IsAttached() {
    void* found = nullptr;
    return m_javaVm->GetEnv(&found, JNI_VERSION_1_6) == JNI_OK;
  }

 private:
  static JavaVM* JavaVmOf(JNIEnv* env) {
    JavaVM* javaVm = nullptr;
    EXPECT_EQ(env->GetJavaVM(&javaVm), JNI_OK);
    return javaVm;
  }

  JavaVM* const m_javaVm = JavaVmOf(env);
};

TEST_F(ThreadTest, AttachingTwiceReturnsOneEnvironmentAndNeedsOneDetach) {
  std::thread([this] {
    EXPECT_FALSE(IsAttached());
    JNIEnv* const first = vm.Attach();
    EXPECT_NE(first, env);
    EXPECT_EQ(vm.Attach(), first);
    EXPECT_TRUE(IsAttached());
    vm.Detach();
    EXPECT_FALSE(IsAttached());
  }).join();
}

TEST_F(ThreadTest, EveryOperationAttachesItsThreadAndNoneDetachesIt) {
  std::thread([this] {
    vm.FindClass("java/lang/Object");
    EXPECT_TRUE(IsAttached());
    vm.Detach();
    EXPECT_FALSE(IsAttached());
  }).join();
}

// For this VM it is no failure to detach a thread that is not attached.
TEST_F(ThreadTest, DetachingAThreadThatIsNotAttachedDoesNothing) {
  std::thread([this] {
    EXPECT_EQ(FailureOf([this] { vm.Detach(); }), Failure());
    EXPECT_FALSE(IsAttached());
    vm.Attach();
    vm.Detach();
    EXPECT_EQ(FailureOf([this] { vm.Detach(); }), Failure());
  }).join();
}

TEST_F(ThreadTest, AThreadThatIsAttachedAgainIsANewOneToJava) {
  const CJavaClass work = vm.FindClass("fixture/Work");
  std::thread([&] {
    EXPECT_EQ(work.CallStaticIntMethod("calls", "()I"), 1);
    EXPECT_EQ(work.CallStaticIntMethod("calls", "()I"), 2);
    vm.Detach();
    EXPECT_EQ(work.CallStaticIntMethod("calls", "()I"), 1);
    vm.Detach();
  }).join();
}

// Each thread has its own VM handles, because the reference counts of a shared one are not atomic. The
// object is shared, because no thread copies it.
TEST_F(ThreadTest, EightThreadsAttachCallAndDetachAtTheSameTime) {
  constexpr int threadCount = 8;
  constexpr int rounds = 50;
  const CJavaObject work = vm.NewObject("fixture/Work", "()V");
  mirel::util::CVector<CJavaVm> vms(0, 1);
  {
    const torvan::jni::CDynamicJavaRuntime runtime = Runtime();
    for (int i = 0; i < threadCount; ++i) ASSERT_EQ(runtime.GetCreatedJavaVms(vms), 1u);
  }
  std::vector<std::set<jint>> totals(threadCount);
  std::vector<std::string> texts(threadCount);
  std::vector<jlong> sums(threadCount);
  std::vector<std::thread> threads;
  for (int i = 0; i < threadCount; ++i) {
    threads.emplace_back([&, i] {
      const auto index = static_cast<std::size_t>(i);
      const CJavaVm& own = vms[static_cast<unsigned int>(i)];
      for (int round = 0; round < rounds; ++round) {
        totals[index].insert(work.CallIntMethod("add", "(I)I", 1));
        {
          const CJavaObject builder = own.NewObject("java/lang/StringBuilder", "()V");
          builder.CallObjectMethod("append", "(I)Ljava/lang/StringBuilder;", i);
          builder.CallObjectMethod("append", "(I)Ljava/lang/StringBuilder;", round);
          texts[index] += Utf8(CJavaString(builder.CallObjectMethod("toString", "()Ljava/lang/String;"))) + " ";
        }
        sums[index] += own.FindClass("fixture/Work").CallStaticLongMethod("sum", "(II)J", i, i + round);
        own.Detach();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();

  EXPECT_EQ(work.CallIntMethod("total", "()I"), threadCount * rounds);
  std::set<jint> all;
  for (int i = 0; i < threadCount; ++i) {
    const auto index = static_cast<std::size_t>(i);
    EXPECT_EQ(totals[index].size(), static_cast<std::size_t>(rounds));
    all.insert(totals[index].begin(), totals[index].end());
    std::string text;
    jlong sum = 0;
    for (int round = 0; round < rounds; ++round) {
      text += std::to_string(i) + std::to_string(round) + " ";
      for (int number = i; number <= i + round; ++number) sum += number;
    }
    EXPECT_EQ(texts[index], text);
    EXPECT_EQ(sums[index], sum);
  }
  EXPECT_EQ(all.size(), static_cast<std::size_t>(threadCount * rounds));
  EXPECT_EQ(*all.rbegin(), threadCount * rounds);
}

TEST_F(ThreadTest, AJavaExceptionIsPendingInItsOwnThreadOnly) {
  std::thread([this] {
    EXPECT_THROW(vm.FindClass("no/Such"), CJavaVmException);
    EXPECT_EQ(TakePending(vm.Attach()), "java.lang.NoClassDefFoundError");
    EXPECT_THROW(vm.FindClass("no/Such"), CJavaVmException);
    vm.Detach();
  }).join();
  EXPECT_EQ(TakePending(env), "");
}

Failure failureInCallBack;

jint JNICALL DetachInCallBack(JNIEnv*, jclass, jint number) {
  failureInCallBack = FailureOf([] { Vm().Detach(); });
  return number + 1;
}

// A thread cannot detach while it is in a call from Java.
TEST_F(ThreadTest, AThreadInsideJavaCannotBeDetached) {
  const CJavaClass work = vm.FindClass("fixture/Work");
  char name[] = "callBack";
  char signature[] = "(I)I";
  const JNINativeMethod method = {name, signature, reinterpret_cast<void*>(&DetachInCallBack)};
  ASSERT_EQ(env->RegisterNatives(work, &method, 1), JNI_OK);
  EXPECT_EQ(work.CallStaticIntMethod("callBack", "(I)I", 41), 42);
  EXPECT_EQ(failureInCallBack,
            Throws<CJavaVmException>("jni/JavaVm", AnyLine,
                                     "Failed to detach the curretn thread from the underlying Java VM."));
  EXPECT_TRUE(IsAttached());
}

}  // namespace
}  // namespace tests
