// A host's library that a program of Java's own has loaded. It prints while the process exits.
#include <torvan/Java.h>

#include <cstdio>
#include <string>
#include <thread>

namespace {

namespace java = torvan::java;

struct Left {
  java::Global<> object;
  ~Left() {
    object.Reset();
    std::puts(java::detail::HasVm() ? ", dropped in a VM that runs" : ", dropped quietly");
  }
} s_left;

jint Seven() {
  JNIEnv* const env = java::detail::Env();
  const auto type = java::Adopt<java::Class>(java::detail::LoadClass(env, "fixture/Joined"));
  const auto raw = static_cast<jclass>(type.Get());
  const jint seven = env->CallStaticIntMethod(raw, env->GetStaticMethodID(raw, "seven", "()I"));
  java::detail::CheckPending(env);
  return seven;
}

}  // namespace

extern "C" __attribute__((visibility("default"))) jstring JNICALL Java_fixture_Joined_join(JNIEnv* env, jclass type,
                                                                                           jint number) {
  java::Vm vm = java::JoinVm();
  s_left.object = java::Global<>(type);
  jint seven = 0;
  std::thread([&] { seven = Seven(); }).join();
  std::string text = seven == number ? std::to_string(seven) + " by a call, Z\xC3\xBCrich, ends: " : "wrong";
  try {
    vm.End();
    text += "yes";
  } catch (const java::Misuse&) {
    text += "no";
  }
  return static_cast<jstring>(env->NewStringUTF(text.c_str()));
}
