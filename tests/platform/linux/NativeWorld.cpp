#include <gtest/gtest.h>

#include <cstdlib>

#include "platform/TemporaryFolder.h"
#include "platform/World.h"
#include "platform/linux/Fixtures.h"

namespace tests {
namespace {

// The registry shows the machine's own runtimes and, through JAVA_HOME, one made for the test.
class NativeWorld : public World {
 public:
  NativeWorld() {
    AddRuntime(m_folder, "J\xC3\xA4va", "99.8.7", true);
    setenv("JAVA_HOME", m_folder.Path("J\xC3\xA4va").c_str(), 1);
    key = "Software\\JavaSoft\\Java Runtime Environment";
    subKeys = {"99.8.7"};
    leafKey = "99.8.7";
    valueName = "JavaHome";
    value = m_folder.Path("J\xC3\xA4va");
    module = ModuleFixture();
    function = "FortyTwo";
    file = m_folder.AddFile("file");
    directory = m_folder.Path();
    missing = m_folder.Path("missing");
  }
  ~NativeWorld() override { unsetenv("JAVA_HOME"); }

  torvan::platform::System& GetSystem() override { return torvan::platform::System::Native(); }
  std::string ProcessThatExits(int code) override { return ProcessFixture("exit " + std::to_string(code)); }
  std::string ProcessThatRuns() override { return ProcessFixture("run"); }
  void ExpectNothingOpen() override { EXPECT_EQ(m_descriptors, CountDescriptors()); }

 private:
  const int m_descriptors = CountDescriptors();
  TemporaryFolder m_folder;
};

}  // namespace

std::unique_ptr<World> MakeWorld() { return std::make_unique<NativeWorld>(); }

}  // namespace tests
