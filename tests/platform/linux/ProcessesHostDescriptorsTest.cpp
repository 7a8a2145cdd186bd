// What a host may do with its descriptors while children of the library live.
#include <fcntl.h>
#include <sched.h>
#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cstdint>
#include <string>
#include <vector>

#include "platform/linux/ChildTest.h"
#include "platform/linux/ForkedProcess.h"

namespace tests {
namespace {

using namespace torvan::platform;

using ProcessesHostDescriptorsTest = ChildTest;

void CloseAllAsDaemonsDo() { ASSERT_EQ(0, close_range(STDERR_FILENO + 1, ~0u, 0)); }

TEST_F(ProcessesHostDescriptorsTest, MayCloseEveryDescriptorAndLaunch) {
  InForkedProcess([this] {
    const StartedProcess held = Start("run");
    const unsigned int released = StartAndRelease();
    CloseAllAsDaemonsDo();
    std::vector<int> files;  // they get the numbers that were closed
    while (files.size() < 20) files.push_back(open("/dev/null", O_RDONLY | O_CLOEXEC));

    EXPECT_EQ(258u, system.WaitFor(held.process, 0));
    EXPECT_TRUE(system.EndProcess(held.process, 7));
    EXPECT_EQ(0u, system.WaitFor(held.process, 60000));
    EXPECT_EQ(7u, Finish(held));
    End(released);
    system.ReleaseHandle(nullptr);
    EXPECT_FALSE(IsChild(released));
    EXPECT_EQ(5u, Run("exit 5"));
    for (const int file : files) EXPECT_EQ(FD_CLOEXEC, fcntl(file, F_GETFD)) << file;
  });
}

struct Registration {
  const char* name;
  bool byPointer;
  std::uint32_t flags;
};

void PrintTo(const Registration& registration, std::ostream* stream) { *stream << registration.name; }

class ProcessesHostDescriptorsEpollTest : public ProcessesHostDescriptorsTest,
                                          public testing::WithParamInterface<Registration> {};

// Any descriptor number that the library might have kept is now one of the host's epoll sets.
TEST_P(ProcessesHostDescriptorsEpollTest, IsNeitherReadNorClosed) {
  struct Set {
    int epoll;
    int event;
    epoll_event wanted;
  };
  InForkedProcess([this] {
    CloseAllAsDaemonsDo();
    std::vector<Set> sets(10);
    for (Set& set : sets) {
      set = {epoll_create1(EPOLL_CLOEXEC), eventfd(1, EFD_CLOEXEC), {}};
      set.wanted.events = EPOLLIN | GetParam().flags;
      if (GetParam().byPointer) {
        set.wanted.data.ptr = &set;
      } else {
        set.wanted.data.fd = set.event;
      }
      ASSERT_EQ(0, epoll_ctl(set.epoll, EPOLL_CTL_ADD, set.event, &set.wanted));
    }

    const unsigned int released = StartAndRelease();
    End(released);
    EXPECT_EQ(3u, Run("exit 3"));
    EXPECT_FALSE(IsChild(released));

    for (const Set& set : sets) {
      epoll_event seen{};
      EXPECT_EQ(1, epoll_wait(set.epoll, &seen, 1, 0)) << set.epoll;
      // The structure is packed, so that its members have no references.
      EXPECT_EQ(std::uint64_t{set.wanted.data.u64}, std::uint64_t{seen.data.u64});
      eventfd_t value = 0;
      EXPECT_EQ(0, eventfd_read(set.event, &value)) << set.event;
      EXPECT_EQ(1u, value);
    }
  });
}

INSTANTIATE_TEST_SUITE_P(
    Sets, ProcessesHostDescriptorsEpollTest,
    testing::Values(Registration{"ByDescriptor", false, 0}, Registration{"ByDescriptorEdge", false, EPOLLET},
                    Registration{"ByDescriptorOneShot", false, EPOLLONESHOT}, Registration{"ByPointer", true, 0},
                    Registration{"ByPointerEdge", true, EPOLLET}, Registration{"ByPointerOneShot", true, EPOLLONESHOT}),
    [](const auto& registration) { return std::string(registration.param.name); });

TEST_F(ProcessesHostDescriptorsTest, WithoutStandardDescriptorsTheChildHasEmptyOnes) {
  InForkedProcess([this] {
    ASSERT_EQ(0, close_range(STDIN_FILENO, STDERR_FILENO, 0));
    const unsigned int open = Run("standard");
    const bool areTaken =
        fcntl(STDIN_FILENO, F_GETFD) >= 0 || fcntl(STDOUT_FILENO, F_GETFD) >= 0 || fcntl(STDERR_FILENO, F_GETFD) >= 0;
    _exit(open == 3 && !areTaken ? 0 : 1);  // there is nothing to print to
  });
}

TEST_F(ProcessesHostDescriptorsTest, HoldsNoDescriptorForItsChildren) {
  const int before = CountDescriptors();
  const StartedProcess held = Start("exit 0");
  const unsigned int released = StartAndRelease();
  EXPECT_EQ(before, CountDescriptors());
  End(released);
  EXPECT_EQ(0u, Finish(held));
}

TEST_F(ProcessesHostDescriptorsTest, CanOpenNoMoreDescriptorsAndStillWaitsForItsChildrenAndEndsThem) {
  InForkedProcess([this] {
    const StartedProcess running = Start("run");
    const StartedProcess ending = Start("after 100 3");
    const int next = open("/dev/null", O_RDONLY);
    close(next);
    const rlimit none{static_cast<rlim_t>(next), static_cast<rlim_t>(next)};
    ASSERT_EQ(0, setrlimit(RLIMIT_NOFILE, &none));

    auto line = Widen(ProcessFixture("run"));
    StartedProcess started{};
    EXPECT_FALSE(system.StartProcess(line.data(), false, 0, &started));
    EXPECT_EQ(258u, system.WaitFor(running.process, 0));
    EXPECT_EQ(0xFFFFFFFF, system.WaitFor(running.process, 10)) << "there is nothing to wait with";
    EXPECT_EQ(3u, Finish(ending));
    EXPECT_TRUE(system.EndProcess(running.process, 5));
    EXPECT_EQ(5u, Finish(running));
  });
}

bool HideProc() {
  return unshare(CLONE_NEWNS) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
         mount("none", "/proc", "tmpfs", 0, nullptr) == 0;
}

TEST_F(ProcessesHostDescriptorsTest, SeesNoProcAndLaunches) {
  constexpr int MayNotHideIt = 77;
  const auto program = Widen(ProcessFixture("run"));
  const pid_t host = Fork([&] {
    if (!HideProc()) _exit(MayNotHideIt);
    StartedProcess released{};
    StartedProcess held{};
    for (StartedProcess* started : {&released, &held}) {
      auto line = program;
      EXPECT_TRUE(system.StartProcess(line.data(), false, 0, started));
    }
    system.ReleaseHandle(released.process);
    End(released.processId);
    EXPECT_EQ(258u, system.WaitFor(held.process, 10));
    EXPECT_FALSE(IsChild(released.processId));
    EXPECT_TRUE(system.EndProcess(held.process, 4));
    EXPECT_EQ(4u, Finish(held));
  });
  int status = 0;
  ASSERT_EQ(host, waitpid(host, &status, 0));
  if (WIFEXITED(status) && WEXITSTATUS(status) == MayNotHideIt) GTEST_SKIP() << "this process may not hide /proc";
  EXPECT_EQ(0, status);
}

}  // namespace
}  // namespace tests
