// Objects of the fixed interface: results, construction, questions about them, and handles.
#include "Host.h"

namespace bench {
namespace {

using torvan::jni::CJavaObject;

struct Raw {
  JavaVM* vm;
  jclass type;
  jobject object;

  // A global reference taken and deleted, as each handle of a new object does.
  long Keep(jobject made) const {
    jobject const global = Attach(vm)->NewGlobalRef(made);
    Require(global != nullptr);
    benchmark::DoNotOptimize(global);
    Attach(vm)->DeleteGlobalRef(global);
    return 1;
  }
  jobject Result() const {
    JNIEnv* const env = Attach(vm);
    jobject const result = env->CallObjectMethod(object, MethodOf(env, object, "self", "()Ljava/lang/Object;"));
    CheckOccurred(env);
    return result;
  }
  jobject New(long i) const {
    JNIEnv* const env = Attach(vm);
    const jmethodID constructor = env->GetMethodID(type, "<init>", "(I)V");
    Require(constructor != nullptr);
    jobject const made = env->NewObject(type, constructor, static_cast<jint>(i));
    Require(made != nullptr);
    CheckOccurred(env);
    return made;
  }
  jobject Alloc() const {
    JNIEnv* const env = Attach(vm);
    jobject const made = env->AllocObject(type);
    Require(made != nullptr);
    CheckOccurred(env);
    return made;
  }
};

// The two blocks that a handle of an object must have: the reference and its count.
class TwoBlocks {
 public:
  TwoBlocks() : m_reference(std::malloc(48)), m_count(std::malloc(24)) {
    benchmark::DoNotOptimize(m_reference);
    benchmark::DoNotOptimize(m_count);
  }
  ~TwoBlocks() {
    std::free(m_reference);
    std::free(m_count);
  }
  TwoBlocks(const TwoBlocks&) = delete;
  TwoBlocks& operator=(const TwoBlocks&) = delete;

 private:
  void* m_reference;
  void* m_count;
};

long There(const CJavaObject& object) { return object != mirel::base::CNull() ? 1 : 0; }

unsigned s_counts[2] = {1, 1};

}  // namespace

void AddObjects() {
  const Host& host = TheHost();
  const Raw raw{host.vm, host.rawClass, host.rawSubject};
  const auto& type = host.subjectClass;
  const auto& object = host.subject;
  static const CJavaObject same = object.CallObjectMethod("self", "()Ljava/lang/Object;");  // another reference to it

  Add("objects", "object result",
      {Batched("raw", [raw](long) { return raw.Keep(raw.Result()); }),
       Batched("raw and two heap blocks",
               [raw](long) {
                 jobject const result = raw.Result();
                 const TwoBlocks blocks;
                 return raw.Keep(result);
               }),
       Batched("narrow", [&](long) { return There(object.CallObjectMethod("self", "()Ljava/lang/Object;")); }),
       Batched("wide", [&](long) {
         return There(object.CallObjectMethod(RX_TEXT("self"), RX_TEXT("()Ljava/lang/Object;")));
       })});
  Add("objects", "constructor",
      {Batched("raw", [raw](long i) { return raw.Keep(raw.New(i)); }),
       Batched("raw and two heap blocks",
               [raw](long i) {
                 jobject const made = raw.New(i);
                 const TwoBlocks blocks;
                 return raw.Keep(made);
               }),
       Batched("narrow", [&](long i) { return There(type.NewObject("(I)V", static_cast<jint>(i))); }),
       Batched("wide", [&](long i) { return There(type.NewObject(RX_TEXT("(I)V"), static_cast<jint>(i))); })});
  Add("objects", "AllocObject",
      {Batched("raw", [raw](long) { return raw.Keep(raw.Alloc()); }),
       Batched("narrow", [&](long) { return There(type.AllocObject()); })});
  Add("objects", "IsInstanceOf a class",
      {Batched("raw", [raw](long) { return Attach(raw.vm)->IsInstanceOf(raw.object, raw.type) == JNI_TRUE ? 1 : 0; }),
       Batched("narrow", [&](long) { return object.IsInstanceOf(type) ? 1 : 0; })});
  Add("objects", "IsInstanceOf a name",
      {Batched("raw",
               [raw](long) {
                 JNIEnv* const env = Attach(raw.vm);
                 jclass const number = env->FindClass("java/lang/Number");
                 Require(number != nullptr);
                 return env->IsInstanceOf(raw.object, number) == JNI_TRUE ? 1 : 0;
               }),
       Batched("narrow", [&](long) { return object.IsInstanceOf("java/lang/Number") ? 1 : 0; }),
       Batched("wide", [&](long) { return object.IsInstanceOf(RX_TEXT("java/lang/Number")) ? 1 : 0; })});
  Add("objects", "equality",
      {Batched("raw",
               [raw](long) {
                 return Attach(raw.vm)->IsSameObject(raw.object, static_cast<jobject>(same)) == JNI_TRUE ? 1 : 0;
               }),
       Batched("narrow", [&](long) { return object == same ? 1 : 0; })});
  Add("objects", "handle copy and drop",
      {Single("two counts up and down",
              [](long) {
                ++s_counts[0];
                ++s_counts[1];
                benchmark::ClobberMemory();
                Require(--s_counts[0] != 0);
                Require(--s_counts[1] != 0);
                return 1;
              }),
       Single("narrow", [&](long) {
         const CJavaObject copy(object);
         benchmark::DoNotOptimize(&copy);
         return 1;
       })});
}

}  // namespace bench
