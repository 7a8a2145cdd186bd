// Loading and unloading the library changes nothing in the process.
#include <dlfcn.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

namespace tests {
namespace {

// The open descriptors, the threads, and how each signal is handled.
struct Traces {
  std::vector<int> descriptors;
  std::size_t threads = 0;
  std::vector<void (*)(int)> handlers;

  bool operator==(const Traces& other) const {
    return descriptors == other.descriptors && threads == other.threads && handlers == other.handlers;
  }
};

Traces TracesOfThisProcess() {
  Traces traces;
  for (int descriptor = 0; descriptor < 256; ++descriptor) {
    if (fcntl(descriptor, F_GETFD) >= 0) traces.descriptors.push_back(descriptor);
  }
  for (const auto& thread : std::filesystem::directory_iterator("/proc/self/task")) traces.threads += thread.exists();
  for (int number = 1; number < NSIG; ++number) {
    struct sigaction action {};
    traces.handlers.push_back(sigaction(number, nullptr, &action) == 0 ? action.sa_handler : nullptr);
  }
  return traces;
}

// Checks in its own process whether loading changes anything; the exit code is 0 if it does not.
int Load(bool hasStandardDescriptors) {
  const pid_t child = fork();
  if (child == 0) {
    if (!hasStandardDescriptors) close_range(STDIN_FILENO, STDERR_FILENO, 0);
    const Traces before = TracesOfThisProcess();
    void* const library = dlopen(TORVAN_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) _exit(1);
    if (!(TracesOfThisProcess() == before)) _exit(2);
    if (dlclose(library) != 0) _exit(3);
    _exit(TracesOfThisProcess() == before ? 0 : 4);
  }
  int status = 0;
  EXPECT_EQ(child, waitpid(child, &status, 0));
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST(LoadTest, OpensNoDescriptorStartsNothingAndTakesNoSignal) { EXPECT_EQ(0, Load(true)); }

TEST(LoadTest, TakesNoStandardDescriptorThatIsFree) { EXPECT_EQ(0, Load(false)); }

}  // namespace
}  // namespace tests
