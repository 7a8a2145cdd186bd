// A system that refuses to answer, at each step of a search.
#include <gtest/gtest.h>

#include <algorithm>

#include "java/runtimes/Home.h"
#include "java/runtimes/MadeUpMachine.h"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

constexpr int Never = -1;

// Refuses to answer one of the questions.
class FailingMachine : public MadeUpMachine {
 public:
  std::optional<std::string> Variable(const std::string& name) const override {
    return Fails() ? std::nullopt : MadeUpMachine::Variable(name);
  }
  Location Locate(const std::filesystem::path& path) const override {
    return Fails() ? Location{{}, "Input/output error"} : MadeUpMachine::Locate(path);
  }
  bool IsFolder(const std::filesystem::path& path) const override { return !Fails() && MadeUpMachine::IsFolder(path); }
  bool IsFile(const std::filesystem::path& path) const override { return !Fails() && MadeUpMachine::IsFile(path); }
  bool IsProgram(const std::filesystem::path& path) const override {
    return !Fails() && MadeUpMachine::IsProgram(path);
  }
  std::string Hindrance(const std::filesystem::path& path) const override {
    return Fails() ? "Input/output error" : MadeUpMachine::Hindrance(path);
  }
  Listing FoldersIn(const std::filesystem::path& folder) const override {
    return Fails() ? Listing{{}, "Input/output error"} : MadeUpMachine::FoldersIn(folder);
  }
  std::optional<std::string> ReadFront(const std::filesystem::path& file, std::size_t bytes) const override {
    return Fails() ? std::nullopt : MadeUpMachine::ReadFront(file, bytes);
  }

  std::vector<std::string> KeysIn(const std::string& key) const override {
    if (!Fails()) return MadeUpMachine::KeysIn(key);
    hasFailedInRegistry = true;
    return {};
  }
  std::optional<std::string> RegisteredText(const std::string& key, const std::string& value) const override {
    if (!Fails()) return MadeUpMachine::RegisteredText(key, value);
    hasFailedInRegistry = true;
    return std::nullopt;
  }

  mutable int questionsLeft = Never;
  mutable bool hasFailedInRegistry = false;
  mutable bool hasFailed = false;

 private:
  bool Fails() const {
    if (questionsLeft == Never || questionsLeft-- != 0) return false;
    hasFailed = true;
    return true;
  }
};

class SearchFailingMachineTest : public testing::Test {
 protected:
  void SetUp() override {
    m_homes = {machine.AddRuntime("home", "11"), machine.AddRuntime("user/.jdks/a", "17"),
               machine.AddRuntime("user/.jdks/b", "21"), machine.AddRuntime("path", "25")};
    machine.Set("JAVA_HOME", m_homes[0]);
    machine.Set("HOME", machine.Path("user"));
    machine.Set("USERPROFILE", machine.Path("user"));
    machine.Set("PATH", machine.Path("path/bin"));
    if (!OnWindows) return;
    m_homes.push_back(machine.AddRuntime("registered", "19"));
    for (const char* root : {"HKLM\\SOFTWARE", "HKCU\\SOFTWARE"}) {
      machine.Register(root + std::string("\\JavaSoft\\JDK\\19"), "JavaHome", m_homes.back());
      machine.Register(root + std::string("\\Microsoft\\JDK\\19\\hotspot\\MSI"), "Path", m_homes.back());
    }
  }

  // What is found is complete, what is refused has a reason, and nothing else is listed.
  void ExpectSense(const Runtimes& runtimes) const {
    std::size_t ours = 0;
    for (const Runtime& runtime : runtimes.found) {
      for (const std::string& home : m_homes) ours += ToText(runtime.Home()) == home ? 1u : 0u;
      EXPECT_EQ(runtime.Cpu(), "x86_64");
      EXPECT_EQ(runtime.Vendor(), "Maker");
      EXPECT_FALSE(runtime.Library().empty());
      EXPECT_FALSE(runtime.FoundIn().empty());
    }
    EXPECT_EQ(ours, runtimes.found.size());
    EXPECT_GE(runtimes.found.size() + 2, m_homes.size());  // two of them are in one folder
    for (const RefusedRuntime& refused : runtimes.refused) {
      EXPECT_FALSE(refused.Reason().empty());
      EXPECT_FALSE(refused.Home().empty());
      EXPECT_FALSE(refused.FoundIn().empty());
    }
  }

  FailingMachine machine;
  std::vector<std::string> m_homes;
};

TEST_F(SearchFailingMachineTest, EachQuestionMayGoUnanswered) {
  int steps = 0;
  int registryFailures = 0;
  for (;; ++steps) {
    machine.questionsLeft = steps;
    machine.hasFailed = false;
    machine.hasFailedInRegistry = false;
    const Runtimes runtimes = SearchOf(machine);
    ExpectSense(runtimes);
    // Each home is in several places of it.
    if (machine.hasFailedInRegistry) {
      ++registryFailures;
      EXPECT_EQ(runtimes.found.size(), m_homes.size());
    }
    if (HasFailure()) FAIL() << "at question " << steps;
    if (!machine.hasFailed) break;
  }
  EXPECT_GT(steps, 50);
  EXPECT_EQ(registryFailures > 50, OnWindows) << registryFailures;
}

TEST_F(SearchFailingMachineTest, FilesThatCannotBeReadAreTheReason) {
  const std::string home = machine.Path("home");
  std::vector<std::string> reasons;
  for (machine.questionsLeft = 0;; ++machine.questionsLeft) {
    const int step = machine.questionsLeft;
    machine.hasFailed = false;
    const HomeReading reading = ReadHome(machine, ToPath(home), "place");
    if (!machine.hasFailed) break;
    if (!reading.runtime) reasons.push_back(reading.reason);
    machine.questionsLeft = step;
  }
  EXPECT_EQ(reasons.size(), 4u);
  EXPECT_NE(std::find(reasons.begin(), reasons.end(),
                      "its VM library cannot be read: " + machine.Path(std::string("home/") + LibraryFile)),
            reasons.end());
  EXPECT_NE(std::find(reasons.begin(), reasons.end(), "its release file cannot be read"), reasons.end());
}

}  // namespace
}  // namespace tests
