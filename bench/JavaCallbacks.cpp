// C++ functions called from Java, compared with native methods that check nothing, called through the same proxy.
#include <functional>
#include <string>

#include "Host.h"
#include "java/HandlerBytes.h"

namespace bench {
namespace {

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
constexpr StaticMethod<void(Ref<IntOperator>, jint)> Ints{"bench/Subject", "ints"};
constexpr StaticMethod<void(Ref<Consumer>, jint)> Objects{"bench/Subject", "objects"};
constexpr StaticMethod<void(Ref<Comparator>, jint)> Compares{"bench/Subject", "compares"};

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
  java::Global<T> New(const char* method, const char* descriptor, const char* letters) {
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
    const Local<T> proxy =
        java::Adopt<T>(m_env->CallObjectMethod(handler, m_env->GetMethodID(m_type, "proxy", "()Ljava/lang/Object;")));
    return java::Global<T>(proxy);
  }

 private:
  void Bind(std::string name, std::string descriptor, void* function) {
    const JNINativeMethod native = {name.data(), descriptor.data(), function};
    Require(m_env->RegisterNatives(m_type, &native, 1) == JNI_OK);
  }

  JNIEnv* m_env;
  std::string m_name;
  jclass m_type;
};

// Java calls the object in a loop.
template <typename Call, typename T>
Way Called(const char* name, const Call& call, const java::Global<T>& object) {
  static constexpr jint times = 2000;
  const auto run = [&call, object](long) {
    static const java::Thread thread;
    call(thread, object, times);
    return 1L;
  };
  return Single(name, run, times);
}

volatile jint s_sink;

}  // namespace

void AddJavaCallbacks() {
  Bare bare(TheHost().env);
  using java::Global;
  using java::Implement;
  const std::function<jint(jint)> increment = [](jint x) { return x + 1; };
  Add("java callbacks", "int(int)",
      {Called("an unchecked native method", Ints, bare.New<IntOperator>("applyAsInt", "(I)I", "II")),
       Called("a std::function", Ints, Global<IntOperator>(Implement<IntOperator>().On("applyAsInt", increment).New())),
       Called("a lambda expression", Ints,
              Global<IntOperator>(Implement<IntOperator>().On("applyAsInt", [](jint x) { return x + 1; }).New()))});
  const std::function<void(Ref<Object>)> accept = [](Ref<Object> object) { s_sink = object ? 1 : 0; };
  Add("java callbacks", "void(Object)",
      {Called("an unchecked native method", Objects, bare.New<Consumer>("accept", "(Ljava/lang/Object;)V", "VL")),
       Called("a function of Ref<Object>", Objects, Global<Consumer>(Implement<Consumer>().On("accept", accept).New())),
       Called("a function of std::string_view", Objects,
              Global<Consumer>(
                  Implement<Consumer>().On("accept", [](std::string_view text) { s_sink = text[0]; }).New()))});
  const std::function<jint(Ref<Object>, Ref<Object>)> compare = [](Ref<Object> a, Ref<Object> b) {
    return a && b ? 0 : 1;
  };
  Add("java callbacks", "int(Object, Object)",
      {Called("an unchecked native method", Compares,
              bare.New<Comparator>("compare", "(Ljava/lang/Object;Ljava/lang/Object;)I", "ILL")),
       Called("a function of Ref<Object>", Compares,
              Global<Comparator>(Implement<Comparator>().On("compare", compare).New()))});
  Add("java callbacks", "an object with a function",
      {Batched("of an Implementation", [implementation = Implement<Consumer>().On("accept", accept)](
                                           long) { return implementation.New() ? 1 : 0; }),
       Batched("of a lambda for an argument", [](long) {
         Ints([](jint x) { return x; }, 0);
         return 1;
       })});
}

}  // namespace bench
