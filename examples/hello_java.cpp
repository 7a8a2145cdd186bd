// The README's first example: hosts a Java VM in this process.
#include <torvan/Torvan.h>

#include <cstdio>

using namespace torvan::jni;

int main() {
  torvan::Initialize();
  int exitCode = 0;
  try {
    CDynamicJavaRuntime runtime(CDynamicJavaRuntime::Sun, CDynamicJavaRuntime::Default, nullptr, JNI_VERSION_1_6);
    options::COptions start;
    start.AddOption(options::CCustomOption(RX_TEXT("-Xmx64m")));
    const CJavaVm vm = runtime.CreateJavaVm(start, false);
    const CJavaString text = vm.NewString(RX_TEXT("hello from java"));
    const CJavaString upper = text.CallObjectMethod("toUpperCase", "()Ljava/lang/String;");
    const jint larger = vm.FindClass("java/lang/Math").CallStaticIntMethod("max", "(II)I", jint{3}, jint{4});
    const mirel::base::CUnicodeString result = upper;
    std::printf("%s %d\n", static_cast<const char*>(result.ToUTF8()), static_cast<int>(larger));
  } catch (const mirel::base::CException& exception) {
    exception.Print(*mirel::base::CSystem::debugOut);
    exitCode = 1;
  }
  torvan::Terminate();
  return exitCode;
}
