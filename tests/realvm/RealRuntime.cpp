#include "realvm/RealRuntime.h"

#include <cstdlib>

namespace tests {

using torvan::jni::CDynamicJavaRuntime;
using torvan::jni::CJavaString;
using torvan::jni::CJavaVm;
using torvan::jni::options::COptions;

const WideText& RuntimePath() {
  static const WideText path = [] {
    const char* value = std::getenv("TORVAN_TEST_LIBJVM");
    return Widen(value != nullptr ? value : "");
  }();
  return path;
}

CDynamicJavaRuntime Runtime(jint jniVersion) {
  if (!RuntimePath().empty()) return CDynamicJavaRuntime(RuntimePath().c_str(), jniVersion);
  return CDynamicJavaRuntime(CDynamicJavaRuntime::Sun, CDynamicJavaRuntime::Default, nullptr, jniVersion);
}

void AddOptionFromEnvironment(COptions& options) {
  const char* option = std::getenv("TORVAN_TEST_VM_OPTION");
  if (option == nullptr || *option == '\0') return;
  options.AddOption(torvan::jni::options::CCustomOption(Widen(option).c_str()));
}

COptions FixtureOptions() {
  COptions options;
  torvan::jni::options::CClassPath classPath;
  classPath.AddPath(RX_TEXT("") TORVAN_TEST_CLASSES);
  options.AddOption(classPath);
  AddOptionFromEnvironment(options);
  return options;
}

std::string Utf8(const mirel::base::CUnicodeString& text) { return Narrow(text); }

std::string Property(const CJavaVm& vm, const RX::UniChar* name) {
  const CJavaString key = vm.NewString(name);
  const CJavaString value =
      vm.FindClass("java/lang/System")
          .CallStaticObjectMethod("getProperty", "(Ljava/lang/String;)Ljava/lang/String;", static_cast<jstring>(key));
  return Utf8(value);
}

namespace {

// The text that a method without arguments returns, read by JNI alone.
std::string CallForText(JNIEnv* env, jobject object, const char* className, const char* method) {
  jmethodID id = env->GetMethodID(env->FindClass(className), method, "()Ljava/lang/String;");
  const auto text = static_cast<jstring>(env->CallObjectMethod(object, id));
  if (env->ExceptionCheck() || text == nullptr) return "(null)";
  const char* bytes = env->GetStringUTFChars(text, nullptr);
  std::string result = bytes;
  env->ReleaseStringUTFChars(text, bytes);
  return result;
}

}  // namespace

std::string TakePending(JNIEnv* env, bool message) {
  jthrowable pending = env->ExceptionOccurred();
  if (pending == nullptr) return "";
  env->ExceptionClear();
  env->PushLocalFrame(16);
  const std::string text = message ? CallForText(env, pending, "java/lang/Throwable", "toString")
                                   : CallForText(env, env->GetObjectClass(pending), "java/lang/Class", "getName");
  env->PopLocalFrame(nullptr);
  env->DeleteLocalRef(pending);
  return text;
}

}  // namespace tests
