// Tests in a process forked from the test program.
#pragma once

#include <gtest/gtest.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <iterator>

namespace tests {

constexpr unsigned int ForkedSeconds = 30;

// Runs the body in a process forked from this one, which ends when the body returns. One that hangs is killed.
template <typename Body>
pid_t Fork(Body body) {
  const pid_t id = fork();
  if (id != 0) return id;
  alarm(ForkedSeconds);
  body();
  _exit(testing::Test::HasFailure() ? 1 : 0);
}

// Waits for the end of a forked process. It prints its failed expectations itself; they fail this test, too.
inline void Join(pid_t id) {
  int status = 0;
  while (waitpid(id, &status, 0) < 0 && errno == EINTR) {
  }
  EXPECT_TRUE(WIFEXITED(status)) << "ended by signal " << WTERMSIG(status);
  EXPECT_EQ(0, WEXITSTATUS(status));
}

template <typename Body>
void InForkedProcess(Body body) {
  Join(Fork(body));
}

// Makes a system call fail with an error from now on, except with `allowed` as its first argument. kill() by number
// ends the process. Lasts as long as this process.
inline void Refuse(unsigned int call, int error, pid_t allowed = -1) {
  const auto argument = static_cast<unsigned int>(offsetof(seccomp_data, args[0]));
  sock_filter filter[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, static_cast<unsigned int>(offsetof(seccomp_data, nr))),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_kill, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_KILL_PROCESS),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, call, 0, 3),
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, argument),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned int>(allowed), 1, 0),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | static_cast<unsigned int>(error)),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  const sock_fprog program{static_cast<unsigned short>(std::size(filter)), filter};
  ASSERT_EQ(0, prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0));
  ASSERT_EQ(0, prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program));
}

}  // namespace tests
