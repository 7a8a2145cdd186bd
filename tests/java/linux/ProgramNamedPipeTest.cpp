// Named pipes as files of a program: the start never waits for their other end.
#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <thread>

#include "java/processes/Probe.h"
#include "java/processes/linux/StatFile.h"

namespace tests {
namespace {

using java::Process;
using java::Program;
using java::StartFailure;
namespace fs = std::filesystem;

class ProgramNamedPipeTest : public testing::Test {
 protected:
  ProgramNamedPipeTest() { EXPECT_EQ(mkfifo(m_pipe.c_str(), 0600), 0); }
  ~ProgramNamedPipeTest() override { fs::remove(m_pipe); }

  // Opens it, which waits for nothing with these flags.
  int OpenPipe(int flags) const {
    const int number = open(m_pipe.c_str(), flags | O_CLOEXEC);
    EXPECT_GE(number, 0);
    return number;
  }
  std::string TextOf(const char* kind, const char* reason) const {
    return std::string("Could not open the ") + kind + " file \"" + m_pipe.string() + "\" for \"" +
           JavaOf(ProbeHome()).string() + "\": " + reason;
  }

  const fs::path m_pipe = ProbeHome() / "a pipe";
};

// Tells whether a process or a thread waits for something that may take any time.
bool Waits(const fs::path& folder) {
  const auto fields = StatOf(folder);
  return !fields.empty() && fields[0] == "S";
}

// Tells whether a thread of this process waits in open(): for the other end of a pipe, for nothing else is so slow.
bool WaitsInOpen(int thread) {
  const fs::path folder = "/proc/self/task/" + std::to_string(thread);
  long call = -1;
  return std::ifstream(folder / "syscall") >> call && call == SYS_openat && Waits(folder);
}

TEST_F(ProgramNamedPipeTest, OneWithoutItsOtherEndIsRefused) {
  const std::string noWriter = TextOf("input", "no program writes to this named pipe yet");
  const std::string noReader = TextOf("output", "no program reads this named pipe yet");
  ExpectThrow<StartFailure>([this] { java::Run(Probe({}).InputFile(m_pipe).TimeLimit(100ms)); }, noWriter);
  ExpectThrow<StartFailure>([this] { java::Start(Probe({}).InputFile(m_pipe)); }, noWriter);
  ExpectThrow<StartFailure>([this] { Probe({}).InputFile(m_pipe).Detached(); }, noWriter);
  ExpectThrow<StartFailure>([this] { java::Run(Probe({}).OutputFile(m_pipe)); }, noReader);
  ExpectThrow<StartFailure>([this] { java::Run(Probe({}).ErrorFile(m_pipe)); }, noReader);
}

TEST_F(ProgramNamedPipeTest, TheInputComesFromOneThatAnotherProgramWrites) {
  const int writer = OpenPipe(O_RDWR);
  ASSERT_EQ(write(writer, "first\n", 6), 6);
  std::atomic<bool> hasFirst = false;
  std::string output;
  const Process process = java::Start(Probe({"echo"}).InputFile(m_pipe).OnOutputLine([&](std::string_view line) {
    output += line;
    hasFirst = true;
  }));
  const fs::path folder = "/proc/" + std::to_string(process.Id());
  EXPECT_TRUE(Eventually([&] { return hasFirst && Waits(folder); }));  // for more
  ASSERT_EQ(write(writer, "second", 6), 6);
  close(writer);
  process.Wait();
  EXPECT_EQ(output, "firstsecond");
}

TEST_F(ProgramNamedPipeTest, TheInputComesFromOneWhoseWriterWaitsForIt) {
  std::atomic<int> id = 0;
  std::thread writer([this, &id] {
    id = gettid();
    const int number = OpenPipe(O_WRONLY);
    EXPECT_EQ(write(number, "text", 4), 4);
    close(number);
  });
  EXPECT_TRUE(Eventually([&id] { return WaitsInOpen(id); }));
  const Process process = java::Start(Probe({"echo"}).InputFile(m_pipe));
  writer.join();
  EXPECT_EQ(process.Wait().output, "text");
}

TEST_F(ProgramNamedPipeTest, TheOutputGoesIntoOneThatAnotherProgramReads) {
  const int reader = OpenPipe(O_RDONLY | O_NONBLOCK);
  fcntl(reader, F_SETFL, 0);
  // More than the pipe holds, so that the program has to wait.
  const Process process = java::Start(Probe({"flood", "1000000"}).OutputFile(m_pipe));
  int size = 0;
  EXPECT_TRUE(Eventually([&] { return ioctl(reader, FIONREAD, &size) == 0 && size == fcntl(reader, F_GETPIPE_SZ); }));
  std::string text;
  char piece[4096];
  for (ssize_t count; (count = read(reader, piece, sizeof piece)) > 0;) {
    text.append(piece, static_cast<std::size_t>(count));
  }
  close(reader);
  EXPECT_EQ(process.Wait().exitCode, 0);
  EXPECT_EQ(text, std::string(1000000, 'o') + "\n0\n");
}

TEST_F(ProgramNamedPipeTest, APipeWithoutANameMayBeAtItsEnd) {
  int ends[2];
  ASSERT_EQ(pipe2(ends, O_CLOEXEC), 0);
  close(ends[1]);
  const fs::path file = "/proc/self/fd/" + std::to_string(ends[0]);
  EXPECT_EQ(java::Run(Probe({"echo", "says", "end"}).InputFile(file)).output, "end");
  close(ends[0]);
}

}  // namespace
}  // namespace tests
