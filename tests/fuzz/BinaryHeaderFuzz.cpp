// Headers of ELF and PE files.
#include "fuzz/Fuzz.h"
#include "java/runtimes/BinaryHeader.h"

using tests::Require;
using torvan::java::detail::CpuOfElf;
using torvan::java::detail::CpuOfPe;

namespace {

template <typename F>
void Check(F cpuOf, std::string_view head) {
  // A copy of exactly this size, so that the sanitizer sees any read past its end.
  const std::string exact(head);
  const auto cpu = cpuOf(exact);
  if (!cpu) return;
  Require(!cpu->empty(), "a CPU has a name");
  Require(cpuOf(exact + std::string(64, '\xFF')) == cpu, "what comes after the header does not count");
}

}  // namespace

int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size) {
  const std::string_view head = tests::Input(data, size);
  Check(CpuOfElf, head);
  Check(CpuOfPe, head);
  Require(!CpuOfElf(head) || !CpuOfPe(head), "a file has one format");
  return 0;
}
