// The end of a VM, which only the host can cause.
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <thread>

#include "fakes/DebugOut.h"
#include "fakes/Failure.h"
#include "realvm/OwnProcess.h"

namespace tests {
namespace {

using torvan::jni::CJavaClass;
using torvan::jni::CJavaObject;
using torvan::jni::CJavaVm;
using torvan::jni::CJavaVmException;

std::atomic<jint> saidAtTheEnd;

jint JNICALL HearTheEnd(JNIEnv*, jclass, jint number) {
  saidAtTheEnd = number;
  return 0;
}

// A VM in which a shutdown hook of Java will say 7.
CJavaVm VmWithShutdownHook() {
  const CJavaVm vm = Runtime().CreateJavaVm(FixtureOptions(), false);
  const CJavaClass work = vm.FindClass("fixture/Work");
  char name[] = "callBack";
  char signature[] = "(I)I";
  const JNINativeMethod method = {name, signature, reinterpret_cast<void*>(&HearTheEnd)};
  EXPECT_EQ(vm.Attach()->RegisterNatives(work, &method, 1), JNI_OK);
  work.CallStaticVoidMethod("callBackAtEnd", "(I)V", jint{7});
  return vm;
}

void End(const CJavaVm& vm) {
  JavaVM* raw = nullptr;
  vm.Attach()->GetJavaVM(&raw);
  raw->DestroyJavaVM();
}

TEST(EndTest, AProcessThatEndsRunsNoShutdownHooks) {
  InOwnProcess(
      [] {
        std::atexit([] { std::_Exit(saidAtTheEnd == 0 ? 41 : 99); });
        VmWithShutdownHook();
      },
      41);
}

TEST(EndTest, TheHostEndsTheVmAndTheShutdownHooksRun) {
  InOwnProcess([] {
    const CJavaVm vm = VmWithShutdownHook();
    End(vm);
    EXPECT_EQ(saidAtTheEnd, 7);
  });
}

TEST(EndTest, HandlesThatAreLeftOnlyPrintThatTheyCannotAttach) {
  InOwnProcess([] {
    const CJavaVm vm = VmWithShutdownHook();
    const DebugOut debugOut;
    {
      const CJavaClass work = vm.FindClass("fixture/Work");
      const CJavaObject object = work.NewObject("()V");
      const CJavaObject copy = object;
      End(vm);
      const auto failure = Throws<CJavaVmException>("jni/JavaVm", AnyLine,
                                                    "Failed ot attach the current thread to the underlying Java VM.");
      EXPECT_EQ(FailureOf([&] { copy.CallIntMethod("total", "()I"); }), failure);
      EXPECT_EQ(debugOut.Text(), "");
    }
    const std::string line =
        "torvan::jni::CJavaVmException: Failed ot attach the current thread to the underlying Java VM. at jni/JavaVm:";
    const std::string& printed = debugOut.Text();
    const std::size_t second = printed.find(line, 1);
    EXPECT_EQ(printed.find(line), 0u) << printed;
    EXPECT_NE(second, std::string::npos) << printed;
    EXPECT_EQ(printed.find(line, second + 1), std::string::npos) << "a line for each object, none for each handle";
  });
}

// A thread that is detached just while the VM ends may wait for ever for a lock that the VM's own thread has taken with
// it (HotSpot 17). So this test does not wait for its thread, and keeps the VM's library loaded for it.
TEST(EndTest, TheEndWaitsForThreadsThatAreAttached) {
  InOwnProcess([] {
    static const CJavaVm& vm = *new CJavaVm(VmWithShutdownHook());
    static std::atomic<bool> attached{false};
    static std::atomic<bool> detached{false};
    std::thread([] {
      vm.Attach();
      attached = true;
      std::this_thread::sleep_for(std::chrono::milliseconds(300));
      detached = true;
      vm.Detach();
    }).detach();
    while (!attached) std::this_thread::sleep_for(std::chrono::milliseconds(1));
    End(vm);
    EXPECT_TRUE(detached);
    EXPECT_EQ(saidAtTheEnd, 7);
  });
}

}  // namespace
}  // namespace tests
