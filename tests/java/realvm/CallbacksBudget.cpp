// What callbacks cost compared with native methods that check nothing, called through the same proxy and Java class:
// java_callbacks_budget [ROUNDS].
#include <cstdlib>
#include <string>
#include <string_view>

#include "java/HandlerBytes.h"
#include "java/realvm/Fixtures.h"
#include "java/realvm/Measure.h"

namespace tests {
namespace {

using java::Global;
using java::Local;
using java::Object;
using java::Ref;
using java::StaticMethod;

struct IntOperator {
  static constexpr char JavaName[] = "java/util/function/IntUnaryOperator";
};
struct Consumer {
  static constexpr char JavaName[] = "java/util/function/Consumer";
};
struct Comparator {
  static constexpr char JavaName[] = "java/util/Comparator";
};
constexpr StaticMethod<void(Ref<IntOperator>, jint)> Ints{"fixture/Callbacks", "ints"};
constexpr StaticMethod<void(Ref<Consumer>, jint)> Objects{"fixture/Callbacks", "objects"};
constexpr StaticMethod<void(Ref<Comparator>, jint)> Compares{"fixture/Callbacks", "compares"};

jlong JNICALL BareNumbers(JNIEnv*, jobject, jlong, jlong a, jlong, jlong) { return a + 1; }
jobject JNICALL BareReferences(JNIEnv*, jobject, jlong, jobject, jobject, jobject) { return nullptr; }
jlong JNICALL BareToNumber(JNIEnv*, jobject, jlong, jobject, jobject, jobject) { return 0; }

// The handler class once more, with natives of this program.
class Bare {
 public:
  explicit Bare(JNIEnv* env) : m_env(env) {
    const std::string digits = "0000000000000000";
    const auto named = [&](std::string text) {
      for (std::size_t at = 0; (at = text.find(digits, at)) != std::string::npos; at += digits.size()) {
        text.replace(at, digits.size(), "ffffffffffffffff");
      }
      return text;
    };
    const std::string bytes =
        named({reinterpret_cast<const char*>(java::detail::HandlerBytes), sizeof java::detail::HandlerBytes});
    m_name = named(java::detail::HandlerName);
    m_type = env->DefineClass(m_name.c_str(), nullptr, reinterpret_cast<const jbyte*>(bytes.data()),
                              static_cast<jsize>(bytes.size()));
    Bind("numbers", "(JJJJ)J", reinterpret_cast<void*>(&BareNumbers));
    const std::string three = "(JLjava/lang/Object;Ljava/lang/Object;Ljava/lang/Object;)";
    Bind("references", three + "Ljava/lang/Object;", reinterpret_cast<void*>(&BareReferences));
    Bind("toNumber", three + "J", reinterpret_cast<void*>(&BareToNumber));
  }

  template <typename T>
  Local<T> New(const char* method, const char* descriptor, const char* letters) {
    jclass const type = java::detail::ClassOf<T>(m_env);
    jclass const methods = m_env->FindClass("java/lang/reflect/Method");
    jobject const own = m_env->ToReflectedMethod(type, m_env->GetMethodID(type, method, descriptor), JNI_FALSE);
    jobject const plan = m_env->NewObject(
        m_type,
        m_env->GetMethodID(m_type, "<init>",
                           "(Ljava/lang/Class;[Ljava/lang/reflect/Method;[Ljava/lang/String;[[Ljava/lang/Class;J)V"),
        type, m_env->NewObjectArray(1, methods, own),
        m_env->NewObjectArray(1, m_env->FindClass("java/lang/String"), m_env->NewStringUTF(letters)),
        m_env->NewObjectArray(1, m_env->FindClass("[Ljava/lang/Class;"), nullptr), jlong{8});
    jobject const handler = m_env->NewObject(
        m_type, m_env->GetMethodID(m_type, "<init>", ("(L" + m_name + ";J)V").c_str()), plan, jlong{0});
    return java::Adopt<T>(
        m_env->CallObjectMethod(handler, m_env->GetMethodID(m_type, "proxy", "()Ljava/lang/Object;")));
  }

 private:
  void Bind(std::string name, std::string descriptor, void* function) {
    const JNINativeMethod native = {name.data(), descriptor.data(), function};
    if (m_env->RegisterNatives(m_type, &native, 1) != JNI_OK) std::abort();
  }

  JNIEnv* m_env;
  std::string m_name;
  jclass m_type;
};

template <typename Call, typename T>
Way WayOf(const char* name, const java::Thread& thread, const Call& call, const Local<T>& object) {
  return {name, [&thread, &call, &object](int times) { call(thread, object, times); }};
}

void Run(int rounds) {
  const java::Vm vm = java::StartVm(FixtureSettings());
  const java::Thread thread;
  Bare bare(thread.Env());
  constexpr int times = 20000;

  const auto numbers = bare.New<IntOperator>("applyAsInt", "(I)I", "II");
  const std::function<jint(jint)> increment = [](jint x) { return x + 1; };
  const auto function = java::Implement<IntOperator>().On("applyAsInt", increment).New();
  const auto lambda = java::Implement<IntOperator>().On("applyAsInt", [](jint x) { return x + 1; }).New();
  Measure("int(int)", rounds, times,
          {WayOf("an unchecked native method", thread, Ints, numbers), WayOf("a std::function", thread, Ints, function),
           WayOf("a lambda expression", thread, Ints, lambda)});

  const auto references = bare.New<Consumer>("accept", "(Ljava/lang/Object;)V", "VL");
  const std::function<void(Ref<Object>)> accept = [](Ref<Object> object) { sink = object ? 1 : 0; };
  const auto taking = java::Implement<Consumer>().On("accept", accept).New();
  const auto text = java::Implement<Consumer>().On("accept", [](std::string_view t) { sink = t[0]; }).New();
  Measure("void(Object)", rounds, times,
          {WayOf("an unchecked native method", thread, Objects, references),
           WayOf("a std::function of Ref<Object>", thread, Objects, taking),
           WayOf("a lambda of std::string_view", thread, Objects, text)});

  const auto compared = bare.New<Comparator>("compare", "(Ljava/lang/Object;Ljava/lang/Object;)I", "ILL");
  const std::function<jint(Ref<Object>, Ref<Object>)> compare = [](Ref<Object> a, Ref<Object> b) {
    return a && b ? 0 : 1;
  };
  const auto comparing = java::Implement<Comparator>().On("compare", compare).New();
  Measure("int(Object, Object)", rounds, times,
          {WayOf("an unchecked native method", thread, Compares, compared),
           WayOf("a std::function of Ref<Object>", thread, Compares, comparing)});

  Measure("an object made", rounds, 1000,
          {{"of an Implementation",
            Loop([implementation = java::Implement<Consumer>().On("accept", accept)](int) { implementation.New(); })},
           {"of a lambda for an argument", Loop([&](int) {
              Ints(
                  thread, [](jint x) { return x; }, 0);
            })}});
}

}  // namespace
}  // namespace tests

int main(int argc, char** argv) {
  tests::Run(argc > 1 ? std::atoi(argv[1]) : 201);
  return 0;
}
