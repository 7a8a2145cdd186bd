#include "java/runtimes/Search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "java/runtimes/MadeUpMachine.h"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* NoLibrary =
    OnThisSystem("has no VM library such as bin\\server\\jvm.dll", "has no VM library such as lib/server/libjvm.so");

// Changes the current folder while it lives.
class CurrentFolder {
 public:
  explicit CurrentFolder(const std::string& folder) { std::filesystem::current_path(ToPath(folder)); }
  ~CurrentFolder() { std::filesystem::current_path(m_before); }
  CurrentFolder(const CurrentFolder&) = delete;
  CurrentFolder& operator=(const CurrentFolder&) = delete;

 private:
  const std::filesystem::path m_before = std::filesystem::current_path();
};

class SearchTest : public testing::Test {
 protected:
  std::vector<std::string> Found() { return Lines(SearchOf(machine)); }
  std::vector<std::string> FoundInFolder(const std::string& folder) {
    Search search(machine);
    search.LookInto(ToPath(folder));
    return Lines(search.Result());
  }
  void SetPath(const std::vector<std::string>& folders) {
    std::string path;
    for (const std::string& folder : folders) path += (path.empty() ? "" : separator) + folder;
    machine.Set("PATH", path);
  }

  MadeUpMachine machine;
  const std::string separator = OnThisSystem(";", ":");
};

TEST_F(SearchTest, AnEmptyMachineHasNone) { EXPECT_THAT(Found(), IsEmpty()); }

TEST_F(SearchTest, TheVariablesAreLookedAt) {
  const std::string first = machine.AddRuntime("a", "11.0.2");
  const std::string second = machine.AddRuntime("b", "17.0.15");
  machine.Set("JAVA_HOME", first);
  machine.Set("JDK_HOME", second);
  EXPECT_THAT(Found(), ElementsAre(first + " 11.0.2 JAVA_HOME", second + " 17.0.15 JDK_HOME"));
}

TEST_F(SearchTest, AVariableThatLeadsNowhereIsRefused) {
  machine.Set("JAVA_HOME", machine.Path("nowhere"));
  Runtimes runtimes = SearchOf(machine);
  ASSERT_EQ(runtimes.refused.size(), 1u);
  EXPECT_EQ(ToText(runtimes.refused[0].Home()), machine.Path("nowhere"));
  EXPECT_EQ(runtimes.refused[0].Reason(), machine.Locate(ToPath(machine.Path("nowhere"))).reason);
  EXPECT_NE(runtimes.refused[0].Reason(), "");
  EXPECT_EQ(runtimes.refused[0].FoundIn(), "JAVA_HOME");

  machine.Set("JAVA_HOME", "jdk");
  EXPECT_THAT(Found(), ElementsAre("jdk: is not an absolute path (JAVA_HOME)"));
  machine.Set("JAVA_HOME", machine.Path());
  EXPECT_THAT(Found(), ElementsAre(machine.Path() + ": " + NoLibrary + " (JAVA_HOME)"));
  machine.AddFile("file");
  machine.Set("JAVA_HOME", machine.Path("file"));
  EXPECT_THAT(Found(), ElementsAre(machine.Path("file") + ": is not a folder (JAVA_HOME)"));
}

TEST_F(SearchTest, TheSameHomeIsListedOnce) {
  const std::string home = machine.AddRuntime("user/.jdks/jdk", "17");
  machine.Set("JAVA_HOME", home);
  machine.Set("JDK_HOME", home + UsualPlaces().folderSeparator);
  machine.Set(UserVariable, machine.Path("user"));
  SetPath({machine.Path("user/.jdks/jdk/bin")});
  EXPECT_THAT(Found(), ElementsAre(home + " 17 JAVA_HOME"));
  machine.Set("JAVA_HOME", machine.Path("nowhere"));
  machine.Set("JDK_HOME", machine.Path("nowhere"));
  EXPECT_EQ(Found().size(), 2u);
}

TEST_F(SearchTest, TheFirstJavaOfThePathCounts) {
  const std::string first = machine.AddRuntime("first", "11");
  machine.AddRuntime("second", "17");
  machine.AddFile("empty/readme");
  const CurrentFolder current(machine.Path("second"));
  SetPath({"", ".", "bin", "../second/bin", machine.Path("nowhere"), machine.Path("empty"), machine.Path("first/bin"),
           machine.Path("second/bin")});
  EXPECT_THAT(Found(), ElementsAre(first + " 11 PATH"));
}

TEST_F(SearchTest, APartOfThePathMayBeInQuotesOnWindows) {
  const std::string home = machine.AddRuntime("a " + separator + "b", "11");
  SetPath({"\"" + machine.Path("a " + separator + "b") + "\"" + UsualPlaces().folderSeparator + "bin"});
  if (OnWindows) {
    EXPECT_THAT(Found(), ElementsAre(home + " 11 PATH"));
    SetPath({machine.Path("nowhere"), "\"" + machine.Path("a " + separator + "b/bin") + "\"", "x"});
    EXPECT_THAT(Found(), ElementsAre(home + " 11 PATH"));
  } else {
    EXPECT_THAT(Found(), IsEmpty());
    machine.AddRuntime("with \" quote", "17");
    SetPath({machine.Path("with \" quote/bin")});
    EXPECT_EQ(Found().size(), 1u);
  }
}

TEST_F(SearchTest, ALauncherThatIsNoLinkIsRefused) {
  const std::string name = ToText(ToPath(machine.Path(JavaFile)).filename());
  machine.AddProgram("shims/" + name);
  machine.AddProgram("tools/bin/" + name);
  machine.AddRuntime("jdk", "17");
  const std::string reason =
      ": is a launcher and no link into a runtime; it is not executed to find out where it leads (PATH)";
  SetPath({machine.Path("shims"), machine.Path("jdk/bin")});
  EXPECT_THAT(Found(), ElementsAre(machine.Path("shims/" + name) + reason));
  machine.AddProgram("jdk/tools/" + name);
  for (const std::string folder : {"tools/bin", "jdk/tools"}) {
    SetPath({machine.Path(folder)});
    EXPECT_THAT(Found(), ElementsAre(machine.Path(folder + "/" + name) + reason));
  }
}

TEST_F(SearchTest, ABrokenRuntimeOfThePathIsRefusedForWhatItLacks) {
  machine.AddProgram(std::string("jdk/") + JavaFile);
  machine.AddFile("jdk/release", "JAVA_VERSION=\"17\"\n");
  SetPath({machine.Path("jdk/bin")});
  EXPECT_THAT(Found(), ElementsAre(machine.Path("jdk") + ": " + NoLibrary + " (PATH)"));
}

TEST_F(SearchTest, TheOrderIsThatOfTheChoice) {
  const std::string eight = machine.AddRuntime("user/.jdks/a", "1.8.0_391");
  const std::string early = machine.AddRuntime("user/.jdks/b", "25-ea");
  const std::string newest = machine.AddRuntime("user/.jdks/c", "25");
  const std::string older = machine.AddRuntime("user/.jdks/d", "17.0.9");
  const std::string newer = machine.AddRuntime("user/.jdks/e", "17.0.10");
  const std::string chosen = machine.AddRuntime("f", "11");
  machine.Set(UserVariable, machine.Path("user"));
  machine.Set("JAVA_HOME", chosen);
  const std::string folder = " " + machine.Path("user/.jdks");
  EXPECT_THAT(Found(),
              ElementsAre(chosen + " 11 JAVA_HOME", newest + " 25" + folder, early + " 25-ea" + folder,
                          newer + " 17.0.10" + folder, older + " 17.0.9" + folder, eight + " 1.8.0_391" + folder));
}

TEST_F(SearchTest, WhatHasNothingOfJavaIsPassedOver) {
  machine.Set(UserVariable, machine.Path("user"));
  machine.AddFile("user/.jdks/notes/readme.txt");
  machine.AddFile("user/.jdks/file");
  machine.AddFile("user/.jdks/broken/release", "JAVA_VERSION=\"17\"\n");
  machine.AddProgram(std::string("user/.jdks/cut/") + JavaFile);
  const std::string refused = std::string(": ") + NoLibrary + " (" + machine.Path("user/.jdks") + ")";
  EXPECT_THAT(Found(),
              ElementsAre(machine.Path("user/.jdks/broken") + refused, machine.Path("user/.jdks/cut") + refused));
}

TEST_F(SearchTest, AFolderOfTheHostIsLookedAtAndInto) {
  const std::string inner = machine.AddRuntime("here/jdk", "17");
  machine.AddRuntime("elsewhere", "21");
  machine.Set("JAVA_HOME", machine.Path("elsewhere"));
  EXPECT_THAT(FoundInFolder(machine.Path("here")), ElementsAre(inner + " 17 " + machine.Path("here")));
  EXPECT_THAT(FoundInFolder(inner), ElementsAre(inner + " 17 " + inner));
  EXPECT_THAT(FoundInFolder(machine.Path("here/jdk/bin")), IsEmpty());
  const std::string nowhere = machine.Path("nowhere");
  EXPECT_THAT(FoundInFolder(nowhere),
              ElementsAre(nowhere + ": " + machine.Locate(ToPath(nowhere)).reason + " (" + nowhere + ")"));
}

TEST_F(SearchTest, NamesOfAnyScriptAreFound) {
  const std::string home = machine.AddRuntime("J\u00E4va \u4E2D\u6587 \U0001F600/jdk 17", "17");
  machine.Set("JAVA_HOME", home);
  EXPECT_THAT(Found(), ElementsAre(home + " 17 JAVA_HOME"));
}

// One folder for each pattern of the system's table, and every variable of it set.
TEST_F(SearchTest, EveryUsualFolderIsLookedInto) {
  std::map<std::string, std::string> expected;  // by home
  int count = 0;
  for (const FolderPlaces& row : UsualPlaces().folders) {
    std::string base = row.base;
    std::string folder = "root" + base;
    if (base[0] == '$') {
      const std::size_t end = std::min(base.find(UsualPlaces().folderSeparator), base.size());
      const std::string variable = base.substr(1, end - 1);
      machine.Set(variable, machine.Path("of " + variable));
      folder = "of " + variable + base.substr(end);
    } else {
      folder = base.substr(1);
    }
    for (std::string pattern : row.patterns) {
      std::size_t first = pattern.find('*');
      const std::size_t lastBeforeStar = pattern.rfind(UsualPlaces().folderSeparator, first);
      const std::string place = lastBeforeStar == std::string::npos ? "" : "/" + pattern.substr(0, lastBeforeStar);
      for (; first != std::string::npos; first = pattern.find('*'))
        pattern.replace(first, 1, "v" + std::to_string(count));
      for (char& unit : pattern) unit = unit == '\\' ? '/' : unit;
      const std::string home = machine.AddRuntime(folder + "/" + pattern, "17.0." + std::to_string(++count));
      expected[home] = machine.Path(folder + place);
    }
  }
  EXPECT_GT(count, 15);
  const Runtimes runtimes = SearchOf(machine);
  EXPECT_THAT(runtimes.refused, IsEmpty());
  EXPECT_EQ(runtimes.found.size(), expected.size());
  for (const Runtime& runtime : runtimes.found) {
    EXPECT_EQ(runtime.FoundIn(), expected[ToText(runtime.Home())]) << runtime.Home();
  }
}

TEST_F(SearchTest, AVariableThatIsNoFolderHasNoUsualFolders) {
  machine.AddRuntime("user/.jdks/a", "17");
  const CurrentFolder current(machine.Path());
  machine.Set(UserVariable, "user");
  EXPECT_THAT(Found(), IsEmpty());
}

}  // namespace
}  // namespace tests
