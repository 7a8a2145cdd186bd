#include "java/realvm/Fixtures.h"

#include <cstdarg>
#include <cstdlib>
#include <filesystem>

namespace tests {

java::VmSettings FixtureSettings() {
  java::VmSettings settings;
  if (const char* library = std::getenv("TORVAN_TEST_LIBJVM")) settings.Runtime(library);
  settings.ClassPath({TORVAN_TEST_CLASSES}).MaximumHeap(TORVAN_TEST_HEAP);
  const char* option = std::getenv("TORVAN_TEST_VM_OPTION");
  if (option != nullptr && *option != '\0') settings.Option(option);
  return settings;
}

bool BeforeJava9() {
  const char* const library = std::getenv("TORVAN_TEST_LIBJVM");
  if (library == nullptr) return false;
  std::filesystem::path folder = library;
  while (folder.has_relative_path()) {
    folder = folder.parent_path();
    if (std::filesystem::exists(folder / "lib/rt.jar")) return true;  // where it has its own classes
  }
  return false;
}

torvan::jni::CJavaVm FixedVm() {
  using torvan::jni::CDynamicJavaRuntime;
  torvan::jni::options::COptions options;
  torvan::jni::options::CClassPath classPath;
  classPath.AddPath(Wide(TORVAN_TEST_CLASSES).c_str());
  options.AddOption(classPath);
  const char* const option = std::getenv("TORVAN_TEST_VM_OPTION");
  if (option != nullptr && *option != '\0') {
    options.AddOption(torvan::jni::options::CCustomOption(Wide(option).c_str()));
  }
  const char* const library = std::getenv("TORVAN_TEST_LIBJVM");
  if (library != nullptr) {
    return CDynamicJavaRuntime(Wide(library).c_str(), JNI_VERSION_1_6).CreateJavaVm(options, false);
  }
  return CDynamicJavaRuntime(CDynamicJavaRuntime::Sun, CDynamicJavaRuntime::Default, nullptr, JNI_VERSION_1_6)
      .CreateJavaVm(options, false);
}

std::basic_string<RX::UniChar> Wide(const std::string& text) { return {text.begin(), text.end()}; }

java::Local<Integer> NewInteger(jint value) {
  JNIEnv* const env = java::detail::Env();
  jclass const type = java::detail::ClassOf<Integer>(env);
  return java::Adopt<Integer>(env->NewObject(type, env->GetMethodID(type, "<init>", "(I)V"), value));
}

jint CallStaticInt(const char* type, const char* method, const char* descriptor, ...) {
  JNIEnv* const env = java::detail::Env();
  const java::Local<java::Class> own = java::Adopt<java::Class>(java::detail::LoadClass(env, type));
  const auto owner = static_cast<jclass>(own.Get());
  const jmethodID id = env->GetStaticMethodID(owner, method, descriptor);
  java::detail::CheckPending(env);
  va_list arguments;
  va_start(arguments, descriptor);
  const jint result = env->CallStaticIntMethodV(owner, id, arguments);
  va_end(arguments);
  java::detail::CheckPending(env);
  return result;
}

jobject CallObject(jobject object, const char* method, const char* descriptor, ...) {
  JNIEnv* const env = java::detail::Env();
  const java::Local<java::Class> type = java::Adopt<java::Class>(env->GetObjectClass(object));
  const jmethodID id = env->GetMethodID(static_cast<jclass>(type.Get()), method, descriptor);
  java::detail::CheckPending(env);
  va_list arguments;
  va_start(arguments, descriptor);
  jobject const result = env->CallObjectMethodV(object, id, arguments);
  va_end(arguments);
  java::detail::CheckPending(env);
  return result;
}

java::Local<java::String> NewText(const char* ascii) {
  return java::Adopt<java::String>(java::detail::Env()->NewStringUTF(ascii));
}

}  // namespace tests
