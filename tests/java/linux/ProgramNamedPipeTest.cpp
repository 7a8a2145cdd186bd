// Named pipes as files of a program: the start never waits for their other end.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <fstream>
#include <thread>

#include "java/processes/Probe.h"

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
  ASSERT_EQ(write(writer, "first ", 6), 6);
  std::atomic<bool> begun = false;
  std::string output;
  const Process process =
      java::Start(Probe({"says", "begun\n", "echo"}).InputFile(m_pipe).OnOutputLine([&](std::string_view line) {
        output += line;
        begun = true;
      }));
  ASSERT_TRUE(Eventually([&begun] { return begun.load(); }));
  std::this_thread::sleep_for(50ms);  // it has read the first part and waits for more
  ASSERT_EQ(write(writer, "second", 6), 6);
  close(writer);
  process.Wait();
  EXPECT_EQ(output, "begunfirst second");
}

TEST_F(ProgramNamedPipeTest, TheInputComesFromOneWhoseWriterWaitsForIt) {
  std::atomic<int> id = 0;
  std::thread writer([this, &id] {
    id = gettid();
    const int number = OpenPipe(O_WRONLY);
    EXPECT_EQ(write(number, "text", 4), 4);
    close(number);
  });
  EXPECT_TRUE(Eventually([&id] {
    std::string all;
    std::getline(std::ifstream("/proc/self/task/" + std::to_string(id) + "/stat"), all);
    return all.find(") S ") != std::string::npos;
  }));
  std::this_thread::sleep_for(50ms);  // it may have waited for something else
  const Process process = java::Start(Probe({"echo"}).InputFile(m_pipe));
  writer.join();
  EXPECT_EQ(process.Wait().output, "text");
}

TEST_F(ProgramNamedPipeTest, TheOutputGoesIntoOneThatAnotherProgramReads) {
  const int reader = OpenPipe(O_RDONLY | O_NONBLOCK);
  fcntl(reader, F_SETFL, 0);
  // More than the pipe holds, so that the program has to wait.
  const Process process = java::Start(Probe({"flood", "1000000"}).OutputFile(m_pipe));
  std::this_thread::sleep_for(50ms);
  std::string text;
  char piece[4096];
  for (ssize_t size; (size = read(reader, piece, sizeof piece)) > 0;)
    text.append(piece, static_cast<std::size_t>(size));
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
