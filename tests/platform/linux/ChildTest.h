// Children of the test, started through the native system.
#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>

#include <cerrno>
#include <string>

#include "fakes/WideText.h"
#include "platform/System.h"
#include "platform/linux/Fixtures.h"

namespace tests {

class ChildTest : public testing::Test {
 protected:
  ~ChildTest() override {
    errno = 0;
    EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG)) << "a child is left";
    EXPECT_EQ(ECHILD, errno);
    EXPECT_EQ(m_descriptors, CountDescriptors());
  }

  torvan::platform::StartedProcess Start(const std::string& arguments, bool inheritHandles = false) {
    auto line = Widen(ProcessFixture(arguments));
    torvan::platform::StartedProcess started{};
    EXPECT_TRUE(system.StartProcess(line.data(), inheritHandles, 0, &started)) << arguments;
    EXPECT_EQ(nullptr, started.thread);
    return started;
  }

  // Waits for the end, releases the handle and returns the exit code.
  unsigned int Finish(const torvan::platform::StartedProcess& started) {
    EXPECT_EQ(0u, system.WaitFor(started.process, 0xFFFFFFFF));
    unsigned int code = 0xFFFFFFFF;
    EXPECT_TRUE(system.ExitCodeOf(started.process, &code));
    system.ReleaseHandle(started.process);
    return code;
  }

  unsigned int Run(const std::string& arguments, bool inheritHandles = false) {
    return Finish(Start(arguments, inheritHandles));
  }

  // Starts a child and releases its handle while it runs; ends the child later.
  unsigned int StartAndRelease() {
    const torvan::platform::StartedProcess started = Start("run");
    system.ReleaseHandle(started.process);
    return started.processId;
  }
  static void End(unsigned int id) {
    EXPECT_EQ(0, kill(static_cast<pid_t>(id), SIGKILL));
    AwaitEnd(id);
  }

  // Waits until the child has ended, and leaves it to be reaped by others.
  static void AwaitEnd(unsigned int id) {
    siginfo_t information{};
    EXPECT_EQ(0, waitid(P_PID, id, &information, WEXITED | WNOWAIT));
  }
  static bool IsChild(unsigned int id) {
    siginfo_t information{};
    return waitid(P_PID, id, &information, WEXITED | WNOWAIT | WNOHANG) == 0;
  }

  torvan::platform::System& system = torvan::platform::System::Native();

 private:
  const int m_descriptors = CountDescriptors();
};

}  // namespace tests
