// The texts of torvan::java once more, in a program that is compiled in C++23 with the library's own source of them.
#include <torvan/Torvan.h>

#include <cstdio>

#include "Host.h"

int main(int argc, char** argv) try {
  torvan::Initialize();
  return bench::Run(argc, argv, "bench_texts_23", [] { bench::AddJavaTexts(); });
} catch (const std::exception& failure) {
  std::fprintf(stderr, "bench_texts_23: %s\n", failure.what());
  return 2;
}
