// Making objects of C++ functions, and calling them, leaves no reference and no function, whatever comes of it.
#include <atomic>

#include "java/realvm/Counted.h"
#include "java/realvm/NothingLeft.h"

namespace javatest {
namespace {

using java::Implement;
using java::Local;
using java::Object;
using java::Ref;
using java::StaticMethod;

class CallbacksLeaveNothingTest : public NothingLeftTest {};

constexpr StaticMethod<std::string(Ref<Function>, Ref<Object>)> Applied{
    "fixture/Callbacks", "applied", "(Ljava/util/function/Function;Ljava/lang/Object;)Ljava/lang/Object;"};
constexpr StaticMethod<std::string(Ref<Shape>)> CallShape{"fixture/Callbacks", "shape"};

TEST_F(CallbacksLeaveNothingTest, AfterCalls) {
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

TEST_F(CallbacksLeaveNothingTest, AfterCallsThatThrow) {
  ExpectNothingOfThrowing([] { Nest([](jint x) -> jint { throw std::runtime_error(std::to_string(x)); }, 1); });
  ExpectNothingOfThrowing([] { Implement<Runnable>().On("walk", [] {}).New(); });
  ExpectNothingOfThrowing([] { Implement<Runnable>().On("run", [] {}).On("run", [] {}).New(); });
  ExpectNothingOfThrowing([] { CallShape([] {}); });
  ExpectNothingOfThrowing([] { Applied([](std::string value) { return value; }, NewInteger(1)); });
}

TEST_F(CallbacksLeaveNothingTest, WhereverJavaHasNoMemory) {
  std::atomic<int> count{0};
  ExpectNothingWhereverItFails([&] { Implement<Runnable>().On("run", [counted = Counted(count)] {}).New(); }, 3);
  const java::Global<java::Class> type(java::FindClass("fixture/Callbacks$Shape"));
  ExpectNothingWhereverItFails(
      [&] {
        Implement(type)
            .On("area", [counted = Counted(count)] { return 1.0; })
            .On("over", [](Local<java::String> text) { return text; })
            .New();
      },
      20);
  ExpectNothingWhereverItFails([&] { Nest([counted = Counted(count)](jint x) { return x; }, 1); }, 3);
  EXPECT_TRUE(ComesDownTo(count, 0)) << count;
}

TEST_F(CallbacksLeaveNothingTest, WhereverJavaHasNoMemoryForANativeMethod) {
  constexpr java::NativeMethod<void(Ref<Shape>)> native{"fixture/Natives", "takes", "(Ljava/lang/Object;)V"};
  std::atomic<int> count{0};
  ExpectNothingWhereverItFails([&] { native.Bind([counted = Counted(count)](Ref<Shape>) {}); }, 10);
  EXPECT_EQ(count, 2);  // bound twice, and the first one may still run
}

}  // namespace
}  // namespace javatest
