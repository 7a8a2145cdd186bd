// Tests in a process that is forked from the test program's own.
#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace platform_tests {

constexpr unsigned int ForkedSeconds = 30;

// Starts the body in a process forked from this one, which ends when the body returns; one that hangs is ended.
template <typename Body>
pid_t Fork(Body body) {
  const pid_t id = fork();
  if (id != 0) return id;
  alarm(ForkedSeconds);
  body();
  _exit(testing::Test::HasFailure() ? 1 : 0);
}

// Waits for the end of a forked process. Its failed expectations are printed by itself, and fail this test, too.
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

}  // namespace platform_tests
