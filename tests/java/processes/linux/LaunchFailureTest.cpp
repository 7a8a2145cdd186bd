// Programs that cannot start on Linux: what may not be run, and too many open files.
#include <sys/resource.h>

#include "ChildProcess.h"
#include "java/processes/Probe.h"

namespace tests {
namespace {

using java::StartFailure;
namespace fs = std::filesystem;

TEST(LaunchFailureTest, AJavaThatMayNotBeRun) {
  const fs::path denied = HomeWith("no permission", "text");
  fs::permissions(JavaOf(denied), fs::perms::owner_read);
  ExpectThrow<StartFailure>([&] { java::Run(java::Program::MainClass("X").Runtime(denied)); },
                            "Could not run \"" + JavaOf(denied).u8string() + "\": Permission denied");
}

void StartWithFewerAndFewerFiles() {
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
  std::vector<std::string> texts;
  for (rlim_t limit = 3; limit < 32; ++limit) {
    const rlimit less{limit, before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &less), 0);
    try {
      java::Run(Probe({"exit", "0"}).Input("x"));
    } catch (const StartFailure& failure) {
      texts.emplace_back(failure.what());
    }
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
  }
  ASSERT_FALSE(texts.empty());
  EXPECT_LT(texts.size(), 29u);
  for (const std::string& text : texts) EXPECT_NE(text.find(": Too many open files"), std::string::npos) << text;
}

// In its own process: the C library never opens a locale again that it could not open once.
TEST(LaunchFailureTest, TooManyOpenFiles) {
  const auto body = [] {
    StartWithFewerAndFewerFiles();
    ExitWithTheResult();
  };
  EXPECT_EXIT(body(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace tests
