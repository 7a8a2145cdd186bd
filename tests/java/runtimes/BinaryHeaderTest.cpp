#include "java/runtimes/BinaryHeader.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "java/runtimes/Headers.h"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

using Cpu = std::optional<std::string>;

TEST(BinaryHeaderTest, ElfTellsItsCpu) {
  EXPECT_EQ(CpuOfElf(ElfHeader(62)), "x86_64");
  EXPECT_EQ(CpuOfElf(ElfHeader(183)), "aarch64");
  EXPECT_EQ(CpuOfElf(ElfHeader(3, 1)), "x86");
  EXPECT_EQ(CpuOfElf(ElfHeader(62, 1)), "x32");
  EXPECT_EQ(CpuOfElf(ElfHeader(40, 1)), "arm");
  EXPECT_EQ(CpuOfElf(ElfHeader(243)), "riscv64");
  EXPECT_EQ(CpuOfElf(ElfHeader(258)), "loongarch64");
  EXPECT_EQ(CpuOfElf(ElfHeader(21)), "ppc64le");
  EXPECT_EQ(CpuOfElf(ElfHeader(21, 2, 2)), "ppc64");
  EXPECT_EQ(CpuOfElf(ElfHeader(22, 2, 2)), "s390x");
  EXPECT_EQ(CpuOfElf(ElfHeader(0xBEEF)), "machine 0xBEEF");
  EXPECT_EQ(CpuOfElf(ElfHeader(3)), "machine 0x0003");  // no such width
}

TEST(BinaryHeaderTest, ElfThatIsNoSharedLibraryHasNoCpu) {
  EXPECT_EQ(CpuOfElf(ElfHeader(62, 2, 1, 1)), std::nullopt);  // an object file
  EXPECT_EQ(CpuOfElf(ElfHeader(62, 2, 1, 2)), std::nullopt);  // a program at a fixed address
  EXPECT_EQ(CpuOfElf(ElfHeader(62, 0)), std::nullopt);
  EXPECT_EQ(CpuOfElf(ElfHeader(62, 3)), std::nullopt);
  EXPECT_EQ(CpuOfElf(ElfHeader(62, 2, 0)), std::nullopt);
  EXPECT_EQ(CpuOfElf(ElfHeader(62, 2, 3)), std::nullopt);
  EXPECT_EQ(CpuOfElf("\x7F"
                     "ELG" +
                     ElfHeader(62).substr(4)),
            std::nullopt);
}

TEST(BinaryHeaderTest, PeTellsItsCpu) {
  EXPECT_EQ(CpuOfPe(PeHeader(0x8664)), "x86_64");
  EXPECT_EQ(CpuOfPe(PeHeader(0xAA64)), "aarch64");
  EXPECT_EQ(CpuOfPe(PeHeader(0x14C)), "x86");
  EXPECT_EQ(CpuOfPe(PeHeader(0x1C4)), "arm");
  EXPECT_EQ(CpuOfPe(PeHeader(0x5064)), "machine 0x5064");
}

TEST(BinaryHeaderTest, PeHeaderIsLookedForWhereTheFileSays) {
  EXPECT_EQ(CpuOfPe(PeHeader(0x8664, 0x40)), "x86_64");
  EXPECT_EQ(CpuOfPe(PeHeader(0x8664, HeaderBytes - 6)), "x86_64");
  std::string beyond = PeHeader(0x8664);
  for (const char offset : {'\x7F', '\xFF'}) {
    beyond.replace(0x3C, 4, 4, offset);
    EXPECT_EQ(CpuOfPe(beyond), std::nullopt);
  }
  std::string other = PeHeader(0x8664);
  other[0x80] = 'N';  // as in "NE"
  EXPECT_EQ(CpuOfPe(other), std::nullopt);
  EXPECT_EQ(CpuOfPe("ZM" + PeHeader(0x8664).substr(2)), std::nullopt);
}

TEST(BinaryHeaderTest, AFileThatEndsTooEarlyHasNoCpu) {
  const std::string elf = ElfHeader(62);
  for (std::size_t size = 0; size < 20; ++size) EXPECT_EQ(CpuOfElf(elf.substr(0, size)), std::nullopt) << size;
  EXPECT_EQ(CpuOfElf(elf.substr(0, 20)), "x86_64");
  const std::string pe = PeHeader(0x8664, 0x40);
  for (std::size_t size = 0; size < 0x46; ++size) EXPECT_EQ(CpuOfPe(pe.substr(0, size)), std::nullopt) << size;
  EXPECT_EQ(CpuOfPe(pe.substr(0, 0x46)), "x86_64");
}

TEST(BinaryHeaderTest, OneFormatIsNotTheOther) {
  EXPECT_EQ(CpuOfElf(PeHeader(0x8664)), std::nullopt);
  EXPECT_EQ(CpuOfPe(ElfHeader(62)), std::nullopt);
}

}  // namespace
}  // namespace tests
