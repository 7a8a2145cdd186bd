// C++ called from Java when C++ runs out of memory, at each step on the way.
#include <atomic>

#include "java/realvm/Counted.h"
#include "java/realvm/FewAllocations.h"
#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

using java::Implement;
using java::Local;
using java::NativeMethod;
using java::Object;
using java::Ref;
using java::StaticMethod;

class CallbackMemoryTest : public FewAllocationsTest {};

struct Natives {
  static constexpr char JavaName[] = "fixture/Natives";
};

std::atomic<int> s_functions{0};

Local<Runnable> NewRunnable() {
  return Implement<Runnable>().On("run", [counted = Counted(s_functions)] {}).New();
}

std::string CallShapes() {
  return CallShape(Implement<Shape>()
                       .On("area", [counted = Counted(s_functions)] { return 1.0; })
                       .On("over", [](jint) { return std::string(100, 'i'); })
                       .On("over", [](jlong) { return "long"; })
                       .On("over", [](std::string_view text) { return text; }));
}

TEST_F(CallbackMemoryTest, ObjectsLeaveNothing) {
  ExpectNothingWithoutMemory(&NewRunnable, 3);
  const java::Global<java::Class> type(java::FindClass("fixture/Callbacks$Shape"));
  ExpectNothingWithoutMemory(
      [&] {
        Implement(type)
            .On("area", [counted = Counted(s_functions)] { return 1.0; })
            .On("over", [](Local<java::String> text) { return text; })
            .New();
      },
      50);
  EXPECT_TRUE(ComesDownTo(s_functions, 0)) << s_functions;
}

TEST_F(CallbackMemoryTest, CallsLeaveNothing) {
  ExpectNothingWithoutMemory([] { Nest([counted = Counted(s_functions)](jint x) { return x; }, 1); }, 3);
  ExpectNothingWithoutMemory(
      [] { Applied([counted = Counted(s_functions)](std::string value) { return value; }, std::string(100, 'x')); }, 5);
  ExpectNothingWithoutMemory(&CallShapes, 5);
  EXPECT_TRUE(ComesDownTo(s_functions, 0)) << s_functions;
}

// Java has what they throw.
TEST_F(CallbackMemoryTest, WhatAFunctionThrowsLeavesNothing) {
  ExpectNothingWithoutMemory(
      [] {
        const std::string thrown = Thrown([] { throw std::runtime_error(std::string(100, 'x')); });
        if (thrown == "nothing") std::abort();
        if (thrown != "java.lang.RuntimeException: " + std::string(100, 'x')) throw std::bad_alloc();
      },
      5);
}

TEST_F(CallbackMemoryTest, NativeMethodsLeaveNothing) {
  constexpr NativeMethod<void(Ref<Shape>)> takes{"fixture/Natives", "takes", "(Ljava/lang/Object;)V"};
  std::atomic<int> bound{0};
  ExpectNothingWithoutMemory([&] { takes.Bind([counted = Counted(bound)](Ref<Shape>) {}); }, 20);
  EXPECT_EQ(bound, 2) << "bound twice: the first may still run";
}

// In a process where nothing of it was ever used.
TEST_F(CallbackMemoryTest, TheFirstObjectsSucceedAtLast) {
  InOwnProcess([] {
    FewAllocationsTest::ExpectToSucceedAtLast(
        [] {
          NewRunnable();
          if (CallShapes() != "square of 1.0 -10 true " + std::string(100, 'i') + " long 1") throw std::bad_alloc();
          NativeMethod<jint(jint), Natives>("plus").Bind([](Ref<Natives>, jint a) { return a; });
        },
        100);
    EXPECT_EQ(Thrown([] { throw std::runtime_error("thrown"); }), "java.lang.RuntimeException: thrown");
    EXPECT_TRUE(ComesDownTo(s_functions, 0)) << s_functions;
  });
}

}  // namespace
}  // namespace tests
