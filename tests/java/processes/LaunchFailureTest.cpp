// Programs that cannot start: which step, which file, the system's reason.
#include <fstream>

#include "java/processes/Probe.h"
#include "java/processes/Reasons.h"

namespace tests {
namespace {

using java::Program;
using java::StartFailure;
namespace fs = std::filesystem;

std::string TheJava() { return JavaOf(ProbeHome()).u8string(); }

TEST(LaunchFailureTest, AHomeWithoutJava) {
  const fs::path home = ProbeHome() / "empty";
  ExpectThrow<StartFailure>([&] { java::Run(Program::MainClass("X").Runtime(home)); },
                            std::string("No bin/") + Java + " in \"" + home.u8string() + "\"");
}

// A runtime as it was found, whose java is this file.
java::Runtime FoundRuntime(const fs::path& java, const char* version) {
  return java::Runtime({ProbeHome() / "empty", java::Version::Parse(version), "", "x86_64", false, "", java, "PATH"});
}

TEST(LaunchFailureTest, ARuntimeWithoutJava) {
  const auto program = Program::MainClass("X").Runtime(FoundRuntime("", "17"));
  ExpectThrow<StartFailure>([&] { java::Run(program); }, "The runtime in \"" + (ProbeHome() / "empty").u8string() +
                                                             "\" has no bin/" + Java +
                                                             ": it was cut down to its library");
}

TEST(LaunchFailureTest, TheJavaOfARuntimeIsRunWhereverItIs) {
  const auto program = Program::MainClass("Probe").Runtime(FoundRuntime(JavaOf(ProbeHome()), "17"));
  EXPECT_EQ(java::Run(Program(program).Arguments({"says", "x"})).output, "x");
  // The last one counts.
  EXPECT_THROW(java::Run(Program(program).Runtime(ProbeHome() / "empty")), StartFailure);
  EXPECT_EQ(java::Run(Program(program).Runtime(ProbeHome() / "empty").Runtime(FoundRuntime(JavaOf(ProbeHome()), "9")))
                .exitCode,
            0);
}

TEST(LaunchFailureTest, TheVersionOfARuntimeTellsWhetherArgumentsMayBeInAFile) {
  const std::vector<std::string> arguments = {"says", std::string(200000, 'x')};
  const auto with = [&](const char* version) {
    return Program::MainClass("Probe").Runtime(FoundRuntime(JavaOf(ProbeHome()), version)).Arguments(arguments);
  };
  EXPECT_TRUE(java::Run(with("9")).output == arguments[1]);
  ExpectThrow<StartFailure>([&] { java::Run(with("1.8.0_391")); },
                            "Could not run \"" + TheJava() + "\": " + Reasons().tooLong +
                                "; only Java 9 and later can read them from a file");
}

TEST(LaunchFailureTest, AFolderThatIsNotThere) {
  const fs::path folder = ProbeHome() / "nowhere";
  const auto text =
      "Could not change to the folder \"" + folder.u8string() + "\" for \"" + TheJava() + "\": " + Reasons().noFolder;
  ExpectThrow<StartFailure>([&] { java::Run(Probe({}).Folder(folder)); }, text);
  ExpectThrow<StartFailure>([&] { java::Start(Probe({}).Folder(folder)); }, text);
  ExpectThrow<StartFailure>([&] { Probe({}).Folder(folder).Detached(); }, text);
}

TEST(LaunchFailureTest, AnInputFileThatIsNotThere) {
  const fs::path file = ProbeHome() / "no file";
  ExpectThrow<StartFailure>(
      [&] { java::Run(Probe({}).InputFile(file)); },
      "Could not open the input file \"" + file.u8string() + "\" for \"" + TheJava() + "\": " + Reasons().noFile);
}

TEST(LaunchFailureTest, AnOutputFileThatCannotBeMade) {
  const fs::path file = ProbeHome() / "no folder" / "file";
  const auto text =
      "Could not open the output file \"" + file.u8string() + "\" for \"" + TheJava() + "\": " + Reasons().noWay;
  ExpectThrow<StartFailure>([&] { java::Run(Probe({}).OutputFile(file)); }, text);
  ExpectThrow<StartFailure>([&] { java::Run(Probe({}).ErrorFile(file)); }, text);
}

TEST(LaunchFailureTest, AJarThatIsNotThere) {
  const fs::path jar = ProbeHome() / "no.jar";
  ExpectThrow<StartFailure>(
      [&] { java::Run(Program::Jar(jar).Runtime(ProbeHome())); },
      "Could not find the jar \"" + jar.u8string() + "\" for \"" + TheJava() + "\": No such file or directory");
  ExpectThrow<StartFailure>(
      [&] { java::Run(Program::Jar(ProbeHome()).Runtime(ProbeHome())); },
      "Could not find the jar \"" + ProbeHome().u8string() + "\" for \"" + TheJava() + "\": it is no file");
}

TEST(LaunchFailureTest, AJavaThatIsNoProgram) {
  const fs::path home = HomeWith("no program", "text");
  ExpectThrow<StartFailure>([&] { java::Run(Program::MainClass("X").Runtime(home)); },
                            "Could not run \"" + JavaOf(home).u8string() + "\": " + Reasons().noProgram);
}

TEST(LaunchFailureTest, ArgumentsThatAreTooLongForJava8) {
  const fs::path home = ProbeHome() / "java 8";
  fs::create_directories(home / "bin");
  fs::create_directories(home / "lib");
  fs::copy_file(JavaOf(ProbeHome()), JavaOf(home));
  std::ofstream(home / "lib" / "rt.jar") << "";
  const Program program = Program::MainClass("Probe").Runtime(home).Arguments({"arguments", std::string(3 << 20, 'x')});
  const std::string java = JavaOf(home).u8string();
  ExpectThrow<StartFailure>([&] { java::Run(program); }, "Could not run \"" + java + "\": " + Reasons().tooLong +
                                                             "; only Java 9 and later can read them from a file");
  ExpectThrow<StartFailure>([&] { program.Detached(); }, "Could not run \"" + java + "\": " + Reasons().tooLong);
}

}  // namespace
}  // namespace tests
