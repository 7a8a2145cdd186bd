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
