// Members of torvan::java, compared with JNI by hand that caches its IDs and checks for an exception after each call.

#include <atomic>

#include "Host.h"
#include "java/Threads.h"

namespace bench {
namespace {

constexpr java::StaticMethod<jint(jint, jint)> TheAdd{"bench/Subject", "add"};
constexpr java::Method<Subject, jint(jint)> Inc{"inc"};
constexpr java::Field<Subject, jint> TheField{"field"};
constexpr java::Method<Subject, java::Local<java::Object>()> Self{"self"};

// A VM that does not tell when a thread ends: each call then asks for its environment.
struct Uncached {
  Uncached() {
    java::detail::threadEndsAreSeen = false;
    java::detail::ForgetEnv();
  }
  ~Uncached() { java::detail::threadEndsAreSeen = true; }
  Uncached(const Uncached&) = delete;
  Uncached& operator=(const Uncached&) = delete;
};

}  // namespace

void AddJavaMembers() {
  const Host& host = TheHost();
  JNIEnv* const env = host.env;
  jclass const type = host.rawClass;
  jobject const object = host.rawSubject;
  const jmethodID add = env->GetStaticMethodID(type, "add", "(II)I");
  const jmethodID inc = env->GetMethodID(type, "inc", "(I)I");
  const jmethodID self = env->GetMethodID(type, "self", "()Ljava/lang/Object;");
  const jfieldID field = env->GetFieldID(type, "field", "I");
  static const java::Thread thread;
  static const java::Global<Subject> global(java::Ref<Subject>(host.subject));

  const auto staticInt = [](long i) { return TheAdd(static_cast<jint>(i), 3); };
  Add("java members", "static int",
      {Batched("raw",
               [=](long i) {
                 const jint result = env->CallStaticIntMethod(type, add, static_cast<jint>(i), 3);
                 Check(env);
                 return result;
               }),
       Batched("raw, asked before and after",
               [=](long i) {
                 Check(env);
                 const jint result = env->CallStaticIntMethod(type, add, static_cast<jint>(i), 3);
                 Check(env);
                 return result;
               }),
       Batched("with Thread", [](long i) { return TheAdd(thread, static_cast<jint>(i), 3); }),
       Batched("without", staticInt), Batched<Uncached>("without, by GetEnv", staticInt)});
  const auto instanceInt = [](long i) { return Inc(global, static_cast<jint>(i)); };
  Add("java members", "instance int",
      {Batched("raw",
               [=](long i) {
                 const jint result = env->CallIntMethod(object, inc, static_cast<jint>(i));
                 Check(env);
                 return result;
               }),
       Batched("with Thread", [](long i) { return Inc(thread, global, static_cast<jint>(i)); }),
       Batched("without", instanceInt), Batched<Uncached>("without, by GetEnv", instanceInt)});
  const auto result = [](long) { return Self(global) ? 1 : 0; };
  Add("java members", "object result",
      {Batched("raw",
               [=](long) {
                 jobject const made = env->CallObjectMethod(object, self);
                 Check(env);
                 const long there = made != nullptr ? 1 : 0;
                 env->DeleteLocalRef(made);
                 return there;
               }),
       Batched("with Thread", [](long) { return Self(thread, global) ? 1 : 0; }), Batched("without", result),
       Batched<Uncached>("without, by GetEnv", result)});
  Add("java members", "int field",
      {Batched("raw", [=](long) { return env->GetIntField(object, field); }),
       Batched("with Thread", [](long) { return TheField.Get(thread, global); }),
       Batched("without", [](long) { return TheField.Get(global); })});
  static std::atomic<long> count{1};
  Add("java members", "Global copied and dropped",
      {Single("an atomic count up and down",
              [](long) {
                count.fetch_add(1, std::memory_order_relaxed);
                Require(count.fetch_sub(1, std::memory_order_acq_rel) != 1);
                return 1;
              }),
       Single("Global", [](long) {
         const java::Global<Subject> copy(global);
         benchmark::DoNotOptimize(&copy);
         return copy ? 1 : 0;
       })});
}

}  // namespace bench
