// The search as a host uses it, on the machine that runs this test.
#include <torvan/java/Runtimes.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <torvan/java/Failure.h>

#include <thread>

#include "java/runtimes/MadeUpMachine.h"

namespace tests {
namespace {

using namespace torvan::java;

using detail::ToPath;
using detail::ToText;
using testing::ElementsAre;

std::string FailureOf(const std::string& home) {
  try {
    RuntimeIn(ToPath(home));
  } catch (const StartFailure& failure) {
    return failure.what();
  }
  return "no failure";
}

TEST(RuntimesTest, AHostFindsWhatItBringsAlong) {
  MadeUpMachine machine;
  const std::string home = machine.AddRuntime("application/runtime", "21.0.6", false);
  EXPECT_THAT(Lines(FindRuntimes(ToPath(machine.Path("application")))),
              ElementsAre(home + " 21.0.6 " + machine.Path("application")));
  const Runtime runtime = RuntimeIn(ToPath(home));
  EXPECT_EQ(runtime.Version().Feature(), 21);
  EXPECT_EQ(runtime.FoundIn(), home);
}

// Whatever files the application has beside it.
TEST(RuntimesTest, TheJreOfAnApplicationIsItsOwnHome) {
  MadeUpMachine machine;
  const std::string home = machine.AddRuntime("application/jre", "17", false);
  machine.AddFile("application/release", "1.0\n");
  machine.AddProgram(std::string("application/") + CompilerFile);
  EXPECT_EQ(ToText(RuntimeIn(ToPath(home)).Home()), home);
  EXPECT_EQ(Lines(FindRuntimes(ToPath(machine.Path("application")))).front(),
            home + " 17 " + machine.Path("application"));
}

TEST(RuntimesTest, AHomeThatIsNoneIsAFailure) {
  MadeUpMachine machine;
  machine.AddRuntime("jdk", "17");
  machine.AddFile("jdk/release", "");
  EXPECT_EQ(FailureOf(machine.Path("jdk")),
            "No Java runtime that will do is in " + machine.Path("jdk") + ": its release file tells no version");
  const std::string nowhere = machine.Path("nowhere");
  EXPECT_EQ(FailureOf(nowhere), "No Java runtime that will do is in " + nowhere + ": " +
                                    detail::ThisMachine().Locate(ToPath(nowhere)).reason);
}

TEST(RuntimesTest, OnThisMachineWhatIsFoundCanBeFoundAgain) {
  const Runtimes runtimes = FindRuntimes();
  for (const Runtime& runtime : runtimes.found) {
    const Runtime again = RuntimeIn(runtime.Home());
    EXPECT_EQ(again.Home(), runtime.Home());
    EXPECT_EQ(again.Version(), runtime.Version());
    EXPECT_EQ(again.Library(), runtime.Library());
    EXPECT_TRUE(detail::ThisMachine().IsFile(runtime.Library()));
  }
  if (runtimes.found.empty()) {
    EXPECT_THROW(ChooseRuntime(), StartFailure);
  } else {
    EXPECT_EQ(ChooseRuntime().Home(), runtimes.found.front().Home());
  }
}

TEST(RuntimesTest, ThreadsMayLookAtOnce) {
  const std::vector<std::string> expected = Lines(FindRuntimes());
  std::vector<std::vector<std::string>> found(8);
  std::vector<std::thread> threads;
  for (auto& lines : found) threads.emplace_back([&lines] { lines = Lines(FindRuntimes()); });
  for (std::thread& thread : threads) thread.join();
  for (const auto& lines : found) EXPECT_EQ(lines, expected);
}

}  // namespace
}  // namespace tests
