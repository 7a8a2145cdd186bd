// What a Program makes of its settings, and what it refuses.
#include <fstream>
#include <set>

#include "java/processes/ProgramVariables.h"

namespace tests {
namespace {

using java::Program;
namespace fs = std::filesystem;

TEST(ProgramTest, ACopyIsItsOwn) {
  const Program first = Probe({"exit", "1"});
  Program second = first;
  second.Arguments({"says", "x"});
  EXPECT_EQ(first.Settings().arguments.size(), 2u);
  EXPECT_EQ(java::Run(first).exitCode, 1);
}

TEST(ProgramTest, TheHostsEnvironmentIsPassedOnAndChanged) {
  SetVariable("PROCESS_TEST_A", "a");
  SetVariable("PROCESS_TEST_B", "b");
  const auto variables = Variables(Bare()
                                       .Environment("PROCESS_TEST_B", "=b =")
                                       .Environment("PROCESS_TEST_C", "")
                                       .Environment("PROCESS_TEST_D", "x")
                                       .RemoveEnvironment("PROCESS_TEST_D")
                                       .Environment("PROCESS_TEST_\xC3\xA4", "\xE6\x97\xA5"));
  ASSERT_NE(Find(variables, "PROCESS_TEST_A"), nullptr);
  EXPECT_EQ(*Find(variables, "PROCESS_TEST_A"), "PROCESS_TEST_A=a");
  EXPECT_EQ(*Find(variables, "PROCESS_TEST_B"), "PROCESS_TEST_B==b =");
  EXPECT_EQ(*Find(variables, "PROCESS_TEST_C"), "PROCESS_TEST_C=");
  EXPECT_EQ(Find(variables, "PROCESS_TEST_D"), nullptr);
  EXPECT_EQ(*Find(variables, "PROCESS_TEST_\xC3\xA4"), "PROCESS_TEST_\xC3\xA4=\xE6\x97\xA5");
  EXPECT_EQ(Find(Variables(Bare().RemoveEnvironment("PROCESS_TEST_A")), "PROCESS_TEST_A"), nullptr);
}

TEST(ProgramTest, OptionsPropertiesAndClassPathComeBeforeTheClass) {
  const fs::path folder = ProbeHome();
  Program program = Program::MainClass("a.Probe")
                        .Runtime(folder)
                        .Option("-Xmx64m")
                        .Property("x", "a b=\"c\"")
                        .Option("-Xss1m")
                        .ClassPath({"relative.jar", folder / "*"})
                        .ClassPath({folder / "-more"});
  EXPECT_EQ(program.Settings().options, (std::vector<std::string>{"-Xmx64m", "-Dx=a b=\"c\"", "-Xss1m"}));
  EXPECT_EQ(program.Settings().classPath,
            (std::vector<fs::path>{fs::current_path() / "relative.jar", folder / "*", folder / "-more"}));
  EXPECT_EQ(Program::Jar("@x.jar").Settings().jar, fs::current_path() / "@x.jar");
}

TEST(ProgramTest, WhatNoProgramCanTakeIsRefused) {
  using namespace std::string_literals;
  struct Row {
    std::function<void()> wrong;
    std::string text;
  };
  const std::string nul = "a\0b"s;
  const Row rows[] = {
      {[] { Program::MainClass(""); }, "\"\" is no name of a class"},
      {[] { Program::MainClass("-jar"); }, "\"-jar\" is no name of a class"},
      {[] { Program::MainClass("@file"); }, "\"@file\" is no name of a class"},
      {[&] { Program::MainClass(nul); }, "the main class holds a NUL, which no program can take"},
      {[] { Program::Jar(""); }, "the jar is empty"},
      {[&] { Program::Jar(fs::path(nul)); }, "the jar holds a NUL, which no program can take"},
      {[] { Bare().Runtime(""); }, "the runtime's home is empty"},
      {[] {
         Bare().ClassPath({"a", ""});
       },
       "a part of the class path is empty"},
      {[] { Bare().Option("Xmx1g"); },
       "\"Xmx1g\" is no option: it begins with \"-\", and its value follows after \"=\""},
      {[] { Bare().Option("-"); }, "\"-\" is no option: it begins with \"-\", and its value follows after \"=\""},
      {[] { Bare().Option("-\xC3"); }, "an option: invalid UTF-8 at byte 1"},
      {[] { Bare().Property("", "x"); }, "\"\" is no name of a system property"},
      {[] { Bare().Property("a=b", "x"); }, "\"a=b\" is no name of a system property"},
      {[&] { Bare().Property("a", nul); }, "the value of a system property holds a NUL, which no program can take"},
      {[&] {
         Bare().Arguments({"x", nul});
       },
       "an argument holds a NUL, which no program can take"},
      {[] { Bare().Arguments({"ab\xFF"}); }, "an argument: invalid UTF-8 at byte 2"},
      {[] { Bare().Environment("", "x"); }, "\"\" is no name of an environment variable"},
      {[] { Bare().Environment("A=B", "x"); }, "\"A=B\" is no name of an environment variable"},
      {[] { Bare().RemoveEnvironment("="); }, "\"=\" is no name of an environment variable"},
      {[&] { Bare().Environment("A", nul); },
       "the value of an environment variable holds a NUL, which no program can take"},
      {[] { Bare().Folder(""); }, "the folder is empty"},
      {[] { Bare().InputFrom(nullptr); }, "the function that returns input is empty"},
      {[] { Bare().OnOutputLine(nullptr); }, "the function for lines of output is empty"},
      {[] { Bare().OnErrorLine(nullptr); }, "the function for lines of error output is empty"},
      {[] { Bare().OutputFile(""); }, "the output file is empty"},
      {[] { Bare().ErrorFile(""); }, "the error file is empty"},
      {[] { Bare().InputFile(""); }, "the input file is empty"},
      {[] { Bare().TimeLimit(0ms); }, "a time limit is more than 0 milliseconds"},
      {[] { java::Run(Program::Jar("x").ClassPath({"y"})); },
       "a program that is a jar brings its own class path: Java would ignore this one"},
      {[] { Bare().TimeLimit(1s).Detached(); }, "the time limit of a program that runs detached cannot be kept"},
      {[] { Bare().Input("x").Detached(); }, "the input of a program that runs detached is empty or a file"},
      {[] { Bare().KeepInputOpen().Detached(); }, "the input of a program that runs detached is empty or a file"},
      {[] { Bare().OnErrorLine([](std::string_view) {}).Detached(); },
       "no function can be called for a program that runs detached"},
  };
  for (const Row& row : rows) ExpectThrow<java::Misuse>(row.wrong, row.text);
  const std::string separated = OnThisSystem("a;b", "a:b");
  ExpectThrow<java::Misuse>([&] { Bare().ClassPath({separated}); },
                            "\"" + separated + "\" would be several parts of a class path: pass each by itself");
}

// Each of them is thrown at another place.
TEST(ProgramTest, EachRefusalSaysItsOwnLine) {
  using namespace std::string_literals;
  const std::function<void()> ofProgram[] = {
      [] { Bare().Arguments({"a\0b"s}); },
      [] { Bare().Arguments({"\xFF"}); },
      [] { Bare().Folder(""); },
      [] { Bare().Folder(fs::path("a\0b"s)); },
      [] { Bare().RemoveEnvironment("="); },
      [] { Bare().InputFrom(nullptr); },
      [] { Program::MainClass(""); },
      [] { Bare().ClassPath({OnThisSystem("a;b", "a:b")}); },
      [] { Bare().Option("-"); },
      [] { Bare().Property("", "x"); },
      [] { Bare().TimeLimit(0ms); },
  };
  const std::function<void()> ofLaunch[] = {
      [] { java::Run(Program::Jar("x").ClassPath({"y"})); },
      [] { java::Start(Bare().InputFile("x").KeepInputOpen()); },
      [] { Bare().TimeLimit(1s).Detached(); },
      [] { Bare().Input("x").Detached(); },
      [] { Bare().OnErrorLine([](std::string_view) {}).Detached(); },
  };
  const auto places = [](const auto& refusals) {
    std::set<std::string> all;
    for (const std::function<void()>& refusal : refusals) {
      try {
        refusal();
      } catch (const java::Misuse& misuse) {
        all.insert(std::string(misuse.GetSourceFile()) + ":" + std::to_string(misuse.GetSourceLine()));
      }
    }
    return all;
  };
  for (const auto& place : places(ofProgram)) EXPECT_EQ(place.find("java/Program:"), 0u) << place;
  for (const auto& place : places(ofLaunch)) EXPECT_EQ(place.find("java/processes/Launch:"), 0u) << place;
  EXPECT_EQ(places(ofProgram).size(), std::size(ofProgram));
  EXPECT_EQ(places(ofLaunch).size(), std::size(ofLaunch));
}

TEST(ProgramTest, ARefusedSettingChangesNothing) {
  Program program = Bare();
  EXPECT_THROW(program.ClassPath({"a", ""}), java::Misuse);
  EXPECT_THROW(program.Arguments({"a", "\xFF"}), java::Misuse);
  EXPECT_TRUE(program.Settings().classPath.empty());
  EXPECT_TRUE(program.Settings().arguments.empty());
}

}  // namespace
}  // namespace tests
