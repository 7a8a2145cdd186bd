// The C++ of the pages on runtimes and processes.
#include <torvan/Java.h>

#include <cstdio>

namespace java = torvan::java;
using namespace std::chrono_literals;

void Show(const std::string& text);
void Log(std::string_view line);

// clang-format off
void ChooseRuntimes(const std::filesystem::path& programFolder, const std::filesystem::path& folderFromSettings) {
  const java::Runtime runtime = java::ChooseRuntime(java::AtLeast(11).AtMost(21));
  std::printf("%s\n", runtime.Version().ToString().c_str());

  const java::Runtimes all = java::FindRuntimes();                            // all of this machine
  const java::Runtimes ours = java::FindRuntimes(programFolder / "runtime");  // only what the host brings along
  const java::Runtime given = java::RuntimeIn(folderFromSettings);            // this home, or a StartFailure that says why not
}

void RunAProgram() {
  const java::Outcome outcome = java::Run(java::Program::Jar("plantuml.jar")
                                              .Option("-Xmx512m")
                                              .Arguments({"-tsvg", "-pipe"})
                                              .Input("Alice -> Bob : Grüezi")
                                              .TimeLimit(30s));
  if (outcome.ended == java::Ended::Exited && outcome.exitCode == 0) Show(outcome.output);
}

void TalkToAProgram() {
  java::Process process = java::Start(java::Program::MainClass("com.example.Server")
                                          .ClassPath({"server.jar", "lib/*"})
                                          .OnOutputLine([](std::string_view line) { Log(line); })
                                          .KeepInputOpen());
  process.Write("reload\n");
  if (!process.Wait(5s)) process.Stop(10s);
}
// clang-format on
