// Launches of a Java that is installed: a folder for each test, and the environment of the launched program.
#pragma once

#include <torvan/jvmlauncher/options/ClassPathOption.h>

#include "jvmlauncher/LaunchSystemTest.h"

namespace tests {

class JavaVmLauncherJavaTest : public testing::Test {
 protected:
  void SetUp() override {
    std::filesystem::remove_all(m_folder);
    std::filesystem::create_directories(m_folder);
    Set("LAUNCH_PROBE_REPORT", TORVAN_LAUNCH_REPORTS "/report");  // read by Java, which takes no backslash there
  }
  void TearDown() override {
    std::filesystem::remove_all(m_folder);
    for (const std::string& name : m_names) UnsetEnvironment(name.c_str());
  }

  void Set(const std::string& name, const std::string& value) {
    SetEnvironment(name.c_str(), value);
    m_names.push_back(name);
  }
  std::filesystem::path Report() const { return m_folder / "report"; }

  // Options with the fixture's class path, which has a space.
  static torvan::jvmlauncher::CJavaVmOptions WithClasses() {
    torvan::jvmlauncher::options::CClassPathOption classPath;
    classPath.AddEntry(Widen(TORVAN_LAUNCH_CLASSES).c_str());
    torvan::jvmlauncher::CJavaVmOptions options;
    options.AddOption(classPath);
    return options;
  }

  static Process Launch(const torvan::jvmlauncher::CJavaVmOptions& options, const RX::UniChar* mainClass,
                        const torvan::jvmlauncher::CArgumentList& arguments) {
    return torvan::jvmlauncher::CJavaVmLauncher(RX_TEXT("1.8")).Launch(options, mainClass, arguments);
  }

  const std::filesystem::path m_folder = TORVAN_LAUNCH_REPORTS;

 private:
  std::vector<std::string> m_names;
};

}  // namespace tests
