#include <gmock/gmock.h>

#include "fakes/FakeSystem.h"
#include "platform/World.h"

namespace tests {
namespace {

int FortyTwo() { return 42; }

class FakeWorld : public World {
 public:
  FakeWorld() {
    key = "Software\\Contract";
    subKeys = {"Alpha", "Beta"};
    leafKey = "Alpha";
    valueName = "JavaHome";
    value = "C:\\Program Files\\J\xC3\xA4va";
    module = "C:\\library.dll";
    function = "FortyTwo";
    file = "C:\\file";
    directory = "C:\\folder";
    missing = "C:\\missing";
    m_system.SetValue("Software\\Contract\\Alpha", valueName, value);
    m_system.AddKey("Software\\Contract\\Beta");
    m_system.AddModule(module, {{function, reinterpret_cast<void*>(&FortyTwo)}});
    m_system.AddFile(file);
    m_system.AddDirectory(directory);
  }

  torvan::platform::System& GetSystem() override { return m_system; }

  std::string ProcessThatExits(int code) override {
    FakeProcess process;
    process.exitCode = static_cast<unsigned int>(code);
    m_system.AddProcess(process);
    return "process.exe exit";
  }

  std::string ProcessThatRuns() override {
    FakeProcess process;
    process.timeouts = FakeProcess::Never;
    m_system.AddProcess(process);
    return "process.exe run";
  }

  void ExpectNothingOpen() override {
    EXPECT_THAT(m_system.OpenKeys(), testing::IsEmpty());
    EXPECT_THAT(m_system.LoadedModules(), testing::IsEmpty());
    EXPECT_THAT(m_system.OpenHandles(), testing::IsEmpty());
  }

 private:
  FakeSystem m_system;
};

}  // namespace

std::unique_ptr<World> MakeWorld() { return std::make_unique<FakeWorld>(); }

}  // namespace tests
