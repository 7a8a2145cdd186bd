#include "java/runtimes/BinaryHeader.h"

#include <cstdint>

namespace torvan::java::detail {
namespace {

struct Cpu {
  std::uint32_t machine;
  bool is64Bit;
  const char* name;
};

// By e_machine and class of an ELF file. x32 is the 32-bit class of x86_64, and as foreign to it as x86.
// clang-format off
constexpr Cpu ElfCpus[] = {
    {62,  true,  "x86_64"},  {183, true, "aarch64"}, {3,  false, "x86"},   {40,  false, "arm"},
    {243, true,  "riscv64"}, {21,  true, "ppc64"},   {22, true,  "s390x"}, {258, true,  "loongarch64"},
    {62,  false, "x32"},
};
// By the machine of a PE file, which implies the width.
constexpr Cpu PeCpus[] = {
    {0x8664, true, "x86_64"}, {0xAA64, true, "aarch64"}, {0x14C, false, "x86"}, {0x1C4, false, "arm"},
};
// clang-format on

template <std::size_t N>
std::string NameOf(const Cpu (&cpus)[N], std::uint32_t machine, bool is64Bit) {
  for (const Cpu& cpu : cpus) {
    if (cpu.machine == machine && cpu.is64Bit == is64Bit) return cpu.name;
  }
  constexpr const char* HexDigits = "0123456789ABCDEF";
  std::string name = "machine 0x";
  for (int shift = 12; shift >= 0; shift -= 4) name += HexDigits[machine >> shift & 0xF];
  return name;
}

std::uint32_t ByteAt(std::string_view head, std::size_t at) { return static_cast<unsigned char>(head[at]); }

// Nothing when the number does not lie within the head.
std::optional<std::uint32_t> Number(std::string_view head, std::size_t at, std::size_t size, bool isLittleEndian) {
  if (at > head.size() || head.size() - at < size) return std::nullopt;
  std::uint32_t number = 0;
  for (std::size_t i = 0; i < size; ++i) {
    number = number << 8 | ByteAt(head, isLittleEndian ? at + size - 1 - i : at + i);
  }
  return number;
}

}  // namespace

std::optional<std::string> CpuOfElf(std::string_view head) {
  constexpr std::string_view Magic =
      "\x7F"
      "ELF";
  constexpr std::size_t ClassAt = 4;
  constexpr std::size_t DataAt = 5;
  constexpr std::size_t TypeAt = 16;
  constexpr std::size_t MachineAt = 18;
  constexpr std::uint32_t SharedObject = 3;
  if (head.size() < TypeAt || head.substr(0, Magic.size()) != Magic) return std::nullopt;
  const std::uint32_t elfClass = ByteAt(head, ClassAt);
  const std::uint32_t data = ByteAt(head, DataAt);
  if (elfClass < 1 || elfClass > 2 || data < 1 || data > 2) return std::nullopt;
  const bool isLittleEndian = data == 1;
  const auto type = Number(head, TypeAt, 2, isLittleEndian);
  const auto machine = Number(head, MachineAt, 2, isLittleEndian);
  if (type != SharedObject || !machine) return std::nullopt;
  std::string name = NameOf(ElfCpus, *machine, elfClass == 2);
  if (name == "ppc64" && isLittleEndian) name = "ppc64le";
  return name;
}

std::optional<std::string> CpuOfPe(std::string_view head) {
  constexpr std::size_t OffsetAt = 0x3C;
  constexpr std::uint32_t Signature = 0x4550;  // "PE", 0, 0
  if (head.substr(0, 2) != "MZ") return std::nullopt;
  const auto offset = Number(head, OffsetAt, 4, true);
  if (!offset || Number(head, *offset, 4, true) != Signature) return std::nullopt;
  const auto machine = Number(head, std::size_t{*offset} + 4, 2, true);
  if (!machine) return std::nullopt;
  return NameOf(PeCpus, *machine, *machine == 0x8664 || *machine == 0xAA64);
}

#if defined(__x86_64__) || defined(_M_X64)
const char* const OwnCpu = "x86_64";
#elif defined(__aarch64__) || defined(_M_ARM64)
const char* const OwnCpu = "aarch64";
#else
#error "torvan::java is for x86_64 and aarch64."
#endif

}  // namespace torvan::java::detail
