// The Java VM that a test program is run with, the fixtures on its class path, and their tags.
#pragma once

#include <torvan/Java.h>
#include <torvan/Torvan.h>

#include <string>

namespace tests {

namespace java = torvan::java;

// Settings with the VM library that TORVAN_TEST_LIBJVM names (else the installed runtime), the fixtures' folder as
// class path, and the option that TORVAN_TEST_VM_OPTION holds.
java::VmSettings FixtureSettings();

// Whether the library that TORVAN_TEST_LIBJVM names is of Java 8, which has no modules and no Cleaner.
bool BeforeJava9();
#define SKIP_BEFORE_JAVA_9(reason) \
  if (BeforeJava9()) GTEST_SKIP() << "before Java 9 " << (reason)

// A VM that a host of the fixed interface has created with the same library and class path.
torvan::jni::CJavaVm FixedVm();
std::basic_string<RX::UniChar> Wide(const std::string& text);

// Tags of the fixtures.
struct Failures {
  static constexpr char JavaName[] = "fixture/Failures";
};
struct Named {
  static constexpr char JavaName[] = "fixture/Kinds$Named";
};
struct Parent {
  static constexpr char JavaName[] = "fixture/Kinds$Parent";
  using Super = Named;
};
struct Child {
  static constexpr char JavaName[] = "fixture/Kinds$Child";
  using Super = Parent;
};
struct Integer {
  static constexpr char JavaName[] = "java/lang/Integer";
};

// Raw JNI, for what the test is not about.
template <typename T>
java::Local<T> New() {
  JNIEnv* const env = java::detail::Env();
  jclass const type = java::detail::ClassOf<T>(env);
  return java::Adopt<T>(env->NewObject(type, env->GetMethodID(type, "<init>", "()V")));
}
java::Local<Integer> NewInteger(jint value);
jint CallStaticInt(const char* type, const char* method, const char* descriptor, ...);
jobject CallObject(jobject object, const char* method, const char* descriptor, ...);
java::Local<java::String> NewText(const char* ascii);

}  // namespace tests
