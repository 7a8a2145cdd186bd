// Launches a Java program as another process, waits for it and returns its exit code.
//
//   launch_java VERSION [-cp PATH]... [-jar FILE] [-D name=value]... [-X opt]... [--timeout MS] [MainClass] [args...]
//
// VERSION is the oldest version that will do, for example 1.8; the newest one installed is taken. A program that takes
// longer than the time-out is asked to stop and, if it does not, killed; its exit code is then 0. Exit code 2:
// something was missing or wrong, and one line says what.

#include <chrono>

#include "HostMain.h"
#include "SafeArgument.h"

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace options = torvan::jvmlauncher::options;

using torvan::jvmlauncher::CArgumentList;
using torvan::jvmlauncher::CJavaVmLauncher;
using torvan::jvmlauncher::CJavaVmOptions;
using torvan::jvmlauncher::CJavaVmProcess;

namespace {

constexpr int ExitFailed = 2;
constexpr unsigned int StepMilliseconds = 100;
constexpr unsigned int GraceMilliseconds = 3000;  // between asking to stop and killing
constexpr unsigned int Forever = 0xFFFFFFFF;
constexpr const RX::UniChar* Separators = RX_TEXT(" \t\r\n\"");

struct Request {
  Text version;
  CJavaVmOptions options;
  Text mainClass;  // empty: the jar's
  CArgumentList arguments;
  unsigned int timeout = Forever;
};

// Texts that a command line takes unescaped must not fall apart there.
const Text& RequireWithout(const RX::UniChar* units, const Text& text, const char* rule) {
  if (text.find_first_of(units) == Text::npos) return text;
  throw UserError("'" + ToUtf8(text) + "': " + rule);
}

const Text& RequireMainClass(const Text& text) {
  // Java takes what follows for the name of a file with more options, and nothing can escape it.
  if (text[0] == RX_TEXT('@')) throw UserError("'" + ToUtf8(text) + "': a main class must not begin with @");
  return RequireWithout(Separators, text, "a main class must not hold spaces or quotes");
}

unsigned int ToMilliseconds(const Text& text) {
  const bool isNumber = text.size() <= 9 && text.find_first_not_of(RX_TEXT("0123456789")) == Text::npos;
  if (!isNumber) throw UserError("--timeout needs a number of milliseconds, and not '" + ToUtf8(text) + "'");
  return static_cast<unsigned int>(std::stoul(ToUtf8(text)));
}

options::CSystemPropertyOption ToProperty(const Text& text) {
  const std::size_t sign = text.find(RX_TEXT('='));
  if (sign == Text::npos) throw UserError("-D needs name=value, and not '" + ToUtf8(text) + "'");
  const Text name = RequireWithout(Separators, text.substr(0, sign), "a property name must not hold spaces or quotes");
  return options::CSystemPropertyOption(name.c_str(), SafeArgument(text.substr(sign + 1)).c_str());
}

Request ReadArguments(const std::vector<Text>& arguments) {
  const UserError usage(
      "usage: launch_java VERSION [-cp PATH]... [-jar FILE] [-D name=value]... [-X opt]... [--timeout MS] [MainClass] "
      "[args...]");
  if (arguments.empty() || arguments[0].empty() || arguments[0][0] == RX_TEXT('-')) throw usage;
  Request request;
  request.version = arguments[0];
  options::CClassPathOption classPath;
  bool hasJar = false;
  std::size_t next = 1;
  for (; next < arguments.size() && !arguments[next].empty() && arguments[next][0] == RX_TEXT('-'); next += 2) {
    const Text& option = arguments[next];
    if (next + 1 == arguments.size() || arguments[next + 1].empty()) throw usage;
    const Text& value = arguments[next + 1];
    if (option == RX_TEXT("-cp")) {
      RequireWithout(RX_TEXT("\t\r\n\""), value, "a class path must not hold tabs or quotes");
      classPath.AddEntry(SafePath(value).c_str());
    } else if (option == RX_TEXT("-jar")) {
      request.options.AddOption(options::CJarOption(SafeJarPath(value).c_str()));
      hasJar = true;
    } else if (option == RX_TEXT("-D")) {
      request.options.AddOption(ToProperty(value));
    } else if (option == RX_TEXT("-X")) {
      request.options.AddOption(options::CNonStandardOption(
          RequireWithout(Separators, value, "an option must not hold spaces or quotes").c_str()));
    } else if (option == RX_TEXT("--timeout")) {
      request.timeout = ToMilliseconds(value);
    } else {
      throw usage;
    }
  }
  if (classPath.GetEntryCount() != 0) request.options.AddOption(classPath);
  if (!hasJar && next < arguments.size()) {
    request.mainClass = RequireMainClass(arguments[next++]);
  }
  for (; next < arguments.size(); ++next) request.arguments.Append(SafeArgument(arguments[next]).c_str());
  return request;
}

// Shows on a terminal, and nowhere else, how long the program has been running.
class Progress {
 public:
#if defined(_WIN32)
  Progress() : m_isTerminal(_isatty(_fileno(stderr)) != 0) {}
#else
  Progress() : m_isTerminal(isatty(STDERR_FILENO) != 0) {}
#endif
  ~Progress() {
    if (m_isTerminal) std::fprintf(stderr, "\r%30s\r", "");
  }
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  void Show(unsigned int milliseconds) const {
    if (m_isTerminal) std::fprintf(stderr, "\rrunning for %u.%u s", milliseconds / 1000, milliseconds / 100 % 10);
  }

 private:
  bool m_isTerminal;
};

// Tells whether the program ended in time.
bool WaitFor(CJavaVmProcess& process, unsigned int timeout) {
  using std::chrono::milliseconds;
  using std::chrono::steady_clock;
  const Progress progress;
  const steady_clock::time_point start = steady_clock::now();
  for (;;) {
    const auto elapsed = std::chrono::duration_cast<milliseconds>(steady_clock::now() - start).count();
    const long long left = timeout == Forever ? StepMilliseconds : timeout - elapsed;
    const unsigned int step = left < 0                  ? 0
                              : left < StepMilliseconds ? static_cast<unsigned int>(left)
                                                        : StepMilliseconds;
    if (process.Wait(step)) return true;
    if (step == 0) return false;
    progress.Show(static_cast<unsigned int>(elapsed));
  }
}

int Launch(const Request& request) {
  CJavaVmLauncher launcher(request.version.c_str());
  const auto process = launcher.Launch(request.options, request.mainClass.c_str(), request.arguments);
  if (!WaitFor(*process, request.timeout)) {
    process->Stop();
    const bool stopped = process->Wait(GraceMilliseconds);
    if (!stopped) process->Kill();
    process->Wait();
    std::fprintf(stderr, "launch_java: the program ran longer than %u ms and was %s\n", request.timeout,
                 stopped ? "stopped" : "killed");
  }
  return process->GetExitCode();
}

}  // namespace

int Run(const std::vector<Text>& arguments) {
  int exitCode = ExitFailed;
  torvan::Initialize();
  try {
    exitCode = Launch(ReadArguments(arguments));
  } catch (const mirel::base::CException& exception) {
    const char* message = exception.GetMessageText();
    std::fprintf(stderr, "launch_java: %s\n", message != nullptr ? message : exception.GetClass()->GetName());
  } catch (const std::exception& exception) {
    std::fprintf(stderr, "launch_java: %s\n", exception.what());
  }
  torvan::Terminate();
  return exitCode;
}
