// Making objects of C++ functions, and calling them, leaves no reference and no function, whether it succeeds or fails.
#include <atomic>

#include "java/realvm/Counted.h"
#include "java/realvm/NothingLeft.h"

namespace tests {
namespace {

using java::Implement;
using java::Local;
using java::Object;
using java::Ref;
using java::StaticMethod;

class CallbackLeavesNothingTest : public NothingLeftTest {};

TEST_F(CallbackLeavesNothingTest, AfterCalls) {
  ExpectNothing([] { Implement<Runnable>().On("run", [] {}).New(); });
  ExpectNothing([] { Implement(java::FindClass("java/lang/Runnable")).On("run", [] {}).New(); });
  ExpectNothing([] { Applied([](std::string value) { return value; }, "text"); });
  ExpectNothing([] { Nest([](jint x) { return x; }, 1); });
  ExpectNothing([] {
    CallShape(Implement<Shape>()
                  .On("area", [] { return 1.0; })
                  .On("over", [](jint) { return "int"; })
                  .On("over", [](jlong) { return "long"; })
                  .On("over", [](std::string_view text) { return text; }));
  });
}

TEST_F(CallbackLeavesNothingTest, AfterCallsThatThrow) {
  ExpectNothingOfThrowing([] { Nest([](jint x) -> jint { throw std::runtime_error(std::to_string(x)); }, 1); });
  ExpectNothingOfThrowing([] { Implement<Runnable>().On("walk", [] {}).New(); });
  ExpectNothingOfThrowing([] { Implement<Runnable>().On("run", [] {}).On("run", [] {}).New(); });
  ExpectNothingOfThrowing([] { CallShape([] {}); });
  ExpectNothingOfThrowing([] { Applied([](std::string value) { return value; }, NewInteger(1)); });
}

TEST_F(CallbackLeavesNothingTest, WhereverJavaHasNoMemory) {
  const int ofTheObject = BeforeJava9() ? 2 : 3;
  std::atomic<int> count{0};
  ExpectNothingWhereverItFails([&] { Implement<Runnable>().On("run", [counted = Counted(count)] {}).New(); },
                               ofTheObject);
  const java::Global<java::Class> type(java::FindClass("fixture/Callbacks$Shape"));
  ExpectNothingWhereverItFails(
      [&] {
        Implement(type)
            .On("area", [counted = Counted(count)] { return 1.0; })
            .On("over", [](Local<java::String> text) { return text; })
            .New();
      },
      20);
  ExpectNothingWhereverItFails([&] { Nest([counted = Counted(count)](jint x) { return x; }, 1); }, ofTheObject);
  EXPECT_TRUE(ComesDownTo(count, 0)) << count;
}

TEST_F(CallbackLeavesNothingTest, WhereverADefaultOrManyArgumentsFail) {
  const Local<Shape> shape = Implement<Shape>().On("area", [] { return 4.0; }).New();
  const auto scaled = [&] { java::Call<jlong>(shape, "scaled", 10, 0.5, true); };
  const auto describe = [&] { java::Call<std::string>(shape, "describe", "square"); };
  ExpectNothing(scaled);
  ExpectNothing(describe);
  ExpectNothingWhereverItFails(describe, 3);
  const Local<Every> every =
      Implement<Every>()
          .On("mixed", [](jint, const std::string& text, double, Ref<Object>, jlong) { return text; })
          .New();
  const auto mixed = [&] { java::Call<std::string>(every, "mixed", 1, "text", 0.5, nullptr, jlong{5}); };
  ExpectNothing(mixed);
  ExpectNothingWhereverItFails(mixed, 3);
}

TEST_F(CallbackLeavesNothingTest, WhereverJavaHasNoMemoryForANativeMethod) {
  constexpr java::NativeMethod<void(Ref<Shape>)> native{"fixture/Natives", "takes", "(Ljava/lang/Object;)V"};
  std::atomic<int> count{0};
  ExpectNothingWhereverItFails([&] { native.Bind([counted = Counted(count)](Ref<Shape>) {}); }, 10);
  EXPECT_EQ(count, 2) << "bound twice: the first may still run";
}

TEST_F(CallbackLeavesNothingTest, WhereverTheVmRefusesAndDoesNotSayWhy) {
  std::atomic<int> count{0};
  const java::Global<java::Class> type(java::FindClass("fixture/Callbacks$Shape"));
  ExpectNothingWhereverItFailsSilently(
      [&] { Implement(type).On("area", [counted = Counted(count)] { return 1.0; }).New(); }, 1);
  EXPECT_TRUE(ComesDownTo(count, 0)) << count;
  constexpr java::NativeMethod<Local<Object>()> native{"fixture/Natives", "unbound"};
  ExpectNothingWhereverItFailsSilently([&] { native.Bind([] { return Local<Object>(); }); }, 2);
}

TEST_F(CallbackLeavesNothingTest, AMethodKeepsItsFunctionWhereAnotherCannotBeBound) {
  constexpr java::NativeMethod<jint(jint, jlong, double)> native{"fixture/Natives", "add"};
  constexpr StaticMethod<jint(jint, jlong, double)> add{"fixture/Natives", "add"};
  const auto bind = [&](jint value) { native.Bind([value](jint, jlong, double) { return value; }); };
  bind(1);
  int failures = 0;
  for (bool isBound = false; !isBound;) {
    {
      const CountedReferences counted(java::detail::Env());
      CountedReferences::FailSilentlyAt(failures + 1);
      try {
        bind(2);
        isBound = true;
      } catch (const std::exception&) {
        ++failures;
      }
    }
    EXPECT_EQ(add(0, 0, 0.0), isBound ? 2 : 1) << failures;
  }
  EXPECT_GT(failures, 1);
}

// The thread's table of JNI functions, while it is replaced.
JNINativeInterface_ s_table;
const JNINativeInterface_* s_real = nullptr;
jmethodID s_register = nullptr;

class Table {
 public:
  Table() {
    s_real = java::detail::Env()->functions;
    s_table = *s_real;
    java::detail::Env()->functions = &s_table;
  }
  ~Table() { java::detail::Env()->functions = s_real; }
};

TEST_F(CallbackLeavesNothingTest, WhereJavaHasNoMemoryForTheTextOfAnExceptionItIsTold) {
  const Local<Runnable> runnable = Implement<Runnable>().On("run", [] { throw std::runtime_error("text"); }).New();
  constexpr java::Method<Runnable, void()> run{"run"};
  EXPECT_EQ(WhatOf<java::Error>([&] { run(runnable); }), "java.lang.RuntimeException: text");
  const Table table;
  s_table.NewStringUTF = [](JNIEnv* e, const char*) -> jstring {
    jclass const type = s_real->FindClass(e, "java/lang/OutOfMemoryError");
    s_real->ThrowNew(e, type, "as the test wants");
    s_real->DeleteLocalRef(e, type);
    return nullptr;
  };
  s_table.NewString = [](JNIEnv* e, const jchar*, jsize) { return s_table.NewStringUTF(e, ""); };
  EXPECT_EQ(WhatOf<java::Error>([&] { run(runnable); }), "java.lang.OutOfMemoryError: as the test wants");
}

// A Cleaner may have taken what it is given when its stack runs out.
TEST_F(CallbackLeavesNothingTest, AFunctionIsDestroyedOnceAlsoWhereTheCleanerFailsLate) {
  SKIP_BEFORE_JAVA_9("there is no Cleaner");
  Implement<Runnable>().On("run", [] {}).New();
  JNIEnv* const env = java::detail::Env();
  const Local<java::Class> cleaner = java::FindClass("java/lang/ref/Cleaner");
  s_register = env->GetMethodID(static_cast<jclass>(cleaner.Get()), "register",
                                "(Ljava/lang/Object;Ljava/lang/Runnable;)Ljava/lang/ref/Cleaner$Cleanable;");
  std::atomic<int> count{0};
  for (int i = 0; i < 20; ++i) {
    const Table table;
    s_table.CallObjectMethodA = [](JNIEnv* e, jobject object, jmethodID id, const jvalue* arguments) -> jobject {
      jobject const result = s_real->CallObjectMethodA(e, object, id, arguments);
      if (id != s_register || s_real->ExceptionCheck(e) != JNI_FALSE) return result;
      s_real->DeleteLocalRef(e, result);
      jclass const type = s_real->FindClass(e, "java/lang/StackOverflowError");
      s_real->ThrowNew(e, type, "late");
      s_real->DeleteLocalRef(e, type);
      return nullptr;
    };
    EXPECT_EQ(WhatOf<java::Error>([&] { Implement<Runnable>().On("run", [counted = Counted(count)] {}).New(); }),
              "java.lang.StackOverflowError: late");
    EXPECT_EQ(count, 0);
  }
  for (int i = 0; i < 5; ++i) Collect();
  EXPECT_EQ(count, 0);
}

TEST_F(CallbackLeavesNothingTest, WhereReferencesRunOutAndTheVmDoesNotSayWhyJavaIsTold) {
  constexpr StaticMethod<std::string(Ref<Every>)> callMany{"fixture/Callbacks", "many"};
  bool called = false;
  const auto every =
      Implement<Every>()
          .On("nothing", [] {})
          .On("mixed", [](jint, std::string, double, Ref<Object>, jlong) { return "mixed"; })
          .On("sum", [](jlong, jint, jshort, jbyte, char16_t) { return jlong{1}; })
          .On("made", [](jint) { return Local<Object>(); })
          .On("count", [](Ref<Objects>) { return 1; })
          .On("all",
              [&called](Ref<Object>, Ref<Object>, Ref<Object>, Ref<Object>, Ref<Object>, Ref<Object>, Ref<Object>,
                        Ref<Object>, Ref<Object>, Ref<Object>, Ref<Object>, Ref<Object>, Ref<Object>, Ref<Object>,
                        Ref<Object>, Ref<Object>, Ref<Object>, Ref<Object>, Ref<Object>, Ref<Object>, jlong, double) {
                called = true;
                return "all";
              })
          .New();
  EXPECT_EQ(callMany(every), "mixed 1 null 1 all");
  called = false;
  const Table table;
  s_table.EnsureLocalCapacity = [](JNIEnv*, jint) -> jint { return JNI_ERR; };
  EXPECT_EQ(WhatOf<java::Error>([&] { callMany(every); }), "java.lang.RuntimeException: std::bad_alloc");
  EXPECT_EQ(WhatOf<java::Error>([&] {
              java::Call<std::string>(every, "all", "a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m",
                                      "n", "o", "p", "q", "r", "s", "t", jlong{5}, 0.5);
            }),
            "java.lang.RuntimeException: std::bad_alloc");
  EXPECT_FALSE(called);
}

}  // namespace
}  // namespace tests
