// Any text arrives as an argument.
#include <fstream>

#include "java/processes/Probe.h"
#include "java/processes/RandomArguments.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace tests {
namespace {

void ExpectToArrive(const std::vector<std::string>& arguments) {
  const auto outcome = java::Run(Probe({"arguments"}).Arguments(arguments));
  const std::vector<std::string> arrived = Split(outcome.output, '\0');
  ASSERT_EQ(arrived.size(), arguments.size());
  for (std::size_t i = 0; i < arguments.size(); ++i) EXPECT_EQ(arrived[i], arguments[i]);
}

TEST(ArgumentsTest, KnownOnesArrive) {
  ExpectToArrive(KnownArguments());
  for (const std::string& argument : KnownArguments()) ExpectToArrive({argument});
}

TEST(ArgumentsTest, RandomOnesArrive) {
#if defined(_WIN32)
  RandomArguments random(AsciiPieces());  // java.exe takes those of the code page
  constexpr std::size_t AtOnce = 500;
  const std::size_t count = RandomArgumentCount(10000);
#else
  RandomArguments random(AllPieces());
  constexpr std::size_t AtOnce = 5000;
  const std::size_t count = RandomArgumentCount(100000);
#endif
  for (std::size_t done = 0; done < count; done += AtOnce) ExpectToArrive(random.Next(std::min(AtOnce, count - done)));
}

TEST(ArgumentsTest, OptionsAndClassComeInOrder) {
  const auto home = ProbeHome();
  const auto outcome = java::Run(java::Program::MainClass("Probe")
                                     .Runtime(home)
                                     .Property("Probe", "x")
                                     .Arguments({"arguments", "Probe", "-jar", "", "@x"}));
  EXPECT_EQ(Split(outcome.output, '\0'), (std::vector<std::string>{"Probe", "-jar", "", "@x"}));
}

#if defined(_WIN32)
TEST(ArgumentsTest, WhatTheCodePageLacksIsRefused) {
  ExpectThrow<java::Misuse>(
      [] {
        java::Run(Probe({"arguments", "\xE6\x97\xA5"}));
      },
      "\"\xE6\x97\xA5\" cannot be passed to java.exe, which reads its command line in code page " +
          std::to_string(GetACP()) + ": pass it in a file, a variable or the input");
}
#endif

}  // namespace
}  // namespace tests
