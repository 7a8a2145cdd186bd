// The environment that a program gets.
#include <cstdlib>

#include "java/processes/ProgramVariables.h"

namespace tests {
namespace {

TEST(ProgramEnvironmentTest, AClearedEnvironmentHasWhatIsSetAfterwards) {
  const auto variables = Variables(
      Bare().Environment("BEFORE", "1").ClearEnvironment().Environment("AFTER", "2").Environment("LANG", "C"));
  EXPECT_EQ(variables, (std::vector<std::string>{"AFTER=2", "LANG=C"}));
}

TEST(ProgramEnvironmentTest, TheLocaleIsMadeUtf8AndKeepsItsLanguage) {
  struct Row {
    const char* name;
    std::vector<std::pair<std::string, std::string>> given;
    std::vector<std::string> expected;
  };
  const Row rows[] = {
      {"nothing", {}, {"LC_CTYPE=C.UTF-8"}},
      {"UTF-8", {{"LC_TEST", "x"}}, {"LC_TEST=x", "LC_CTYPE=C.UTF-8"}},
  };
  for (const Row& row : rows) {
    java::Program program = Bare().ClearEnvironment();
    for (const auto& variable : row.given) program.Environment(variable.first, variable.second);
    EXPECT_EQ(Variables(program), row.expected) << row.name;
  }
  const char* const names[] = {"LC_ALL", "LC_CTYPE", "LANG"};
  for (const char* name : names) unsetenv(name);
  setenv("LANG", "de_DE.utf8", 1);
  EXPECT_EQ(Find(Variables(Bare()), "LC_CTYPE"), nullptr);
  setenv("LANG", "de_DE@euro", 1);
  EXPECT_EQ(*Find(Variables(Bare()), "LC_CTYPE"), "LC_CTYPE=C.UTF-8");
  EXPECT_EQ(*Find(Variables(Bare()), "LANG"), "LANG=de_DE@euro");
  EXPECT_EQ(Find(Variables(Bare().Environment("LC_CTYPE", "POSIX")), "LC_CTYPE")->substr(9), "POSIX");
  setenv("LC_ALL", "fr_FR.ISO-8859-1", 1);
  const auto variables = Variables(Bare());
  EXPECT_EQ(Find(variables, "LC_ALL"), nullptr);
  EXPECT_EQ(*Find(variables, "LC_MESSAGES"), "LC_MESSAGES=fr_FR.ISO-8859-1");
  EXPECT_EQ(*Find(variables, "LC_CTYPE"), "LC_CTYPE=C.UTF-8");
  for (const char* name : names) unsetenv(name);
}

}  // namespace
}  // namespace tests
