// A host's library that a Java program has loaded. It prints while the process exits.
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

struct Operator {
  static constexpr char JavaName[] = "java/util/function/IntUnaryOperator";
};
constexpr java::StaticMethod<jint()> Seven{"fixture/Joined", "seven"};
constexpr java::StaticMethod<jint(java::Ref<Operator>, jint)> Nest{"fixture/Callbacks", "nest"};

}  // namespace

extern "C" JNIEXPORT jstring JNICALL Java_fixture_Joined_join(JNIEnv* env, jclass type, jint number) {
  java::Vm vm = java::JoinVm();
  s_left.object = java::Global<>(type);
  jint seven = 0;
  std::thread([&] { seven = Nest([](jint by) { return Seven() + by; }, 0); }).join();
  std::string text = seven == number ? std::to_string(seven) + " by a call, Z\xC3\xBCrich, ends: " : "wrong";
  try {
    vm.End();
    text += "yes";
  } catch (const java::Misuse&) {
    text += "no";
  }
  return static_cast<jstring>(env->NewStringUTF(text.c_str()));
}
