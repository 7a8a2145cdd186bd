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

TEST(LaunchArgumentsTest, ThoseThatAreTooLongForTheSystemArriveFromAFile) {
  RandomArguments random(OnWindows ? AsciiPieces() : AllPieces());
  std::vector<std::string> arguments = random.Next(2000);
  arguments.insert(arguments.end(), KnownArguments().begin(), KnownArguments().end());
  arguments.emplace_back(200000, 'x');
  ExpectToArrive(arguments);
}

// From a file, too: it has all of the line.
TEST(LaunchArgumentsTest, TheCommandLineIsTheOptionsForEncodingsThenTheHostsThenTheClass) {
  const auto folder = ProbeHome();
  const java::Program program = java::Program::MainClass("Probe")
                                    .Runtime(folder)
                                    .Property("a", "b c")
                                    .ClassPath({folder / "x.jar", folder / "*"})
                                    .Option("-Xmx64m")
                                    .Arguments({"line"});
  const std::vector<std::string> expected = {
      JavaOf(folder).u8string(),
      "-Dfile.encoding=UTF-8",
      "-Dsun.stdout.encoding=UTF-8",
      "-Dsun.stderr.encoding=UTF-8",
      "-Dstdout.encoding=UTF-8",
      "-Dstderr.encoding=UTF-8",
      "-Dstdin.encoding=UTF-8",
      "-Da=b c",
      "-Xmx64m",
      "-cp",
      (folder / "x.jar").u8string() + OnThisSystem(";", ":") + (folder / "*").u8string(),
      "Probe",
      "line"};
  EXPECT_EQ(Split(java::Run(program).output, '\0'), expected);
  std::vector<std::string> longer = expected;
  longer.insert(longer.end(), {"says", std::string(200000, 'x')});
  const auto outcome = java::Run(java::Program(program).Arguments({"says", std::string(200000, 'x')}));
  std::string text;
  for (const std::string& part : longer) text += part + '\0';
  EXPECT_TRUE(outcome.output == text + std::string(200000, 'x'));
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
