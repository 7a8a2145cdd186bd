// Microseconds that a process spends on loading a library and on one function of it: bench_load LIBRARY [FUNCTION]
#include <dlfcn.h>

#include <chrono>
#include <cstdio>

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fputs("usage: bench_load LIBRARY [FUNCTION]\n", stderr);
    return 2;
  }
  const auto begin = std::chrono::steady_clock::now();
  void* const library = dlopen(argv[1], RTLD_NOW);
  void* const function = library != nullptr && argc > 2 ? dlsym(library, argv[2]) : nullptr;
  if (library == nullptr || (argc > 2 && function == nullptr)) {
    std::fprintf(stderr, "bench_load: %s\n", dlerror());
    return 1;
  }
  if (function != nullptr && reinterpret_cast<int (*)()>(function)() != 1) {
    std::fprintf(stderr, "bench_load: %s does not return 1\n", argv[2]);
    return 1;
  }
  const std::chrono::duration<double, std::micro> spent = std::chrono::steady_clock::now() - begin;
  std::printf("%.1f\n", spent.count());
  return 0;
}
