// The environment that a program gets.
#include <cstdlib>
#include <filesystem>

#include "java/processes/ProgramVariables.h"

namespace tests {
namespace {

namespace fs = std::filesystem;

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
  setenv("LANG", "C.UTF-8", 1);
  EXPECT_EQ(Find(Variables(Bare()), "LC_CTYPE"), nullptr);
  setenv("LANG", "POSIX", 1);
  EXPECT_EQ(*Find(Variables(Bare()), "LC_CTYPE"), "LC_CTYPE=C.UTF-8");
  EXPECT_EQ(*Find(Variables(Bare()), "LANG"), "LANG=POSIX");
  EXPECT_EQ(Find(Variables(Bare().Environment("LC_CTYPE", "POSIX")), "LC_CTYPE")->substr(9), "POSIX");
  setenv("LC_ALL", "POSIX", 1);
  auto variables = Variables(Bare());
  EXPECT_EQ(Find(variables, "LC_ALL"), nullptr);
  EXPECT_EQ(*Find(variables, "LC_MESSAGES"), "LC_MESSAGES=POSIX");
  EXPECT_EQ(*Find(variables, "LC_CTYPE"), "LC_CTYPE=C.UTF-8");
  // Those that are not installed would make the C library reject all.
  setenv("LC_ALL", "fr_FR.UTF-8", 1);
  setenv("LC_TIME", "fr_FR.UTF-8", 1);
  variables = Variables(Bare());
  for (const char* name : {"LC_ALL", "LC_TIME", "LC_MESSAGES"}) EXPECT_EQ(Find(variables, name), nullptr) << name;
  EXPECT_EQ(*Find(variables, "LC_CTYPE"), "LC_CTYPE=C.UTF-8");
  EXPECT_EQ(*Find(variables, "LANG"), "LANG=POSIX");
  setenv("LANG", "C.UTF-8", 1);
  EXPECT_EQ(Find(Variables(Bare()), "LC_CTYPE"), nullptr);
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LC_TIME", "LANG"}) unsetenv(name);
}

// A folder of locales, as LOCPATH names it, while it lives: copies of one that is installed.
class InstalledLocales {
 public:
  explicit InstalledLocales(const std::vector<std::string>& names) {
    fs::create_directories(m_folder);
    for (const std::string& name : names) fs::copy(Utf8, m_folder / name, fs::copy_options::recursive);
    setenv("LOCPATH", m_folder.c_str(), 1);
  }
  ~InstalledLocales() {
    unsetenv("LOCPATH");
    fs::remove_all(m_folder);
  }
  InstalledLocales(const InstalledLocales&) = delete;
  InstalledLocales& operator=(const InstalledLocales&) = delete;

  static constexpr const char* Utf8 = "/usr/lib/locale/C.utf8";

 private:
  const fs::path m_folder = ProbeHome() / "locales";
};

TEST(ProgramEnvironmentTest, TheLanguageIsKeptWhereItIsInstalledInUtf8) {
  if (!fs::exists(InstalledLocales::Utf8)) GTEST_SKIP() << "there is no " << InstalledLocales::Utf8 << " to copy";
  const InstalledLocales locales({"de_DE.utf8", "en_US.utf8"});
  const struct {
    const char* given;
    const char* expected;
  } rows[] = {
      {"de_DE@euro", "LC_CTYPE=de_DE.UTF-8"},
      {"de_DE.ISO-8859-1", "LC_CTYPE=de_DE.UTF-8"},
      {"de_DE", "LC_CTYPE=de_DE.UTF-8"},
      {"fr_FR.UTF-8", "LC_CTYPE=C.UTF-8"},  // built into the C library
  };
  for (const auto& row : rows) {
    setenv("LANG", row.given, 1);
    EXPECT_EQ(*Find(Variables(Bare()), "LC_CTYPE"), row.expected) << row.given;
  }
  setenv("LANG", "de_DE.UTF-8", 1);
  EXPECT_EQ(Find(Variables(Bare()), "LC_CTYPE"), nullptr);
  unsetenv("LANG");
}

}  // namespace
}  // namespace tests
