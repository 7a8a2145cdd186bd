// Any text arrives as an argument.
#include <fstream>

#include "java/processes/Probe.h"
#include "java/processes/RandomArguments.h"

namespace tests {
namespace {

void ExpectToArrive(const std::vector<std::string>& arguments) {
  const auto outcome = java::Run(Probe({"arguments"}).Arguments(arguments));
  const std::vector<std::string> arrived = Split(outcome.output, '\0');
  ASSERT_EQ(arrived.size(), arguments.size());
  for (std::size_t i = 0; i < arguments.size(); ++i) EXPECT_EQ(arrived[i], arguments[i]);
}

TEST(LaunchArgumentsTest, KnownOnesArrive) {
  ExpectToArrive(KnownArguments());
  for (const std::string& argument : KnownArguments()) ExpectToArrive({argument});
}

TEST(LaunchArgumentsTest, RandomOnesArrive) {
  // java.exe takes those of the code page, and a start takes longer there.
  RandomArguments random(OnWindows ? AsciiPieces() : AllPieces());
  constexpr std::size_t AtOnce = OnWindows ? 500 : 5000;
  const std::size_t count = RandomArgumentCount(OnWindows ? 10000 : 100000);
  for (std::size_t done = 0; done < count; done += AtOnce) ExpectToArrive(random.Next(std::min(AtOnce, count - done)));
}

TEST(LaunchArgumentsTest, OptionsAndClassComeInOrder) {
  const auto home = ProbeHome();
  const auto outcome = java::Run(java::Program::MainClass("Probe")
                                     .Runtime(home)
                                     .Property("Probe", "x")
                                     .Arguments({"arguments", "Probe", "-jar", "", "@x"}));
  EXPECT_EQ(Split(outcome.output, '\0'), (std::vector<std::string>{"Probe", "-jar", "", "@x"}));
}

}  // namespace
}  // namespace tests
