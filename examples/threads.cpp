// Lets several threads use one Java VM: each counts the words in its share of the lines of a text file.
//
//   threads [THREADS [FILE]]
//
// Exit codes: 0 done, 2 something was missing or wrong; one line says what.

#include <functional>
#include <future>
#include <mutex>
#include <optional>

#include "HostMain.h"
#include "LocalFrame.h"
#include "TextFile.h"

using torvan::jni::CDynamicJavaRuntime;
using torvan::jni::CJavaObject;
using torvan::jni::CJavaRuntime;
using torvan::jni::CJavaString;
using torvan::jni::CJavaVm;

namespace {

constexpr int ExitFailed = 2;
constexpr std::size_t MostThreads = 64;

struct Settings {
  std::size_t threads = 8;
  Text file = RX_TEXT("") EXAMPLE_TEXT;
};

Settings ReadArguments(const std::vector<Text>& arguments) {
  Settings settings;
  if (!arguments.empty()) {
    const Text& count = arguments[0];
    const bool isNumber = count.size() <= 2 && count.find_first_not_of(RX_TEXT("0123456789")) == Text::npos;
    settings.threads = isNumber && !count.empty() ? std::stoul(ToUtf8(count)) : 0;
  }
  if (arguments.size() > 1) settings.file = arguments[1];
  if (settings.threads < 1 || settings.threads > MostThreads || arguments.size() > 2) {
    throw UserError("usage: threads [THREADS [FILE]], with 1 to 64 threads");
  }
  return settings;
}

std::vector<Text> ReadLines(const Text& path) {
  std::ifstream file = OpenText(path);
  std::vector<Text> lines;
  for (Text line; ReadLine(file, line);) lines.push_back(line);
  return lines;
}

CJavaVm StartVm(CDynamicJavaRuntime& runtime) {
  torvan::jni::options::CClassPath classPath;
  classPath.AddPath(RX_TEXT("") EXAMPLE_CLASSES);
  torvan::jni::options::COptions options;
  options.AddOption(classPath);
  return runtime.CreateJavaVm(options, false);
}

// Guards what threads must not do at the same time: using a runtime, and making or dropping a VM handle.
std::mutex runtimeLock;

// The VM, for the thread that makes it. Every handle that the thread uses comes from here, stays in the thread, and
// goes first.
class ThreadVm {
 public:
  explicit ThreadVm(const CJavaRuntime& runtime) {
    const std::lock_guard<std::mutex> guard(runtimeLock);
    mirel::util::CVector<CJavaVm> vms(1, 1);
    runtime.GetCreatedJavaVms(vms);
    m_vm.emplace(vms[0]);
  }
  ~ThreadVm() {
    m_vm->Detach();
    const std::lock_guard<std::mutex> guard(runtimeLock);
    m_vm.reset();
  }
  ThreadVm(const ThreadVm&) = delete;
  ThreadVm& operator=(const ThreadVm&) = delete;

  const CJavaVm* operator->() const { return &*m_vm; }
  const CJavaVm& operator*() const { return *m_vm; }

 private:
  std::optional<CJavaVm> m_vm;
};

// What each thread runs: it takes every `threads`-th line.
jint CountShare(const CJavaRuntime& runtime, const std::vector<Text>& lines, std::size_t first, std::size_t threads) {
  const ThreadVm vm(runtime);
  const CJavaString language = vm->NewString(RX_TEXT("en-GB"));
  const CJavaObject statistics =
      vm->NewObject("TextStatistics", "(Ljava/lang/String;)V", static_cast<jstring>(language));
  for (std::size_t i = first; i < lines.size(); i += threads) {
    const LocalFrame frame(*vm);
    const CJavaString line = vm->NewString(lines[i].c_str());
    statistics.CallVoidMethod("addLine", "(Ljava/lang/String;)V", static_cast<jstring>(line));
  }
  return statistics.CallIntMethod("getWordCount", "()I");
}

// Ends Java in order: its shutdown hooks run. Waits for every other thread that is attached.
void EndVm(const CJavaVm& vm) {
  JavaVM* raw = nullptr;
  vm.Attach()->GetJavaVM(&raw);
  raw->DestroyJavaVM();
}

void CountInThreads(const Settings& settings) {
  const std::vector<Text> lines = ReadLines(settings.file);
  CDynamicJavaRuntime runtime(CDynamicJavaRuntime::Sun, CDynamicJavaRuntime::Default, nullptr, JNI_VERSION_1_6);
  const CJavaVm vm = StartVm(runtime);
  std::vector<std::future<jint>> shares;
  for (std::size_t i = 0; i < settings.threads; ++i) {
    shares.push_back(
        std::async(std::launch::async, CountShare, std::cref(runtime), std::cref(lines), i, settings.threads));
  }
  jint words = 0;
  for (std::future<jint>& share : shares) words += share.get();
  EndVm(vm);
  std::printf("%d words in %u lines, counted by %u threads\n", static_cast<int>(words),
              static_cast<unsigned int>(lines.size()), static_cast<unsigned int>(settings.threads));
}

}  // namespace

int Run(const std::vector<Text>& arguments) {
  int exitCode = ExitFailed;
  torvan::Initialize();
  try {
    CountInThreads(ReadArguments(arguments));
    exitCode = 0;
  } catch (const mirel::base::CException& exception) {
    const char* message = exception.GetMessageText();
    std::fprintf(stderr, "threads: %s: %s\n", exception.GetClass()->GetName(), message != nullptr ? message : "");
  } catch (const std::exception& exception) {
    std::fprintf(stderr, "threads: %s\n", exception.what());
  }
  torvan::Terminate();
  return exitCode;
}
