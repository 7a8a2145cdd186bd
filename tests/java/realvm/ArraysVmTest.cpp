// Arrays in VMs of other collectors than the tests' one VM has, and in VMs that end.
#include <atomic>
#include <chrono>
#include <fstream>
#include <thread>
#include <vector>

#include "java/realvm/CallbackTags.h"
#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

using namespace std::chrono_literals;

// These collectors wait until no thread has an array's own memory open, and what is allocated meanwhile may fail.
void ReadAndAllocate(const char* collector, std::size_t size) {
  java::VmSettings settings = FixtureSettings();
  const java::Vm vm = java::StartVm(settings.Option(collector).MaximumHeap("32m"));
  const java::Global<java::Array<jbyte>> array(java::NewArray<jbyte>(size));
  std::atomic<bool> over{false};
  std::atomic<int> failures{0};
  std::vector<std::thread> threads;
  const auto repeat = [&](const auto& operation) {
    threads.emplace_back([&over, &failures, operation] {
      while (!over) {
        try {
          operation();
        } catch (const java::Error&) {
          ++failures;
        }
      }
    });
  };
  for (int i = 0; i < 8; ++i) repeat([&array] { java::Copy<std::vector<jbyte>>(array); });
  for (int i = 0; i < 8; ++i) repeat([] { java::NewArray<jbyte>(1000000); });
  std::this_thread::sleep_for(1s);
  over = true;
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
}

TEST(ArraysVmTest, WhileManyReadArraysOthersFindMemory) {
  for (const char* const collector : {"-XX:+UseSerialGC", "-XX:+UseParallelGC"}) {
    for (const std::size_t size : {std::size_t{8192}, std::size_t{400000}}) {
      InOwnProcess([=] { ReadAndAllocate(collector, size); });
    }
  }
}

// A reference that is dropped in a critical scope calls JNI, and cannot throw.
TEST(ArraysVmTest, AReferenceThatIsDroppedWhileCriticalElementsAreOpenIsDetected) {
  const auto drop = [] {
    const java::Vm vm = java::StartVm(FixtureSettings());
    const auto array = java::NewArray<jint>(1);
    java::Local<java::String> text = java::NewString("text");
    const java::CriticalElements<jint> elements(array);
    text.Reset();
  };
#ifdef NDEBUG
  static_cast<void>(drop);
  GTEST_SKIP() << "this build has no assertions";
#else
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_DEATH(drop(), "a reference is dropped while CriticalElements are open in this thread");
#endif
}

const std::string Ended = "The Java VM has ended";

TEST(ArraysVmTest, ElementsAreRefusedInAShutdownHook) {
  const Note note;
  InOwnProcess([&] {
    java::Vm vm = java::StartVm(FixtureSettings());
    const java::Global<java::Array<jint>> array(java::NewArray<jint>(3));
    RunAtTheEnd([array, path = note.Path()] {
      std::ofstream(path) << WhatOf<java::Misuse>([&] { java::Elements<jint>{array}; }) << "; "
                          << WhatOf<java::Misuse>([&] { java::CriticalElements<jint>{array}; });
    });
    EXPECT_EQ(vm.End(), java::VmEnd::Destroyed);
    EXPECT_EQ(note.Text(), Ended + "; " + Ended);
  });
}

// Java ends the VM, and the layer calls until it is gone.
TEST(ArraysVmTest, ElementsAreUsedInAShutdownHookOfSystemExit) {
  const Note note;
  Expected expected;
  expected.exitCode = 7;
  InOwnProcess(
      [&] {
        const java::Vm vm = java::StartVm(FixtureSettings());
        const java::Global<java::Array<jint>> array(java::NewArray<jint>(2));
        RunAtTheEnd([array, path = note.Path()] {
          { java::Elements<jint>(array).At(0) = 1; }
          { java::CriticalElements<jint>(array).At(1) = 2; }
          constexpr java::StaticMethod<std::vector<jint>(java::Ref<java::Array<jint>>)> same{"fixture/Arrays", "same"};
          const std::vector<jint> values = same(array);
          std::ofstream(path) << values.at(0) << " " << values.at(1);
        });
        CallStaticInt("fixture/Vms", "exit", "(I)I", 7);
      },
      expected);
  EXPECT_EQ(note.Text(), "1 2");
}

}  // namespace
}  // namespace tests
