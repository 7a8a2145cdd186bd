// The environment that a program gets.
#include <ThisSystem.h>

#include "java/processes/Environment.h"
#include "java/processes/ProgramVariables.h"
#include "java/processes/Surroundings.h"

namespace tests {
namespace {

TEST(ProgramEnvironmentTest, AClearedEnvironmentHasWhatIsSetAfterwards) {
  SetVariable("TORVAN_TEST_HOST", "1");
  const auto variables = Variables(
      Bare().Environment("BEFORE", "1").ClearEnvironment().Environment("AFTER", "2").Environment("LANG", "C"));
  // The system may set more.
  for (const char* name : {"SystemRoot", "AFTER", "LANG"}) EXPECT_NE(Find(variables, name), nullptr) << name;
  for (const char* name : {"BEFORE", "PATH", "Path", "TORVAN_TEST_HOST"})
    EXPECT_EQ(Find(variables, name), nullptr) << name;
}

// Of Windows itself a program needs SystemRoot.
TEST(ProgramEnvironmentTest, SystemRootStaysUnlessItIsRemoved) {
  const auto hasIt = [](const java::Program& program) {
    for (const auto& variable : EnvironmentOf(program.Settings())) {
      if (torvan::java::detail::IsSameVariable(L"SystemRoot=", variable)) return true;
    }
    return false;
  };
  EXPECT_TRUE(hasIt(Bare()));
  EXPECT_TRUE(hasIt(Bare().RemoveEnvironment("SystemRoot").ClearEnvironment()));
  EXPECT_FALSE(hasIt(Bare().RemoveEnvironment("SYSTEMROOT")));
  EXPECT_FALSE(hasIt(Bare().ClearEnvironment().RemoveEnvironment("SystemRoot")));
}

}  // namespace
}  // namespace tests
