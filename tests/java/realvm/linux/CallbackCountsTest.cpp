// Counts what C++ called from Java makes and deletes, on all threads: references of JNI, and blocks of memory.
#include <jvmti.h>

#include <atomic>
#include <cstdlib>
#include <mutex>
#include <new>
#include <set>

#include "java/realvm/Counted.h"
#include "java/realvm/OneVm.h"

// The linker's: where this program begins, and where its code ends.
extern "C" const char __executable_start;
extern "C" const char etext;

namespace {

std::atomic<long> s_blocks{0};
thread_local int t_counting = 0;  // the test itself, whose memory is not counted

}  // namespace

// These replace those of the whole program; the other forms call them.
void* operator new(std::size_t size) {
  void* const memory = std::malloc(size == 0 ? 1 : size);
  if (memory == nullptr) throw std::bad_alloc();
  if (t_counting == 0) ++s_blocks;
  return memory;
}
void operator delete(void* memory) noexcept {
  if (memory != nullptr && t_counting == 0) --s_blocks;
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept { operator delete(memory); }

namespace tests {
namespace {

using java::Global;
using java::Implement;
using java::Local;
using java::NativeMethod;
using java::Object;
using java::Ref;
using java::StaticMethod;
using Jni = JNINativeInterface_;

// References of one kind that code of this program has made. The JDK's own native methods use the same functions.
class References {
 public:
  void Make(jobject made) {
    const Lock lock(*this);
    m_left.insert(made);
    ++m_made;
  }
  // Whichever code does it: a call at a function's end seems to be its caller's.
  void Delete(jobject deleted) {
    const Lock lock(*this);
    const auto found = m_left.find(deleted);
    if (found != m_left.end()) m_left.erase(found);
  }
  long Left() {
    const Lock lock(*this);
    return static_cast<long>(m_left.size());
  }
  long Made() {
    const Lock lock(*this);
    return m_made;
  }

 private:
  struct Lock {
    explicit Lock(References& references) : guard(references.m_lock) { ++t_counting; }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() { --t_counting; }
    std::lock_guard<std::mutex> guard;
  };

  std::mutex m_lock;
  std::multiset<jobject> m_left;
  long m_made = 0;
};

References s_locals;
References s_globals;
References s_weaks;
Jni s_real;

template <References& Kind, auto Slot, typename Function = decltype(Slot)>
struct Making;
template <References& Kind, auto Slot, typename R, typename... A>
struct Making<Kind, Slot, R (JNICALL* Jni::*)(JNIEnv*, A...)> {
  static R JNICALL Call(JNIEnv* env, A... arguments) {
    const void* const caller = __builtin_return_address(0);
    const R made = (s_real.*Slot)(env, arguments...);
    if (made != nullptr && caller >= &__executable_start && caller < &etext) Kind.Make(made);
    return made;
  }
};
template <References& Kind, auto Slot, typename R>
void JNICALL Deleting(JNIEnv* env, R reference) {
  Kind.Delete(reference);
  (s_real.*Slot)(env, reference);
}
template <References& Kind, auto... Slot>
void Count(Jni& table) {
  ((table.*Slot = &Making<Kind, Slot>::Call), ...);
}

void UseCountingFunctions(jvmtiEnv* tools) {
  Jni table = s_real;
  // clang-format off
  Count<s_locals, &Jni::NewString, &Jni::NewStringUTF, &Jni::NewObjectA, &Jni::NewObjectV, &Jni::NewObjectArray,
        &Jni::NewLocalRef, &Jni::NewBooleanArray, &Jni::NewByteArray, &Jni::NewCharArray, &Jni::NewShortArray,
        &Jni::NewIntArray, &Jni::NewLongArray, &Jni::NewFloatArray, &Jni::NewDoubleArray, &Jni::NewDirectByteBuffer,
        &Jni::CallObjectMethodA, &Jni::CallNonvirtualObjectMethodA, &Jni::CallStaticObjectMethodA,
        &Jni::GetObjectArrayElement, &Jni::GetObjectField, &Jni::GetStaticObjectField, &Jni::GetObjectClass,
        &Jni::GetSuperclass, &Jni::ExceptionOccurred, &Jni::FindClass, &Jni::DefineClass, &Jni::AllocObject,
        &Jni::ToReflectedMethod>(table);
  // clang-format on
  Count<s_globals, &Jni::NewGlobalRef>(table);
  Count<s_weaks, &Jni::NewWeakGlobalRef>(table);
  table.DeleteLocalRef = &Deleting<s_locals, &Jni::DeleteLocalRef, jobject>;
  table.DeleteGlobalRef = &Deleting<s_globals, &Jni::DeleteGlobalRef, jobject>;
  table.DeleteWeakGlobalRef = &Deleting<s_weaks, &Jni::DeleteWeakGlobalRef, jweak>;
  ASSERT_EQ(tools->SetJNIFunctionTable(&table), JVMTI_ERROR_NONE);
}

// What is there.
struct Left {
  long locals;
  long globals;
  long weaks;
  long blocks;
};
bool operator==(const Left& a, const Left& b) {
  return a.locals == b.locals && a.globals == b.globals && a.weaks == b.weaks && a.blocks == b.blocks;
}
std::ostream& operator<<(std::ostream& out, const Left& left) {
  return out << left.locals << " local, " << left.globals << " global, " << left.weaks << " weak references, "
             << left.blocks << " blocks";
}
Left Now() { return {s_locals.Left(), s_globals.Left(), s_weaks.Left(), s_blocks}; }

// Has Java collect until this is left, or until nothing more changes: its threads end and clean in their own time.
Left Settled(const Left& wanted) {
  Left left = Now();
  for (int unchanged = 0; unchanged < 50 && !(left == wanted);) {
    Collect();
    const Left next = Now();
    unchanged = next == left ? unchanged + 1 : 0;
    left = next;
  }
  return left;
}

class CallbackCountsTest : public RealVmTest {
 protected:
  static void SetUpTestSuite() {
    JavaVM* const vm = java::detail::runningVm;
    ASSERT_EQ(vm->GetEnv(reinterpret_cast<void**>(&s_tools), JVMTI_VERSION_1_2), JNI_OK);
    jniNativeInterface* table = nullptr;
    ASSERT_EQ(s_tools->GetJNIFunctionTable(&table), JVMTI_ERROR_NONE);
    s_real = *table;
    s_tools->Deallocate(reinterpret_cast<unsigned char*>(table));
    UseCountingFunctions(s_tools);
  }
  static void TearDownTestSuite() {
    s_tools->SetJNIFunctionTable(&s_real);
    s_tools->DisposeEnvironment();
  }

  // The first rounds find classes and IDs, which are kept. Each later one must make so many references at least, and
  // leave none and no memory; local ones that functions return end in Java.
  template <typename Round>
  static void ExpectNothingLeft(Round round, long locals, long globals, long returned = 0) {
    for (int i = 0; i < 2; ++i) round();
    Left wanted = Settled({-1, -1, -1, -1});
    wanted.locals += 3 * returned;
    const long localsBefore = s_locals.Made();
    const long globalsBefore = s_globals.Made();
    for (int i = 0; i < 3; ++i) round();
    EXPECT_GE(s_locals.Made() - localsBefore, 3 * locals);
    EXPECT_GE(s_globals.Made() - globalsBefore, 3 * globals);
    EXPECT_EQ(Settled(wanted), wanted);
  }

 private:
  static inline jvmtiEnv* s_tools = nullptr;
};

constexpr int Objects = 200;

TEST_F(CallbackCountsTest, ObjectsThatAreCollected) {
  SKIP_BEFORE_JAVA_9("functions are never destroyed");
  static std::atomic<int> count{0};
  const auto round = [] {
    for (int i = 0; i < Objects; ++i) {
      const Global<Integer> number(NewInteger(i));
      Thrown([number, counted = Counted(count), text = std::string(100, 'x')] {});
    }
    const auto shape = Implement<Shape>()
                           .On("area", [counted = Counted(count)] { return 1.0; })
                           .On("over", [](jint) { return std::string(100, 'i'); })
                           .On("over", [](std::string_view text) { return text; })
                           .On("toString", [] { return "own"; });
    EXPECT_EQ(java::Call<std::string>(shape.New(), "toString"), "own");
    const auto copy = shape;
    EXPECT_EQ(java::Call<std::string>(copy.New(), "toString"), "own");
  };
  ExpectNothingLeft(round, Objects, Objects, 2);
  EXPECT_EQ(count, 0);
}

TEST_F(CallbackCountsTest, WhatFunctionsThrow) {
  SKIP_BEFORE_JAVA_9("functions are never destroyed");
  const auto round = [] {
    for (int i = 0; i < Objects; ++i) {
      EXPECT_EQ(Thrown([] { throw std::runtime_error("thrown"); }), "java.lang.RuntimeException: thrown");
      EXPECT_EQ(Thrown([] { java::CallStatic<jint>("java/lang/Integer", "parseInt", "x"); }),
                "java.lang.NumberFormatException: For input string: \"x\"");
    }
  };
  ExpectNothingLeft(round, Objects, Objects);
}

constexpr int Threads = 8;
constexpr int Calls = 100;

// All that a function may do; its own references end with it.
jint UseReferences(jint x) {
  const Local<java::String> text = java::NewString("text");
  const Global<java::String> global(text);
  const Global<java::String> shared = global;
  const java::Weak<java::String> weak(text);
  const std::vector<std::string> texts{"a", "b"};
  if (java::NewArray(texts).Get() == nullptr || !weak.Lock()) return 0;
  const std::string missing = WhatOf<java::Error>([] { java::CallStatic<jint>("java/lang/Integer", "parseInt", "x"); });
  return missing == "nothing" ? 0 : x + java::Call<jint>(shared, "length");
}

TEST_F(CallbackCountsTest, CallsFromJavasThreads) {
  const Global<IntOperator> made(Implement<IntOperator>().On("applyAsInt", &UseReferences).New());
  const auto round = [&] {
    EXPECT_EQ(CallFromThreads(made, Threads, Calls), Threads * (Calls * (Calls - 1) / 2 + 4 * Calls));
  };
  ExpectNothingLeft(round, 4 * Threads * Calls, Threads * Calls);
}

TEST_F(CallbackCountsTest, ObjectsThatJavasThreadsMake) {
  SKIP_BEFORE_JAVA_9("functions are never destroyed");
  static std::atomic<int> count{0};
  const auto round = [] {
    const jlong sum = CallFromThreads(
        [](jint x) { return Nest([x, counted = Counted(count)](jint y) { return x + y; }, 1); }, Threads, Calls);
    EXPECT_EQ(sum, Threads * (Calls * (Calls - 1) / 2 + Calls));
    EXPECT_TRUE(ComesDownTo(count, 0)) << count;
  };
  ExpectNothingLeft(round, Threads * Calls, 0);
}

TEST_F(CallbackCountsTest, NativeMethodsOfClassesThatAreCollected) {
  SKIP_BEFORE_JAVA_9("functions are never destroyed");
  constexpr StaticMethod<Local<java::Class>(std::string_view)> copyOf{"fixture/Strict", "copyOf"};
  constexpr NativeMethod<jint(jint, jlong, double)> native{"fixture/Natives", "add"};
  constexpr StaticMethod<jint(jint, jlong, double)> add{"fixture/Natives", "add"};
  static std::atomic<int> count{0};
  const auto round = [&] {
    for (int i = 0; i < 10; ++i) {
      const Local<java::Class> natives = copyOf("fixture.Natives");
      native.In(natives).Bind([counted = Counted(count)](jint a, jlong b, double) { return a + static_cast<jint>(b); });
      EXPECT_EQ(add.In(natives)(1, 2, 3), 3);
    }
    EXPECT_TRUE(ComesDownTo(count, 0)) << count;
  };
  ExpectNothingLeft(round, 10, 10);
}

}  // namespace
}  // namespace tests
