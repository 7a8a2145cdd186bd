// Functions of the host that a VM calls: for what it prints, and when it ends the process.
#include <fstream>
#include <mutex>
#include <optional>

#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

using java::StartVm;
using testing::AllOf;
using testing::HasSubstr;

TEST(VmStartHooksTest, WhatTheVmPrintsComesToTheHost) {
  InOwnProcess([] {
    static std::mutex lock;
    static std::string printed;
    const java::Vm vm = StartVm(FixtureSettings()
                                    .Option(BeforeJava9() ? "-XX:+PrintVMOptions" : "-Xlog:startuptime")
                                    .OnOutput([](std::string_view text) {
                                      const std::lock_guard<std::mutex> guard(lock);
                                      printed += text;
                                    })
                                    .Verbose("class"));
    const std::lock_guard<std::mutex> guard(lock);
    EXPECT_THAT(printed, HasSubstr("java.lang.Object"));
  });
}

// Java asks the process to end; the VM is gone for what is destroyed then.
TEST(VmStartHooksTest, AnExitByJavaCallsTheHostAndEndsWithItsCode) {
  InOwnProcess(
      [] {
        static std::optional<java::Vm> vm;  // destroyed while the process exits
        static java::Global<> left;
        vm.emplace(StartVm(FixtureSettings().OnExit([](jint code) {
          std::fprintf(stderr, "exit %d, thread %s\n", static_cast<int>(code),
                       WhatOf<java::Misuse>([] { const java::Thread thread; }).c_str());
        })));
        left = java::Global<>(NewText("kept"));
        CallStaticInt("fixture/Vms", "exit", "(I)I", 7);
      },
      {7, HasSubstr("exit 7, thread The Java VM has ended")});
}

TEST(VmStartHooksTest, AnAbortCallsTheHost) {
  InOwnProcess(
      [] {
        static const char* said = "too late";
        const java::Vm vm = StartVm(FixtureSettings().OnAbort([] {
          std::fprintf(stderr, "aborts: %s\n", said);
          std::_Exit(18);  // no core is dumped
        }));
        said = "in time";
        java::detail::Env()->FatalError("as the test wants");
      },
      {18, HasSubstr("aborts: in time")});
}

// What ends the process inside the VM and cannot be checked before.
TEST(VmStartHooksTest, AVmThatEndsTheProcessPrintsItsReasonAndCallsTheHost) {
  const Note noAgent;
  std::ofstream(noAgent.Path()) << "no agent";
  InOwnProcess(
      [&] {
        const java::Vm vm = StartVm(FixtureSettings().Agent(noAgent.Path()).OnExit([](jint code) {
          std::fprintf(stderr, "exit function: %d\n", static_cast<int>(code));
        }));
      },
      {1, AllOf(HasSubstr("Could not find agent library"), HasSubstr("exit function: 1"))});
}

}  // namespace
}  // namespace tests
