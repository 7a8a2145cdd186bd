// The header of a program or library file: for which CPU it is.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace torvan::java::detail {

// This many bytes from the front of a file are enough.
constexpr std::size_t HeaderBytes = 4096;

// The CPU that an ELF or PE file is for: "x86_64", "aarch64", "x86", or another of the field's names; "machine 0x1234"
// for one that is not known here. Takes the first bytes of the file; nothing when they are no such header.
std::optional<std::string> CpuOfElf(std::string_view head);
std::optional<std::string> CpuOfPe(std::string_view head);

// The CPU that this code was compiled for, by the same names. A process loads no library for another one.
extern const char* const OwnCpu;

}  // namespace torvan::java::detail
