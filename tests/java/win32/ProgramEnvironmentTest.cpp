// The environment that a program gets.
#include "java/processes/ProgramVariables.h"

namespace tests {
namespace {

TEST(ProgramEnvironmentTest, AClearedEnvironmentHasWhatIsSetAfterwards) {
  const auto variables = Variables(
      Bare().Environment("BEFORE", "1").ClearEnvironment().Environment("AFTER", "2").Environment("LANG", "C"));
  // Wine sets some for every process.
  for (const char* name : {"SystemRoot", "AFTER", "LANG"}) EXPECT_NE(Find(variables, name), nullptr) << name;
  for (const char* name : {"BEFORE", "PATH", "Path", "WINEPREFIX"}) EXPECT_EQ(Find(variables, name), nullptr) << name;
}

}  // namespace
}  // namespace tests
