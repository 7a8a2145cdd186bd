// Arguments that the code page of a Windows machine lacks.
#include <windows.h>

#include "java/processes/Probe.h"

namespace tests {
namespace {

TEST(LaunchArgumentsTest, WhatTheCodePageLacksIsRefused) {
  ExpectThrow<java::Misuse>(
      [] {
        java::Run(Probe({"arguments", "\xE6\x97\xA5"}));
      },
      "\"\xE6\x97\xA5\" cannot be passed to java.exe, which reads its command line in code page " +
          std::to_string(GetACP()) + ": pass it in a file, a variable or the input");
}

}  // namespace
}  // namespace tests
