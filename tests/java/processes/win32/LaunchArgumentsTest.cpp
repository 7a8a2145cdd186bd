// Arguments that the code page of a Windows machine lacks.
#include <windows.h>

#include <filesystem>

#include "java/processes/Probe.h"
#include "java/processes/ThisProcess.h"

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

TEST(LaunchArgumentsTest, TheArgumentFileMayBeInAnyFolder) {
  const std::string tooLong(40000, 'x');
  const java::Program program = Probe({"says", tooLong});
  const auto before = std::filesystem::current_path();
  const auto temporary = std::filesystem::temp_directory_path();
  const auto folder = ProbeHome() / "temporary \u65E5";
  std::filesystem::create_directories(folder);
  UseTemporaryFolder(folder);
  EXPECT_EQ(java::Run(program).output, tooLong);
  std::filesystem::current_path(ProbeHome());
  UseTemporaryFolder("empty");  // relative; the program has another current folder
  EXPECT_EQ(java::Run(java::Program(program).Folder(before)).output, tooLong);
  std::filesystem::current_path(before);
  EXPECT_TRUE(std::filesystem::is_empty(folder));
  EXPECT_TRUE(std::filesystem::is_empty(ProbeHome() / "empty"));
  UseTemporaryFolder(ProbeHome() / "nowhere");
  try {
    java::Run(program);
    ADD_FAILURE() << "nothing was thrown";
  } catch (const java::StartFailure& failure) {
    const std::string start = "Could not write the argument file \"" + (ProbeHome() / "nowhere").u8string() + "\\java";
    EXPECT_EQ(std::string(failure.what()).substr(0, start.size()), start);
  }
  UseTemporaryFolder(temporary);
}

}  // namespace
}  // namespace tests
