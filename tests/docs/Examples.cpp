// The C++ of the documents that is in no example program. It is compiled, not run.
#include <torvan/Torvan.h>

#include <cstdio>

namespace hosting {

using namespace torvan::jni;

void PassArguments(const CJavaVm& vm) {
  const CJavaString name = vm.NewString(RX_TEXT("user.dir"));
  const CJavaString folder =
      vm.FindClass("java/lang/System")
          .CallStaticObjectMethod("getProperty", "(Ljava/lang/String;)Ljava/lang/String;", static_cast<jstring>(name));
  vm.FindClass("java/lang/Thread").CallStaticVoidMethod("sleep", "(J)V", jlong{10});
}

void GoOn(const CJavaVm& vm) {
  try {
    PassArguments(vm);
  } catch (const CJniException&) {
    vm.Attach()->ExceptionClear();
  }
}

class LogStream : public mirel::io::CPrintStream {
 public:
  explicit LogStream(std::FILE* file) : m_file(file) {}
  void Print(const char* text) override { std::fputs(text, m_file); }

 private:
  std::FILE* m_file;
};

void KeepLog(std::FILE* file) {
  static LogStream log(file);
  mirel::base::CSystem::debugOut = &log;
}

}  // namespace hosting

namespace launching {

void Launch() {
  using namespace torvan::jvmlauncher;
  CJavaVmLauncher launcher(RX_TEXT("1.8"));  // the newest installed runtime at or above 1.8
  CJavaVmOptions options;
  options.AddOption(options::CNonStandardOption(RX_TEXT("mx512m")));  // -Xmx512m
  CArgumentList arguments;
  arguments.Append(RX_TEXT("two words"));
  const auto process = launcher.Launch(options, RX_TEXT("com.acme.Main"), arguments);
  if (!process->Wait(30000)) process->Kill();
}

}  // namespace launching
