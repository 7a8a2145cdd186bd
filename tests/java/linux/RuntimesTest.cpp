// The search on this machine, compared with what is in the folder where its packages install Java.
#include <torvan/java/Runtimes.h>

#include <ThisSystem.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>

namespace tests {
namespace {

using namespace torvan::java;
namespace fs = std::filesystem;

std::set<fs::path> InstalledHomes() {
  std::set<fs::path> homes;
  std::error_code error;
  for (const auto& entry : fs::directory_iterator("/usr/lib/jvm", error)) {
    const fs::path home = fs::weakly_canonical(entry.path(), error);
    if (fs::is_regular_file(home / "lib/server/libjvm.so") && fs::is_regular_file(home / "release")) homes.insert(home);
  }
  return homes;
}

TEST(RuntimesTest, WhatIsInstalledIsFoundWithoutAnyVariable) {
  const std::set<fs::path> installed = InstalledHomes();
  if (installed.empty()) GTEST_SKIP() << "there is no Java in /usr/lib/jvm";
  for (const char* name : {"JAVA_HOME", "JDK_HOME", "PATH"}) SetVariable(name, "");
  const Runtimes runtimes = FindRuntimes();
  for (const fs::path& home : installed) {
    const auto isOfAnotherCpu = [&](const RefusedRuntime& refused) {
      return refused.Home() == home && refused.Reason().rfind("its VM library is for ", 0) == 0;
    };
    if (std::any_of(runtimes.refused.begin(), runtimes.refused.end(), isOfAnotherCpu)) continue;
    std::vector<std::string> foundIn;
    for (const Runtime& runtime : runtimes.found) {
      if (runtime.Home() == home) foundIn.push_back(runtime.FoundIn());
    }
    EXPECT_THAT(foundIn, testing::ElementsAre("/usr/lib/jvm")) << home;
  }
}

}  // namespace
}  // namespace tests
