// What a VM calls back when it exits, aborts and prints.
#include <cstdlib>

#include "realvm/OwnProcess.h"

namespace tests {
namespace {

using testing::HasSubstr;
using torvan::jni::CJavaVm;
using namespace torvan::jni::options;

void CallSystemExit(const CJavaVm& vm, jint code) {
  vm.FindClass("java/lang/System").CallStaticVoidMethod("exit", "(I)V", code);
  ADD_FAILURE() << "System.exit returned";
}

TEST(HooksTest, TheExitHookSeesTheExitCode) {
  InOwnProcess(
      [] {
        const CExitHook hook([](int code) { std::_Exit(code == 42 ? 17 : 0); });
        CallSystemExit(Runtime().CreateJavaVm(With(hook), false), 42);
      },
      17);
}

TEST(HooksTest, AfterAnExitHookThatReturnsTheProcessExitsNevertheless) {
  InOwnProcess(
      [] {
        static int seen = 0;
        std::atexit([] {
          if (seen != 43) std::_Exit(99);
        });
        const CExitHook hook([](int code) { seen = code; });
        CallSystemExit(Runtime().CreateJavaVm(With(hook), false), 43);
      },
      43);
}

TEST(HooksTest, WithoutAnExitHookSystemExitEndsTheProcess) {
  InOwnProcess([] { CallSystemExit(Runtime().CreateJavaVm(FixtureOptions(), false), 44); }, 44);
}

// A heap that starts larger than its limit ends the VM and the process; the hook runs last.
TEST(HooksTest, TheAbortHookIsCalledForAHeapThatCannotBe) {
  InOwnProcess(
      [] {
        COptions options =
            With(CAbortHook([] { std::_Exit(VmText().find("Initial heap size") != std::string::npos ? 18 : 0); }));
        options.AddOption(CVfprintfHook(&TakeVmText));
        options.AddOption(CCustomOption(RX_TEXT("-Xms512m")));
        options.AddOption(CCustomOption(RX_TEXT("-Xmx64m")));
        Runtime().CreateJavaVm(options, false);
        ADD_FAILURE() << "the VM started";
      },
      18);
}

TEST(HooksTest, TheVfprintfHookReceivesWhatTheVmPrints) {
  InOwnProcess([] {
    COptions options = With(CVfprintfHook(&TakeVmText));
    options.AddOption(CCustomOption(RX_TEXT("-XX:+PrintFlagsFinal")));
    Runtime().CreateJavaVm(options, false);
    EXPECT_THAT(VmText(), HasSubstr("PrintFlagsFinal"));
  });
}

TEST(HooksTest, TheVfprintfHookReceivesTheHostsOwnStream) {
  InOwnProcess([] {
    static FILE* received = nullptr;
    COptions options = With(CVfprintfHook([](FILE* stream, const char*, va_list) {
      received = stream;
      return 0;
    }));
    options.AddOption(CCustomOption(RX_TEXT("-XX:+PrintFlagsFinal")));
    Runtime().CreateJavaVm(options, false);
    EXPECT_EQ(received, stdout);
  });
}

TEST(HooksTest, AllThreeHooksGoTogether) {
  InOwnProcess(
      [] {
        COptions options = With(CAbortHook([] { std::_Exit(1); }));
        options.AddOption(CExitHook(
            [](int code) { std::_Exit(VmText().find("PrintFlagsFinal") != std::string::npos ? code + 1 : 0); }));
        options.AddOption(CVfprintfHook(&TakeVmText));
        options.AddOption(CCustomOption(RX_TEXT("-XX:+PrintFlagsFinal")));
        CallSystemExit(Runtime().CreateJavaVm(options, false), 45);
      },
      46);
}

}  // namespace
}  // namespace tests
