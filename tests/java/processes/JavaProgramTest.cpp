// Programs that a real Java runs, that of JAVA_HOME.
#include <gmock/gmock.h>
#include <torvan/java/Runtimes.h>

#include <atomic>
#include <cstdlib>
#include <mutex>

#include "java/What.h"
#include "java/processes/Probe.h"
#include "java/processes/RandomArguments.h"
#include "java/processes/ThisProcess.h"

namespace tests {
namespace {

using java::Ended;
using java::Outcome;
using java::Process;
using java::Program;

Program JavaProbe(const std::vector<std::string>& arguments) {
  return Program::MainClass("ProcessProbe").ClassPath({PROCESS_PROBE_CLASSES}).Arguments(arguments);
}

// Locales in which Java would lose all that is not ASCII; the second is not installed.
constexpr const char* AsciiLocales[] = {"POSIX", "xx_XX.UTF-8"};
Program InAsciiLocale(Program program, const char* locale = AsciiLocales[0]) {
  setenv("LC_ALL", locale, 1);
  return program;
}

constexpr const char* Foreign = "Z\xC3\xBCrich \xE6\x97\xA5\xE6\x9C\xAC \xF0\x9F\x98\x80";

void ExpectToArrive(const std::vector<std::string>& arguments) {
  const Outcome outcome = java::Run(InAsciiLocale(JavaProbe({"arguments"}).Arguments(arguments)));
  EXPECT_EQ(outcome.error, "");
  const std::vector<std::string> arrived = Split(outcome.output, '\0');
  ASSERT_EQ(arrived.size(), arguments.size());
  for (std::size_t i = 0; i < arguments.size(); ++i) EXPECT_EQ(arrived[i], arguments[i]);
}

TEST(JavaProgramTest, KnownArgumentsArrive) { ExpectToArrive(KnownArguments()); }

TEST(JavaProgramTest, RandomArgumentsArrive) {
  RandomArguments random(AllPieces());
  const std::size_t count = RandomArgumentCount(20000);
  constexpr std::size_t AtOnce = 10000;
  for (std::size_t done = 0; done < count; done += AtOnce) ExpectToArrive(random.Next(std::min(AtOnce, count - done)));
}

TEST(JavaProgramTest, ArgumentsThatAreTooLongForTheSystemArriveFromAFile) {
  RandomArguments random(AllPieces());
  std::vector<std::string> arguments = random.Next(200000);  // more than all of them may have together
  arguments.emplace_back(200000, 'x');                       // more than one may have
  if (java::ChooseRuntime().Version().Feature() < 9) {
    EXPECT_THAT(WhatOf<java::StartFailure>([&] { java::Run(JavaProbe(arguments)); }),
                testing::EndsWith("; only Java 9 and later can read them from a file"));
    return;
  }
  ExpectToArrive(arguments);
}

TEST(JavaProgramTest, TextIsUtf8InEveryLocale) {
  for (const char* locale : AsciiLocales) {
    EXPECT_EQ(java::Run(InAsciiLocale(JavaProbe({"arguments", Foreign}), locale)).output, std::string(Foreign) + '\0')
        << locale;
  }
  EXPECT_EQ(java::Run(InAsciiLocale(JavaProbe({"variable", "FOREIGN"}).Environment("FOREIGN", Foreign))).output,
            Foreign);
  EXPECT_EQ(java::Run(InAsciiLocale(JavaProbe({"property", "foreign"}).Property("foreign", Foreign))).output, Foreign);
  EXPECT_EQ(java::Run(InAsciiLocale(JavaProbe({"reverse"}).Input("\xE6\x9C\xAC\xE6\x97\xA5"))).error,
            "\xE6\x97\xA5\xE6\x9C\xAC");
}

TEST(JavaProgramTest, TheHostMaySayOtherwise) {
  EXPECT_EQ(java::Run(JavaProbe({"property", "file.encoding"}).Property("file.encoding", "ISO-8859-1")).output,
            "ISO-8859-1");
  const Outcome outcome = java::Run(JavaProbe({"arguments", "\xC3\xBC"})
                                        .Option("-Dstdout.encoding=ISO-8859-1")
                                        .Option("-Dsun.stdout.encoding=ISO-8859-1"));
  EXPECT_EQ(outcome.output, std::string("\xFC\0", 2));
}

TEST(JavaProgramTest, TheExitCodeIsJavas) {
  EXPECT_EQ(java::Run(JavaProbe({"property", "java.home"})).exitCode, 3);
  const Outcome wrong = java::Run(JavaProbe({"unknown"}));
  EXPECT_EQ(wrong.exitCode, 1);
  EXPECT_NE(wrong.error.find("IllegalArgumentException: unknown"), std::string::npos) << wrong.error;
}

TEST(JavaProgramTest, AJarIsRun) {
  const std::string jar = PROCESS_PROBE_JAR;
  EXPECT_EQ(java::Run(Program::Jar(jar).Arguments({"arguments", "a b"})).output, std::string("a b\0", 4));
}

TEST(JavaProgramTest, AJarWhoseNameBeginsLikeAnOptionIsRunFromAnotherFolder) {
  namespace fs = std::filesystem;
  const fs::path folder = ProbeHome() / "jars";
  fs::create_directories(folder);
  const fs::path before = fs::current_path();
  for (const char* name : {"-version.jar", "@file.jar"}) {
    fs::copy_file(PROCESS_PROBE_JAR, folder / name, fs::copy_options::overwrite_existing);
    fs::current_path(folder);
    const Program program = Program::Jar(name).Arguments({"arguments", "x"}).Folder(ProbeHome());
    fs::current_path(before);
    EXPECT_EQ(java::Run(program).output, std::string("x\0", 2)) << name;
  }
}

TEST(JavaProgramTest, StoppingRunsTheShutdownHooksAndDumpsNoThreads) {
  std::atomic<bool> ready = false;
  std::string hook;
  Process process = java::Start(JavaProbe({"stop"}).OnOutputLine([&](std::string_view line) {
    if (line == "ready") ready = true;
    if (line == "hook") hook = line;
  }));
  ASSERT_TRUE(Eventually([&] { return ready.load(); }));
  process.Stop(Patience);
  const Outcome outcome = process.Wait();
  EXPECT_EQ(outcome.ended, Ended::Stopped);
  EXPECT_EQ(outcome.exitCode, 143);
  EXPECT_EQ(hook, "hook");
  EXPECT_EQ(outcome.error, "");
}

TEST(JavaProgramTest, TheTimeLimitRunsTheShutdownHooks) {
  EXPECT_TRUE(WithEnoughTime([](std::chrono::milliseconds limit) {
    const Outcome outcome = java::Run(JavaProbe({"stop"}).TimeLimit(limit));
    EXPECT_EQ(outcome.ended, Ended::TimedOut);
    // On a busy machine it may not be ready before the limit, or not end within the grace.
    return outcome.output == "ready\nhook";
  }));
}

TEST(JavaProgramTest, KillingEndsWhatJavaHasStarted) {
  std::mutex mutex;
  std::vector<unsigned long> ids;
  Process process = java::Start(JavaProbe({"children"}).OnOutputLine([&](std::string_view line) {
    const std::lock_guard<std::mutex> lock(mutex);
    ids.push_back(std::stoul(std::string(line)));
  }));
  ASSERT_TRUE(Eventually([&] {
    const std::lock_guard<std::mutex> lock(mutex);
    return ids.size() == 2;
  }));
  process.Kill();
  for (const unsigned long id : ids) EXPECT_TRUE(Eventually([id] { return !Runs(id); }));
}

TEST(JavaProgramTest, TenMegabytesGoThroughJava) {
  const std::string text(10 << 20, 'x');
  EXPECT_TRUE(java::Run(JavaProbe({"echo"}).Input(text)).output == text);
}

}  // namespace
}  // namespace tests
