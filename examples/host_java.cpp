// Hosts a Java VM in this process and lets Java count the words and sentences of a text file.
//
//   host_java [--runtime PATH] [--class-path PATH] [--language TAG] [FILE]
//
// Exit codes: 0 done, 2 something was missing or wrong; one line says what to do.

#include "HostMain.h"
#include "LocalFrame.h"
#include "TextFile.h"

using mirel::base::CException;
using mirel::base::CNull;
using mirel::base::CUnicodeString;
using torvan::jni::CDynamicJavaRuntime;
using torvan::jni::CJavaClass;
using torvan::jni::CJavaObject;
using torvan::jni::CJavaString;
using torvan::jni::CJavaVm;

namespace {

constexpr int ExitFailed = 2;
constexpr jint ImpossibleWordCount = 1000000000;

struct Settings {
  Text runtime;  // empty: the installed one
  Text classPath = RX_TEXT("") EXAMPLE_CLASSES;
  Text language = RX_TEXT("en-GB");
  Text file = RX_TEXT("") EXAMPLE_TEXT;
};

Settings ReadArguments(const std::vector<Text>& arguments) {
  const UserError usage("usage: host_java [--runtime PATH] [--class-path PATH] [--language TAG] [FILE]");
  Settings settings;
  bool fileGiven = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    Text* value = arguments[i] == RX_TEXT("--runtime")      ? &settings.runtime
                  : arguments[i] == RX_TEXT("--class-path") ? &settings.classPath
                  : arguments[i] == RX_TEXT("--language")   ? &settings.language
                                                            : nullptr;
    if (value != nullptr) {
      if (++i == arguments.size() || arguments[i].empty()) throw usage;
      *value = arguments[i];
    } else if (!fileGiven && !arguments[i].empty() && arguments[i][0] != RX_TEXT('-')) {
      settings.file = arguments[i];
      fileGiven = true;
    } else {
      throw usage;
    }
  }
  return settings;
}

CDynamicJavaRuntime FindRuntime(const Settings& settings) {
  try {
    if (!settings.runtime.empty()) return CDynamicJavaRuntime(settings.runtime.c_str(), JNI_VERSION_1_6);
    return CDynamicJavaRuntime(CDynamicJavaRuntime::Sun, CDynamicJavaRuntime::Default, nullptr, JNI_VERSION_1_6);
  } catch (const torvan::jni::CJavaRuntimeException& exception) {
    throw UserError(exception.GetMessageText() +
                    (settings.runtime.empty()
                         ? std::string(" Install a Java runtime, or name its VM library with --runtime.")
                         : " '" + ToUtf8(settings.runtime) + "' should be the VM library of a Java runtime."));
  }
}

CJavaVm StartVm(CDynamicJavaRuntime& runtime, const Settings& settings) {
  torvan::jni::options::CClassPath classPath;
  classPath.AddPath(settings.classPath.c_str());

  torvan::jni::options::COptions options;
  options.AddOption(classPath);
  options.AddOption(torvan::jni::options::CCustomOption(RX_TEXT("-Xmx64m")));
  options.AddOption(torvan::jni::options::CSystemProperty(RX_TEXT("statistics.language"), settings.language.c_str()));
  return runtime.CreateJavaVm(options, false);
}

// A failed call leaves a Java exception pending. Clears it and returns what Java says of it, or nothing.
std::string TakeJavaFailure(const CJavaVm& vm) {
  JNIEnv* env = vm.Attach();
  jthrowable failure = env->ExceptionOccurred();
  if (failure == nullptr) return std::string();
  env->ExceptionClear();
  jmethodID toString = env->GetMethodID(env->FindClass("java/lang/Throwable"), "toString", "()Ljava/lang/String;");
  auto text = static_cast<jstring>(env->CallObjectMethod(failure, toString));
  if (text == nullptr) {
    env->ExceptionClear();
    return "a Java exception that cannot be described";
  }
  const char* bytes = env->GetStringUTFChars(text, nullptr);
  std::string description = bytes != nullptr ? bytes : "";
  if (bytes != nullptr) env->ReleaseStringUTFChars(text, bytes);
  return description;
}

std::string JavaProperty(const CJavaClass& system, const CJavaVm& vm, const RX::UniChar* name) {
  const CJavaString key = vm.NewString(name);
  const CJavaString value =
      system.CallStaticObjectMethod("getProperty", "(Ljava/lang/String;)Ljava/lang/String;", static_cast<jstring>(key));
  return ToUtf8(value);
}

std::string Formatted(const CJavaObject& statistics, double number) {
  const CJavaString text = statistics.CallObjectMethod("format", "(D)Ljava/lang/String;", number);
  return ToUtf8(text);
}

void PrintStatistics(const CJavaObject& statistics) {
  const jint lines = statistics.CallIntMethod("getLineCount", "()I");
  const jint words = statistics.CallIntMethod("getWordCount", "()I");
  const jlong sentences = statistics.CallLongMethod("getSentenceCount", "()J");
  const jint links = statistics.CallIntMethod("getLinkCount", "()I");
  std::printf("Lines      %s\n", Formatted(statistics, lines).c_str());
  std::printf("Words      %s\n", Formatted(statistics, words).c_str());
  std::printf("Sentences  %s\n", Formatted(statistics, static_cast<double>(sentences)).c_str());
  std::printf("Links      %s\n", Formatted(statistics, links).c_str());
  std::printf("Letters per word  %s\n",
              Formatted(statistics, statistics.CallDoubleMethod("getAverageWordLength", "()D")).c_str());

  const CJavaObject entry = statistics.CallObjectMethod("getMostFrequentWord", "()Ljava/util/Map$Entry;");
  if (entry == CNull()) return;
  const CJavaString word = entry.CallObjectMethod("getKey", "()Ljava/lang/Object;");
  const CJavaObject count = entry.CallObjectMethod("getValue", "()Ljava/lang/Object;");
  std::printf("Most frequent long word  \"%s\", %d times\n", ToUtf8(word).c_str(),
              static_cast<int>(count.CallIntMethod("intValue", "()I")));
}

// A call that Java answers with an exception: it arrives here as a C++ exception, and the host goes on. The reason is
// read from a field, because reading the exception itself fails on today's VMs and leaves another one in its place.
void ShowFailure(const CJavaVm& vm, const CJavaObject& statistics) {
  try {
    statistics.CallVoidMethod("requireWords", "(I)V", ImpossibleWordCount);
  } catch (const torvan::jni::CJniException& exception) {
    std::printf("Caught     %s: %s\n", exception.GetClass()->GetName(), exception.GetMessageText());
    std::printf("Cleared    %s\n", TakeJavaFailure(vm).c_str());
  }
  const CJavaString reason = statistics.GetObjectField("lastFailure", "Ljava/lang/String;");
  std::printf("Reason     %s\n", ToUtf8(reason).c_str());
}

CJavaClass FindStatistics(const CJavaVm& vm, const Text& classPath) {
  try {
    return vm.FindClass("TextStatistics");
  } catch (const torvan::jni::CJavaVmException&) {
    TakeJavaFailure(vm);
    throw UserError("the Java class TextStatistics is not in '" + ToUtf8(classPath) +
                    "': name the folder that holds it with --class-path");
  }
}

CJavaObject NewStatistics(const CJavaClass& statistics, const CJavaVm& vm, const Text& language) {
  const CJavaString tag = vm.NewString(language.c_str());
  try {
    return statistics.NewObject("(Ljava/lang/String;)V", static_cast<jstring>(tag));
  } catch (const mirel::base::CMemoryException&) {
    // A constructor that throws leaves no object, and its exception pending.
    throw UserError("Java refuses the language '" + ToUtf8(language) + "' (" + TakeJavaFailure(vm) +
                    "): give a tag such as en-GB with --language");
  }
}

void CountIn(const CJavaVm& vm, const Settings& settings, std::ifstream& file) {
  const CJavaClass system = vm.FindClass("java/lang/System");
  std::printf("Java       %s, %s\n", JavaProperty(system, vm, RX_TEXT("java.version")).c_str(),
              JavaProperty(system, vm, RX_TEXT("java.vm.name")).c_str());
  std::printf("Found in   %s\n", JavaProperty(system, vm, RX_TEXT("java.home")).c_str());

  const CJavaObject statistics = NewStatistics(FindStatistics(vm, settings.classPath), vm, settings.language);
  std::printf("Text       %s, language %s\n", ToUtf8(settings.file).c_str(),
              JavaProperty(system, vm, RX_TEXT("statistics.language")).c_str());
  for (Text line; ReadLine(file, line);) {
    const LocalFrame frame(vm);
    const CJavaString text = vm.NewString(line.c_str());  // null for an empty line
    statistics.CallVoidMethod("addLine", "(Ljava/lang/String;)V", static_cast<jstring>(text));
  }
  PrintStatistics(statistics);
  ShowFailure(vm, statistics);
}

void HostJava(const std::vector<Text>& arguments) {
  const Settings settings = ReadArguments(arguments);
  std::ifstream file = OpenText(settings.file);
  CDynamicJavaRuntime runtime = FindRuntime(settings);
  CountIn(StartVm(runtime, settings), settings, file);
}

}  // namespace

int Run(const std::vector<Text>& arguments) {
  int exitCode = ExitFailed;
  torvan::Initialize();
  mirel::base::CSystem::debugOut = nullptr;  // failures are printed below, in one line
  try {
    HostJava(arguments);
    exitCode = 0;
  } catch (const CException& exception) {
    const char* message = exception.GetMessageText();
    std::fprintf(stderr, "host_java: %s: %s\n", exception.GetClass()->GetName(), message != nullptr ? message : "");
  } catch (const std::exception& exception) {
    std::fprintf(stderr, "host_java: %s\n", exception.what());
  }
  torvan::Terminate();
  return exitCode;
}
