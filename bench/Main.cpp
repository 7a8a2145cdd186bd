// What the library costs a host with a Java VM in its process, against the same by hand.
#include <torvan/Torvan.h>

#include <cstdio>

#include "Host.h"

int main(int argc, char** argv) try {
  torvan::Initialize();
  return bench::Run(argc, argv, "bench_host", [] {
    bench::AddCalls();
    bench::AddObjects();
    bench::AddTexts();
    bench::AddExceptions();
    bench::AddContainers();
    bench::AddJavaMembers();
    bench::AddJavaTexts();
    bench::AddJavaArrays();
    bench::AddJavaCallbacks();
    bench::AddJavaRuntimes();
    bench::AddJavaErrors();  // last: they change what the VM answers to one look-up
  });
} catch (const std::exception& failure) {
  std::fprintf(stderr, "bench_host: %s\n", failure.what());
  return 2;
}
