// How children are reaped whose handles were released.
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <future>
#include <string>
#include <thread>

#include "platform/linux/ChildTest.h"
#include "platform/linux/ForkedProcess.h"

namespace tests {
namespace {

using namespace torvan::platform;

using ReleasedChildrenTest = ChildTest;

TEST_F(ReleasedChildrenTest, AChildReleasedWhileItRunsGoesOnAndIsReapedByTheNextCallAfterItsEnd) {
  const StartedProcess started = Start("run");
  system.ReleaseHandle(started.process);
  EXPECT_TRUE(IsChild(started.processId));
  EXPECT_TRUE(system.SendConsoleEvent(ControlC, started.processId)) << "it still runs";
  AwaitEnd(started.processId);
  EXPECT_TRUE(IsChild(started.processId));
  EXPECT_FALSE(system.SendConsoleEvent(ControlC, 0));
  EXPECT_FALSE(IsChild(started.processId));
}

TEST_F(ReleasedChildrenTest, AnyCallAboutProcessesReapsThem) {
  const StartedProcess held = Start("run");
  const auto orphan = [&] {
    const StartedProcess started = Start("exit 0");
    system.ReleaseHandle(started.process);
    if (IsChild(started.processId)) AwaitEnd(started.processId);
    return started.processId;
  };

  unsigned int id = orphan();
  EXPECT_EQ(258u, system.WaitFor(held.process, 0));
  EXPECT_FALSE(IsChild(id));

  id = orphan();
  unsigned int code = 0;
  EXPECT_TRUE(system.ExitCodeOf(held.process, &code));
  EXPECT_FALSE(IsChild(id));

  id = orphan();
  EXPECT_EQ(0u, Run("exit 0"));
  EXPECT_FALSE(IsChild(id));

  id = orphan();
  EXPECT_TRUE(system.EndProcess(held.process, 0));
  EXPECT_FALSE(IsChild(id));

  id = orphan();
  system.ReleaseHandle(held.process);
  EXPECT_FALSE(IsChild(id));
  if (IsChild(held.processId)) AwaitEnd(held.processId);
  system.ReleaseHandle(nullptr);
}

TEST_F(ReleasedChildrenTest, AnEndedChildIsReapedByTheReleaseOfItsHandle) {
  const StartedProcess started = Start("exit 0");
  AwaitEnd(started.processId);
  system.ReleaseHandle(started.process);
  EXPECT_FALSE(IsChild(started.processId));
}

TEST_F(ReleasedChildrenTest, AnEndedChildAnswersUntilItsHandleIsReleased) {
  const StartedProcess started = Start("exit 6");
  EXPECT_EQ(0u, system.WaitFor(started.process, 0xFFFFFFFF));
  for (int asked = 0; asked < 2; ++asked) {
    unsigned int code = 0;
    EXPECT_TRUE(system.ExitCodeOf(started.process, &code));
    EXPECT_EQ(6u, code);
  }
  EXPECT_TRUE(IsChild(started.processId)) << "no other process can have its id";
  system.ReleaseHandle(started.process);
  EXPECT_FALSE(IsChild(started.processId));
}

TEST_F(ReleasedChildrenTest, AChildWhoseThreadHasEndedIsReapedByACallOfAnother) {
  unsigned int released = 0;
  std::thread([&] { released = StartAndRelease(); }).join();
  End(released);
  system.ReleaseHandle(nullptr);
  EXPECT_FALSE(IsChild(released));
}

TEST_F(ReleasedChildrenTest, ChildrenThatTheHostOrAHandleKeepsHideNoneAndStay) {
  const pid_t own = Fork([] { _exit(9); });
  const StartedProcess held = Start("exit 8");
  AwaitEnd(static_cast<unsigned int>(own));
  AwaitEnd(held.processId);
  std::promise<unsigned int> released;
  std::promise<void> isReaped;
  std::thread living([&] {
    released.set_value(StartAndRelease());
    isReaped.get_future().wait();
  });
  const unsigned int id = released.get_future().get();
  End(id);
  system.ReleaseHandle(nullptr);
  EXPECT_FALSE(IsChild(id));
  isReaped.set_value();
  living.join();

  EXPECT_EQ(8u, Finish(held));
  int status = 0;
  EXPECT_EQ(own, waitpid(own, &status, WNOHANG));
  EXPECT_EQ(9, WEXITSTATUS(status));
}

// A host that is a child of another one: its own children inherit the mark that it has there.
TEST_F(ReleasedChildrenTest, TheChildrenOfAReleasedChildAreNotReleased) {
  InForkedProcess([this] {
    rlimit limit{};
    ASSERT_EQ(0, getrlimit(RLIMIT_LOCKS, &limit));
    --limit.rlim_cur;
    ASSERT_EQ(0, setrlimit(RLIMIT_LOCKS, &limit));
    const StartedProcess held = Start("exit 8");
    AwaitEnd(held.processId);
    system.ReleaseHandle(nullptr);
    EXPECT_EQ(8u, Finish(held));
    const unsigned int released = StartAndRelease();
    End(released);
    system.ReleaseHandle(nullptr);
    EXPECT_FALSE(IsChild(released));
  });
}

TEST_F(ReleasedChildrenTest, AnEndedChildIsReapedByTheReleaseOfItsHandleWhereChildrenCannotBeMarked) {
  InForkedProcess([this] {
    const StartedProcess started = Start("exit 0");
    AwaitEnd(started.processId);
    Refuse(SYS_prlimit64, EPERM);
    system.ReleaseHandle(started.process);
    EXPECT_FALSE(IsChild(started.processId));
  });
}

TEST_F(ReleasedChildrenTest, ThreadsStartAndReleaseChildrenTogether) {
  const auto work = [this] {
    for (int i = 0; i < 20; ++i) {
      const StartedProcess dropped = Start("exit 0");
      system.ReleaseHandle(dropped.process);
      EXPECT_EQ(static_cast<unsigned int>(i), Run("exit " + std::to_string(i)));
    }
  };
  std::thread other(work);
  work();
  other.join();
  for (siginfo_t information{}; waitid(P_ALL, 0, &information, WEXITED | WNOWAIT) == 0;) system.ReleaseHandle(nullptr);
}

}  // namespace
}  // namespace tests
