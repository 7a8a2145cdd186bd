// The java that runs a program whose host names none.
#include <gtest/gtest.h>
#include <torvan/java/Failure.h>
#include <torvan/java/Program.h>
#include <torvan/java/Runtimes.h>

#include "java/What.h"
#include "java/processes/JavaProgram.h"
#include "java/runtimes/MadeUpMachine.h"

namespace tests {
namespace {

using namespace torvan::java;

using detail::ToPath;

// Its runtimes are found beside those of the machine, and newer.
class JavaProgramChoiceTest : public testing::Test {
 protected:
  void SetUp() override {
    SetVariable("JAVA_HOME", "");
    SetVariable(UserVariable, machine.Path("user").c_str());
  }
  // A runtime that was cut down to its library.
  std::string AddImage(const std::string& home, const std::string& version) {
    machine.AddFile(home + "/release", "JAVA_VERSION=\"" + version + "\"\n");
    machine.AddFile(home + "/" + LibraryFile, LibraryFor(OwnMachine));
    return machine.Path(home);
  }
  static std::string Found(const Program& program = Program::MainClass("X")) {
    return ToText(detail::FindJava(program.Settings()).file);
  }

  MadeUpMachine machine;
};

TEST_F(JavaProgramChoiceTest, TheBestThatHasOneRunsIt) {
  AddImage("user/.jdks/image", "1000");
  machine.AddRuntime("user/.jdks/newer", "999");
  machine.AddRuntime("user/.jdks/older", "998");
  const std::string java = machine.Path(std::string("user/.jdks/newer/") + JavaFile);
  ASSERT_EQ(ChooseRuntime().Version().Feature(), 1000);
  EXPECT_EQ(Found(), java);

  const std::string chosen = AddImage("image", "17");
  SetVariable("JAVA_HOME", chosen.c_str());
  ASSERT_EQ(ToText(ChooseRuntime().Home()), chosen);
  EXPECT_EQ(Found(), java);
}

TEST_F(JavaProgramChoiceTest, OneThatTheHostNamesIsTakenOrRefused) {
  machine.AddRuntime("user/.jdks/newer", "999");
  const Runtime image = RuntimeIn(ToPath(AddImage("image", "17")));
  EXPECT_EQ(WhatOf<StartFailure>([&] { Found(Program::MainClass("X").Runtime(image)); }),
            "The runtime in \"" + machine.Path("image") + "\" has no bin/" +
                ToText(std::filesystem::path(JavaFile).filename()) + ": it was cut down to its library");
  const Runtime older = RuntimeIn(ToPath(machine.AddRuntime("older", "11")));
  EXPECT_EQ(Found(Program::MainClass("X").Runtime(older)), ToText(older.Java()));
}

}  // namespace
}  // namespace tests
