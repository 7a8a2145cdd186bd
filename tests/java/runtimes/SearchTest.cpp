#include "java/runtimes/Search.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

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

TEST_F(SearchTest, TheVariablesAreRead) {
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
    const std::string other = machine.AddRuntime("other", "17");
    SetPath({machine.Path("nowhere"), "\"" + machine.Path("some folder"), machine.Path("other/bin")});
    EXPECT_THAT(Found(), ElementsAre(other + " 17 PATH"));  // the quote is never closed
    SetPath({"\"" + machine.Path("nowhere") + "\"", machine.Path("other/bin") + "\""});
    EXPECT_THAT(Found(), ElementsAre(other + " 17 PATH"));
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

TEST_F(SearchTest, AFolderOfTheHostIsSearchedToo) {
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

TEST_F(SearchTest, AFolderOfTheHostThatCannotBeListedIsRefused) {
  machine.AddFile("file");
  const std::string file = machine.Path("file");
  const std::string reason = machine.FoldersIn(ToPath(file)).reason;
  EXPECT_THAT(FoundInFolder(file), ElementsAre(file + ": " + reason + " (" + file + ")"));
}

// A machine that lists one folder of each only, and then fails.
class HalfListedMachine : public MadeUpMachine {
 public:
  Listing FoldersIn(const std::filesystem::path& folder) const override {
    Listing listing = MadeUpMachine::FoldersIn(folder);
    if (listing.names.size() > 1) listing.names.resize(1);
    return {listing.names, "Input/output error"};
  }
};

TEST(SearchHalfListedTest, WhatWasListedCounts) {
  HalfListedMachine machine;
  const std::string first = machine.AddRuntime("here/a", "17");
  machine.AddRuntime("here/b", "21");
  const std::string here = machine.Path("here");
  const auto found = [&machine](const std::string& folder) {
    Search search(machine);
    search.LookInto(ToPath(folder));
    return Lines(search.Result());
  };
  EXPECT_THAT(found(here), ElementsAre(first + " 17 " + here, here + ": Input/output error (" + here + ")"));
  // A home need not be listed, and a usual folder that cannot be is passed over.
  EXPECT_THAT(found(first), ElementsAre(first + " 17 " + first));
  machine.Set(UserVariable, machine.Path("user"));
  const std::string usual = machine.AddRuntime("user/.jdks/a", "17");
  EXPECT_THAT(Lines(SearchOf(machine)), ElementsAre(usual + " 17 " + machine.Path("user/.jdks")));
}

TEST_F(SearchTest, NamesOfAnyScriptAreFound) {
  const std::string home = machine.AddRuntime("J\u00E4va \u4E2D\u6587 \U0001F600/jdk 17", "17");
  machine.Set("JAVA_HOME", home);
  EXPECT_THAT(Found(), ElementsAre(home + " 17 JAVA_HOME"));
}

// A home in each folder that this system's installers and version managers use. A "$" begins with a variable.
TEST_F(SearchTest, EveryUsualFolderIsLookedInto) {
  using Texts = std::vector<std::string>;
  const Texts installed = {"Java/jdk-17",
                           "Eclipse Adoptium/jdk-17.0.9.9-hotspot",
                           "Eclipse Foundation/jdk-16",
                           "AdoptOpenJDK/jdk-8",
                           "Microsoft/jdk-17.0.9.8-hotspot",
                           "Zulu/zulu-17",
                           "Amazon Corretto/jdk17",
                           "BellSoft/LibericaJDK-17",
                           "Semeru/jdk-17",
                           "RedHat/java-17",
                           "SapMachine/17",
                           "SapMachine/JDK/17",
                           "ojdkbuild/java-17"};
  Texts folders = {"/usr/lib/jvm/a",
                   "/usr/lib64/jvm/a",
                   "/usr/java/a",
                   "/usr/local/lib/jvm/a",
                   "/usr/local/java/a",
                   "/usr/local/openjdk-17",
                   "/opt/a",
                   "/opt/java/a",
                   "/opt/jdk/a",
                   "/opt/jvm/a",
                   "/snap/openjdk/current/jdk",
                   "$SDKMAN_CANDIDATES_DIR/java/a",
                   "$SDKMAN_DIR/candidates/java/a",
                   "$GRADLE_USER_HOME/jdks/a",
                   "$GRADLE_USER_HOME/jdks/b/jdk-17",
                   "$ASDF_DATA_DIR/installs/java/a",
                   "$MISE_DATA_DIR/installs/java/a",
                   "$HOMEBREW_PREFIX/opt/openjdk@17/libexec",
                   "/home/linuxbrew/.linuxbrew/opt/openjdk/libexec",
                   "$HOME/.sdkman/candidates/java/a",
                   "$HOME/.jdks/a",
                   "$HOME/.gradle/jdks/a",
                   "$HOME/.gradle/jdks/b/jdk-17",
                   "$HOME/.jbang/cache/jdks/17",
                   "$HOME/.jabba/jdk/a",
                   "$HOME/.asdf/installs/java/a",
                   "$HOME/.local/share/mise/installs/java/a",
                   "$HOME/.jenv/versions/a"};
  if (OnWindows) {
    folders = {"$GRADLE_USER_HOME/jdks/a",
               "$GRADLE_USER_HOME/jdks/b/jdk-17",
               "$SCOOP/apps/temurin17/current",
               "$ProgramData/scoop/apps/temurin17/current",
               "$USERPROFILE/.jdks/a",
               "$USERPROFILE/.gradle/jdks/a",
               "$USERPROFILE/.gradle/jdks/b/jdk-17",
               "$USERPROFILE/.jbang/cache/jdks/17",
               "$USERPROFILE/.sdkman/candidates/java/a",
               "$USERPROFILE/.jabba/jdk/a",
               "$USERPROFILE/scoop/apps/temurin17/current"};
    for (const char* base : {"$ProgramFiles/", "$ProgramW6432/", "$ProgramFiles(x86)/", "$LOCALAPPDATA/Programs/"}) {
      for (const std::string& folder : installed) folders.push_back(base + folder);
    }
  }
  std::set<std::string> expected;
  for (std::string folder : folders) {
    if (folder[0] == '$') {
      const std::size_t end = folder.find('/');
      machine.Set(folder.substr(1, end - 1), machine.Path("of " + folder.substr(1, end - 1)));
      folder.replace(0, 1, "of ");
    } else {
      folder.erase(0, 1);
    }
    expected.insert(machine.AddRuntime(folder, "17"));
  }
  const Runtimes runtimes = SearchOf(machine);
  EXPECT_THAT(runtimes.refused, IsEmpty());
  std::set<std::string> found;
  for (const Runtime& runtime : runtimes.found) {
    found.insert(ToText(runtime.Home()));
    EXPECT_EQ(ToText(runtime.Home()).find(runtime.FoundIn() + UsualPlaces().folderSeparator), 0u) << runtime.FoundIn();
  }
  EXPECT_EQ(found, expected);
}

TEST_F(SearchTest, AVariableThatIsNoFolderHasNoUsualFolders) {
  machine.AddRuntime("user/.jdks/a", "17");
  const CurrentFolder current(machine.Path());
  machine.Set(UserVariable, "user");
  EXPECT_THAT(Found(), IsEmpty());
}

}  // namespace
}  // namespace tests
