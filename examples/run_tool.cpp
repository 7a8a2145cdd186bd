// Runs a Java tool in its own process, with progress, a time limit and captured output. run_tool --help says how.

#include <torvan/Java.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <exception>
#include <stdexcept>
#include <string>
#include <vector>

#include "HostMain.h"

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#endif

namespace java = torvan::java;
using namespace std::chrono_literals;

namespace {

// As timeout(1) has them; 0 to 123 and the ones above are the tool's own.
constexpr int ExitTimedOut = 124;
constexpr int ExitFailed = 125;
constexpr int ExitOfSignal = 128;  // and its number

constexpr const char* Usage =
    "usage: run_tool [OPTION]... JAR [ARGUMENT]...\n"
    "       run_tool [OPTION]... --class NAME [ARGUMENT]...\n"
    "Runs a Java tool and prints what it prints.\n"
    "\n"
    "  --java HOME      the Java that runs it; else JAVA_HOME's or the newest that is installed\n"
    "  --class NAME     runs this class instead of a jar\n"
    "  --path PART      adds a jar or folder to the class path of --class\n"
    "  --vm OPTION      adds an option of the VM, such as -Xmx512m\n"
    "  --folder FOLDER  runs it in this folder\n"
    "  --input FILE     what it reads; else nothing\n"
    "  --time SECONDS   stops it after so long: exit code 124\n"
    "  --progress       shows the time while it runs\n"
    "  --help           prints this\n"
    "\n"
    "Ctrl+C and SIGTERM end the tool, too. The exit code is the tool's own; 125 if it could not be run.\n";

struct Request {
  java::Program program;
  bool showsProgress = false;
};

// Something that the user can put right; the text says how.
struct UserError : std::runtime_error {
  using std::runtime_error::runtime_error;
};

std::chrono::milliseconds ToTime(const std::string& seconds) {
  const bool isNumber =
      !seconds.empty() && seconds.size() <= 6 && seconds.find_first_not_of("0123456789") == std::string::npos;
  if (!isNumber || std::stol(seconds) == 0) {
    throw UserError("--time needs a number of seconds, and not '" + seconds + "'");
  }
  return std::chrono::seconds(std::stol(seconds));
}

// The settings before the jar or class are kept until there is a program to have them.
Request Parse(const std::vector<Text>& texts) {
  std::vector<void (*)(java::Program&, const Text&)> settings;
  std::vector<Text> values;
  const struct {
    const char* name;
    void (*set)(java::Program&, const Text&);
  } options[] = {
      {"--java", [](java::Program& program, const Text& home) { program.Runtime(home); }},
      {"--path", [](java::Program& program, const Text& part) { program.ClassPath({part}); }},
      {"--vm", [](java::Program& program, const Text& option) { program.Option(ToUtf8(option)); }},
      {"--folder", [](java::Program& program, const Text& folder) { program.Folder(folder); }},
      {"--input", [](java::Program& program, const Text& file) { program.InputFile(file); }},
      {"--time", [](java::Program& program, const Text& time) { program.TimeLimit(ToTime(ToUtf8(time))); }},
  };

  bool showsProgress = false;
  for (std::size_t i = 0; i < texts.size(); ++i) {
    const std::string name = ToUtf8(texts[i]);
    const bool isClass = name == "--class";
    if (name == "--progress") {
      showsProgress = true;
      continue;
    }
    if (name.compare(0, 2, "--") != 0 || isClass) {
      if (isClass && ++i == texts.size()) break;
      Request request{isClass ? java::Program::MainClass(ToUtf8(texts[i])) : java::Program::Jar(texts[i])};
      request.showsProgress = showsProgress;
      for (std::size_t k = 0; k < settings.size(); ++k) settings[k](request.program, values[k]);
      for (++i; i < texts.size(); ++i) request.program.Arguments({ToUtf8(texts[i])});
      return request;
    }
    const auto* const end = std::end(options);
    const auto* option = std::begin(options);
    while (option != end && name != option->name) ++option;
    if (option == end) throw UserError("'" + name + "' is no option; see --help");
    if (++i == texts.size()) throw UserError(name + " needs a value");
    settings.push_back(option->set);
    values.push_back(texts[i]);
  }
  throw UserError("a jar or --class is missing; see --help");
}

// The signal that asks this tool to end, if one has come.
volatile std::sig_atomic_t g_signal = 0;
void Remember(int signal) { g_signal = signal; }

// In an orderly way, where that can be.
void End(java::Process& process) try { process.Stop(5s); } catch (const java::Failure&) {
  process.Kill();
}

// Captured at once, so that the tool's output and the progress do not mix. Java would outlive this tool on Linux.
java::Outcome RunToItsEnd(const Request& request) {
  std::signal(SIGINT, Remember);
  std::signal(SIGTERM, Remember);
  java::Process process = java::Start(request.program);
  const auto begin = std::chrono::steady_clock::now();
  long long shown = 0;
  for (;;) {
    const auto outcome = process.Wait(100ms);
    if (outcome) {
      if (shown > 0) std::fprintf(stderr, "\r");
      return *outcome;
    }
    if (g_signal != 0) End(process);
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begin);
    if (!request.showsProgress || seconds.count() == shown) continue;
    shown = seconds.count();
    std::fprintf(stderr, "\rrun_tool: %lld s ", shown);
    std::fflush(stderr);
  }
}

int RunTool(const Request& request) {
  const java::Outcome outcome = RunToItsEnd(request);
  std::fwrite(outcome.output.data(), 1, outcome.output.size(), stdout);
  std::fflush(stdout);
  std::fwrite(outcome.error.data(), 1, outcome.error.size(), stderr);
  if (g_signal != 0) {
    std::fprintf(stderr, "run_tool: interrupted\n");
    return ExitOfSignal + g_signal;
  }
  if (outcome.ended == java::Ended::TimedOut) {
    std::fprintf(stderr, "run_tool: the tool took too long and was ended\n");
    return ExitTimedOut;
  }
  if (outcome.ended == java::Ended::Signalled) {
    std::fprintf(stderr, "run_tool: the tool crashed (%d)\n", outcome.exitCode);
  }
  return outcome.exitCode;
}

}  // namespace

int Run(const std::vector<Text>& texts) try {
#if defined(_WIN32)
  // What the tool prints goes on as it is.
  _setmode(_fileno(stdout), _O_BINARY);
  _setmode(_fileno(stderr), _O_BINARY);
#endif
  if (!texts.empty() && ToUtf8(texts[0]) == "--help") {
    std::fputs(Usage, stdout);
    return 0;
  }
  return RunTool(Parse(texts));
} catch (const std::exception& error) {
  std::fprintf(stderr, "run_tool: %s\n", error.what());
  return ExitFailed;
}
