// Launches of the probe by the real operating system.
#pragma once

#include <gmock/gmock.h>
#include <torvan/jvmlauncher/JavaVmLauncher.h>

#include <optional>
#include <string>
#include <vector>

#include "fakes/WideText.h"
#include "jvmlauncher/Access.h"
#include "jvmlauncher/ProbeRuntime.h"

namespace tests {

using Process = mirel::base::CRef<torvan::jvmlauncher::CJavaVmProcess>;

constexpr int LongMilliseconds = 60000;  // for a program that is ended earlier

// One probe runtime for all tests of a program; a report file for each launch.
class LaunchSystemTest : public testing::Test {
 protected:
  static void SetUpTestSuite() { s_runtime.emplace(); }
  static void TearDownTestSuite() { s_runtime.reset(); }

  void SetUp() override { SetProbe(0, 0); }
  void TearDown() override {
    for (const char* name : {"LAUNCH_PROBE_REPORT", "LAUNCH_PROBE_MILLISECONDS", "LAUNCH_PROBE_EXIT"}) {
      UnsetEnvironment(name);
    }
  }

  // How long the programs launched from now on run, and their exit code.
  static void SetProbe(int milliseconds, long exitCode) {
    SetEnvironment("LAUNCH_PROBE_MILLISECONDS", std::to_string(milliseconds));
    SetEnvironment("LAUNCH_PROBE_EXIT", std::to_string(exitCode));
  }

  // Where the programs launched from now on report to; another file for each call.
  static std::filesystem::path NewReport() {
    static int s_reports = 0;
    const auto report = s_runtime->Folder() / ("report " + std::to_string(++s_reports));
    SetEnvironment("LAUNCH_PROBE_REPORT", report.string());
    return report;
  }

  static Process Launch(const torvan::jvmlauncher::CJavaVmOptions& options, const RX::UniChar* mainClass,
                        const torvan::jvmlauncher::CArgumentList& arguments) {
    return torvan::jvmlauncher::CJavaVmLauncher(RX_TEXT("99")).Launch(options, mainClass, arguments);
  }
  static Process LaunchMain() { return Launch({}, RX_TEXT("Main"), {}); }

  // Launches the probe and returns the arguments that it received; on Windows also compares its raw command line.
  static std::vector<std::string> Received(const torvan::jvmlauncher::CJavaVmOptions& options,
                                           const RX::UniChar* mainClass,
                                           const torvan::jvmlauncher::CArgumentList& arguments) {
    const auto report = NewReport();
    const Process process = Launch(options, mainClass, arguments);
    EXPECT_TRUE(process->Wait(60000));
    std::vector<std::string> facts = ReadReport(report);
    if (!OnWindows) return facts;
    const std::string main = mainClass != nullptr ? Narrow(mainClass) + " " : "";
    const std::string line = "\"" + s_runtime->Program().string() + "\" " + LineOf(options) + main + LineOf(arguments);
    if (facts.empty()) return facts;
    EXPECT_EQ(facts.front(), line);
    facts.erase(facts.begin());
    return facts;
  }

  static torvan::jvmlauncher::CArgumentList ListOf(const std::vector<std::string>& texts) {
    torvan::jvmlauncher::CArgumentList list;
    for (const std::string& text : texts) list.Append(Widen(text).c_str());
    return list;
  }

  static inline std::optional<ProbeRuntime> s_runtime;
};

// Of several files, one for each system among them.
class JavaVmProcessSystemTest : public LaunchSystemTest {};

}  // namespace tests
