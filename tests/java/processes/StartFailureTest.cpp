// Programs that cannot start: which step, which file, the system's reason.
#include <fstream>

#include "java/processes/Probe.h"

#if defined(_WIN32)
#include <windows.h>
#else
#include <sys/resource.h>
#endif

namespace tests {
namespace {

using java::Program;
using java::StartFailure;
namespace fs = std::filesystem;

#if defined(_WIN32)
constexpr const char* Java = "java.exe";
// In the system's own words.
std::string Words(DWORD error) {
  char text[512];
  DWORD size = FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, text,
                              sizeof text, nullptr);
  while (size > 0 && (text[size - 1] == '\n' || text[size - 1] == '\r' || text[size - 1] == ' ')) --size;
  return {text, size};
}
const std::string NoFile = Words(ERROR_FILE_NOT_FOUND);
const std::string NoFolder = Words(ERROR_DIRECTORY);
#else
constexpr const char* Java = "java";
const std::string NoFile = "No such file or directory";
const std::string NoFolder = NoFile;
#endif

fs::path JavaOf(const fs::path& home) { return home / "bin" / Java; }
std::string TheJava() { return JavaOf(ProbeHome()).u8string(); }

TEST(StartFailureTest, AHomeWithoutJava) {
  const fs::path home = ProbeHome() / "empty";
  ExpectThrow<StartFailure>([&] { java::Run(Program::MainClass("X").Runtime(home)); },
                            std::string("No bin/") + Java + " in \"" + home.u8string() + "\"");
}

TEST(StartFailureTest, AFolderThatIsNotThere) {
  const fs::path folder = ProbeHome() / "nowhere";
  const auto text =
      "Could not change to the folder \"" + folder.u8string() + "\" for \"" + TheJava() + "\": " + NoFolder;
  ExpectThrow<StartFailure>([&] { java::Run(Probe({}).Folder(folder)); }, text);
  ExpectThrow<StartFailure>([&] { java::Start(Probe({}).Folder(folder)); }, text);
  ExpectThrow<StartFailure>([&] { Probe({}).Folder(folder).Detached(); }, text);
}

TEST(StartFailureTest, AnInputFileThatIsNotThere) {
  const fs::path file = ProbeHome() / "no file";
  ExpectThrow<StartFailure>(
      [&] { java::Run(Probe({}).InputFile(file)); },
      "Could not open the input file \"" + file.u8string() + "\" for \"" + TheJava() + "\": " + NoFile);
}

TEST(StartFailureTest, AnOutputFileThatCannotBeMade) {
  const fs::path file = ProbeHome() / "no folder" / "file";
#if defined(_WIN32)
  const std::string reason = Words(ERROR_PATH_NOT_FOUND);
#else
  const std::string reason = NoFile;
#endif
  const auto text = "Could not open the output file \"" + file.u8string() + "\" for \"" + TheJava() + "\": " + reason;
  ExpectThrow<StartFailure>([&] { java::Run(Probe({}).OutputFile(file)); }, text);
  ExpectThrow<StartFailure>([&] { java::Run(Probe({}).ErrorFile(file)); }, text);
}

TEST(StartFailureTest, AJarThatIsNotThere) {
  const fs::path jar = ProbeHome() / "no.jar";
  ExpectThrow<StartFailure>(
      [&] { java::Run(Program::Jar(jar).Runtime(ProbeHome())); },
      "Could not find the jar \"" + jar.u8string() + "\" for \"" + TheJava() + "\": No such file or directory");
  ExpectThrow<StartFailure>(
      [&] { java::Run(Program::Jar(ProbeHome()).Runtime(ProbeHome())); },
      "Could not find the jar \"" + ProbeHome().u8string() + "\" for \"" + TheJava() + "\": it is no file");
}

// A home of its own with this as its java.
fs::path HomeWith(const std::string& name, const std::string& text, [[maybe_unused]] bool isProgram) {
  const fs::path home = ProbeHome() / name;
  fs::create_directories(home / "bin");
  const fs::path java = JavaOf(home);
  std::ofstream(java, std::ios::binary) << text;
#if !defined(_WIN32)
  fs::permissions(java, isProgram ? fs::perms::owner_all : fs::perms::owner_read);
#endif
  return home;
}

TEST(StartFailureTest, AJavaThatIsNoProgram) {
  const fs::path home = HomeWith("no program", "text", true);
  const std::string java = JavaOf(home).u8string();
#if defined(_WIN32)
  const std::string reason = Words(ERROR_BAD_EXE_FORMAT);
#else
  const std::string reason = "Exec format error";
  const fs::path denied = HomeWith("no permission", "text", false);
  ExpectThrow<StartFailure>([&] { java::Run(Program::MainClass("X").Runtime(denied)); },
                            "Could not run \"" + JavaOf(denied).u8string() + "\": Permission denied");
#endif
  ExpectThrow<StartFailure>([&] { java::Run(Program::MainClass("X").Runtime(home)); },
                            "Could not run \"" + java + "\": " + reason);
}

TEST(StartFailureTest, ArgumentsThatAreTooLongForJava8) {
  const fs::path home = ProbeHome() / "java 8";
  fs::create_directories(home / "bin");
  fs::create_directories(home / "lib");
  fs::copy_file(JavaOf(ProbeHome()), JavaOf(home));
  std::ofstream(home / "lib" / "rt.jar") << "";
  const Program program = Program::MainClass("Probe").Runtime(home).Arguments({"arguments", std::string(3 << 20, 'x')});
  const std::string java = JavaOf(home).u8string();
#if defined(_WIN32)
  const std::string reason = Words(ERROR_FILENAME_EXCED_RANGE);
#else
  const std::string reason = "Argument list too long";
#endif
  ExpectThrow<StartFailure>([&] { java::Run(program); }, "Could not run \"" + java + "\": " + reason +
                                                             "; only Java 9 and later can read them from a file");
  ExpectThrow<StartFailure>([&] { program.Detached(); }, "Could not run \"" + java + "\": " + reason);
}

#if !defined(_WIN32)
TEST(StartFailureTest, TooManyOpenFiles) {
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  std::vector<std::string> texts;
  for (rlim_t limit = 3; limit < 32; ++limit) {
    const rlimit less{limit, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &less), 0);
    try {
      java::Run(Probe({"exit", "0"}).Input("x"));
    } catch (const StartFailure& failure) {
      texts.emplace_back(failure.what());
    }
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
  }
  ASSERT_FALSE(texts.empty());
  EXPECT_LT(texts.size(), 29u);
  for (const std::string& text : texts) EXPECT_NE(text.find(": Too many open files"), std::string::npos) << text;
}
#endif

}  // namespace
}  // namespace tests
