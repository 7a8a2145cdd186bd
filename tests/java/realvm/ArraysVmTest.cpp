// Arrays in VMs of other collectors than the tests' one VM has.
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

using namespace std::chrono_literals;

constexpr java::StaticMethod<std::vector<jbyte>(java::Ref<java::Array<jbyte>>)> Same{"fixture/Arrays", "same"};

// These collectors wait for whoever has an array's own memory open.
void ReadAndAllocate(const char* collector) {
  java::VmSettings settings = FixtureSettings();
  const java::Vm vm = java::StartVm(settings.Option(collector).MaximumHeap("128m"));
  const java::Global<java::Array<jbyte>> array(java::NewArray<jbyte>(400000));
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
  for (int i = 0; i < 4; ++i) repeat([&array] { Same(array); });
  for (int i = 0; i < 3; ++i) repeat([] { java::NewArray<jbyte>(100000); });
  std::this_thread::sleep_for(2s);
  over = true;
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, 0);
}

TEST(ArraysVmTest, WhileManyReadLargeArraysOthersFindMemory) {
  for (const char* const collector : {"-XX:+UseSerialGC", "-XX:+UseParallelGC"}) {
    InProcessOfItsOwn([collector] { ReadAndAllocate(collector); });
  }
}

}  // namespace
}  // namespace tests
