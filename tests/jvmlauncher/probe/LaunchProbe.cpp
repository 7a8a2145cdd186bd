// A program in the place of Java. It reports how it was started, then waits and ends as its environment says.
//
// LAUNCH_PROBE_REPORT        the file to write: on Windows the raw command line, then every argument after the
//                            program's name, each UTF-8 and ended by a zero
// LAUNCH_PROBE_MILLISECONDS  how long to wait after that; then it makes an empty file, the report's name with ".done"
// LAUNCH_PROBE_SIGNAL        the signal to raise then, if there is one
// LAUNCH_PROBE_EXIT          the exit code

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

#include "jvmlauncher/probe/Facts.h"

namespace {

long Number(const char* name) {
  const char* const text = std::getenv(name);
  return text != nullptr ? std::strtol(text, nullptr, 10) : 0;
}

}  // namespace

int main(int count, char** arguments) {
  const char* const report = std::getenv("LAUNCH_PROBE_REPORT");
  if (report != nullptr) {
    // Under another name first, so that the report is complete when it appears.
    const std::string unfinished = std::string(report) + ".unfinished";
    std::ofstream file(unfinished, std::ios::binary);
    for (const std::string& fact : Facts(count, arguments)) file << fact << '\0';
    file.close();
    std::filesystem::rename(unfinished, report);
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(Number("LAUNCH_PROBE_MILLISECONDS")));
  if (report != nullptr) std::ofstream(std::string(report) + ".done");
  if (Number("LAUNCH_PROBE_SIGNAL") != 0) std::raise(static_cast<int>(Number("LAUNCH_PROBE_SIGNAL")));
  return static_cast<int>(Number("LAUNCH_PROBE_EXIT"));
}
