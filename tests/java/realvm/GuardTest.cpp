// Failures of the fixed interface, in Java's own words.
#include <torvan/Torvan.h>

#include <cstring>
#include <functional>
#include <stdexcept>
#include <thread>

#include "java/realvm/CountedReferences.h"
#include "java/realvm/OneVm.h"

namespace tests {
namespace {

using java::Error;
using java::Guard;
using torvan::jni::CJavaClass;
using torvan::jni::CJavaException;
using torvan::jni::CJavaObject;
using torvan::jni::CJavaVm;

class GuardTest : public RealVmTest {
 protected:
  const CJavaVm& vm = TheVm().Handle();
  const bool readable = java::MakeFailuresReadable();
};

std::string Text(const mirel::base::CUnicodeString& text) {
  const RX::UniChar* units = text;
  return java::detail::ToUtf8(std::u16string(units, units + text.GetLength()));
}

TEST_F(GuardTest, FailuresCanBeMadeReadableOnceAndForAllThreads) {
  ASSERT_TRUE(readable);
  EXPECT_TRUE(java::MakeFailuresReadable());
  const auto fail = [this] {
    const java::LocalFrame frame;
    try {
      vm.FindClass("fixture/Throwing").CallStaticIntMethod("sharedInt", "()I");
      ADD_FAILURE() << "nothing thrown";
    } catch (const CJavaException& caught) {
      EXPECT_EQ(Text(caught.GetJavaExceptionClassName()), "java.lang.IllegalStateException");
      EXPECT_EQ(Text(caught.GetJavaMessage()), "shared Int");
      EXPECT_THAT(Text(caught.GetJavaStackTrace()), testing::HasSubstr("fixture.Throwing.sharedInt(Throwing.java:"));
    }
    const auto pending = java::TakePending();
    ASSERT_TRUE(pending.has_value());
    EXPECT_STREQ(pending->what(), "java.lang.IllegalStateException: shared Int");
  };
  fail();
  std::thread(fail).join();
}

// An operation of the fixed interface, used so that Java throws, and the start of what() then.
struct Operation {
  std::string name;
  std::function<void()> run;
  std::string what;
};
using Operations = std::vector<Operation>;

template <typename Unit>
struct Spelled : std::basic_string<Unit> {
  explicit Spelled(const char* ascii) : std::basic_string<Unit>(ascii, ascii + std::strlen(ascii)) {}
  operator const Unit*() const { return this->c_str(); }
};

// The members of objects and classes, with texts of one kind.
template <typename Unit>
void AddMembers(Operations& all, const CJavaVm& vm) {
  using Text = Spelled<Unit>;
  const CJavaObject object = vm.NewObject("fixture/Throwing", "()V");
  const CJavaClass type = vm.FindClass("fixture/Throwing");
  const CJavaObject null = vm.NewString(nullptr);
  const std::string noField = "java.lang.NoSuchFieldError";
  const std::string noMethod = "java.lang.NoSuchMethodError";
  const std::string thrown = "java.lang.IllegalStateException: ";
  const Text none("none");
#define FIELDS(Type, letter, value)                                                                      \
  all.push_back({"Get" #Type, [=] { object.Get##Type##Field(none, Text(letter)); }, noField});           \
  all.push_back({"Set" #Type, [=] { object.Set##Type##Field(none, Text(letter), value); }, noField});    \
  all.push_back({"GetStatic" #Type, [=] { type.GetStatic##Type##Field(none, Text(letter)); }, noField}); \
  all.push_back({"SetStatic" #Type, [=] { type.SetStatic##Type##Field(none, Text(letter), value); }, noField})
#define METHODS(Type, letter)                                                                                         \
  all.push_back({"Call" #Type, [=] { object.Call##Type##Method(none, Text("()" letter)); }, noMethod});               \
  all.push_back({"Call" #Type, [=] { object.Call##Type##Method(Text("call" #Type), Text("()" letter)); },             \
                 thrown + "call " #Type});                                                                            \
  all.push_back(                                                                                                      \
      {"CallNonvirtual" #Type, [=] { object.CallNonvirtual##Type##Method(none, Text("()" letter)); }, noMethod});     \
  all.push_back({"CallNonvirtual" #Type,                                                                              \
                 [=] { object.CallNonvirtual##Type##Method(Text("call" #Type), Text("()" letter)); },                 \
                 thrown + "call " #Type});                                                                            \
  all.push_back({"CallStatic" #Type, [=] { type.CallStatic##Type##Method(none, Text("()" letter)); }, noMethod});     \
  all.push_back({"CallStatic" #Type, [=] { type.CallStatic##Type##Method(Text("shared" #Type), Text("()" letter)); }, \
                 thrown + "shared " #Type})
#define MEMBERS(Type, letter, value) \
  FIELDS(Type, letter, value);       \
  METHODS(Type, letter)
  MEMBERS(Object, "Ljava/lang/Object;", null);
  MEMBERS(Boolean, "Z", JNI_TRUE);
  MEMBERS(Byte, "B", 1);
  MEMBERS(Char, "C", 1);
  MEMBERS(Short, "S", 1);
  MEMBERS(Int, "I", 1);
  MEMBERS(Long, "J", 1);
  MEMBERS(Float, "F", 1.0f);
  MEMBERS(Double, "D", 1.0);
  METHODS(Void, "V");
#undef MEMBERS
#undef METHODS
#undef FIELDS
  const Text name("fixture/Throwing");
  const Text unfinished("fixture/Throwing$Unfinished");
  const Text noSuch("no/Such");
  const std::string noClass = "java.lang.NoClassDefFoundError: no/Such";
  const std::string constructed = thrown + "constructor 7";
  const CJavaClass unfinishedClass = vm.FindClass(unfinished);
  all.push_back({"FindClass", [=] { vm.FindClass(noSuch); }, noClass});
  all.push_back({"AllocObject of a VM", [=] { vm.AllocObject(noSuch); }, noClass});
  all.push_back({"AllocObject of a VM", [=] { vm.AllocObject(unfinished); }, "java.lang.InstantiationException"});
  all.push_back({"AllocObject of a class", [=] { unfinishedClass.AllocObject(); }, "java.lang.InstantiationException"});
  all.push_back({"NewObject of a VM", [=] { vm.NewObject(noSuch, Text("()V")); }, noClass});
  all.push_back({"NewObject of a VM", [=] { vm.NewObject(name, Text("(J)V")); }, noMethod});
  all.push_back({"NewObject of a VM", [=] { vm.NewObject(name, Text("(I)V"), 7); }, constructed});
  all.push_back({"NewObject of a class", [=] { type.NewObject(Text("(J)V")); }, noMethod});
  all.push_back({"NewObject of a class", [=] { type.NewObject(Text("(I)V"), 7); }, constructed});
  all.push_back({"IsInstanceOf", [=] { object.IsInstanceOf(noSuch); }, noClass});
  all.push_back({"CallStaticVoid", [=] { type.CallStaticVoidMethod(Text("silent"), Text("()V")); },
                 "java.lang.IllegalStateException"});
}

TEST_F(GuardTest, EveryOperationIsGuarded) {
  ASSERT_TRUE(readable);
  const java::LocalFrame frame(4096);
  Operations all;
  AddMembers<char>(all, vm);
  AddMembers<RX::UniChar>(all, vm);
  // A static initialiser runs once.
  all.push_back({"GetStaticInt", [this] { vm.FindClass("fixture/Throwing$Broken").GetStaticIntField("number", "I"); },
                 "java.lang.ExceptionInInitializerError: java.lang.NumberFormatException: For input string: \"x\""});
  // Java has no memory.
  const std::string noMemory = "java.lang.OutOfMemoryError: as the test wants";
  const auto withoutMemory = [](const std::function<void()>& run) {
    return [run] {
      const CountedReferences failing(java::detail::Env());
      CountedReferences::FailAt(1);
      run();
    };
  };
  const torvan::jni::CJavaString text = vm.NewString(RX_TEXT("text"));
  all.push_back({"NewString", withoutMemory([this] { vm.NewString(RX_TEXT("text")); }), noMemory});
  all.push_back({"a string's text",
                 withoutMemory([text] { static_cast<void>(static_cast<mirel::base::CUnicodeString>(text)); }),
                 noMemory});
  EXPECT_EQ(all.size(), 2 * (9 * 10 + 6 + 11) + 3u);
  for (const Operation& operation : all) {
    SCOPED_TRACE(operation.name);
    EXPECT_THAT(WhatOf<Error>([&] { Guard(operation.run); }), testing::StartsWith(operation.what));
    EXPECT_EQ(java::detail::Env()->ExceptionCheck(), JNI_FALSE);
  }
}

TEST_F(GuardTest, ReturnsTheResultOfItsFunction) {
  const java::LocalFrame frame;
  EXPECT_EQ(Guard([] { return 7; }), 7);
  int value = 1;
  Guard([&]() -> int& { return value; }) = 2;
  EXPECT_EQ(value, 2);
  EXPECT_EQ(*Guard([] { return std::make_unique<int>(7); }), 7);
  auto moved = std::make_unique<int>(8);
  EXPECT_EQ(Guard([&]() -> std::unique_ptr<int>&& { return std::move(moved); }).get(), moved.get());
  Guard([&] { value = 3; });
  EXPECT_EQ(value, 3);
  const CJavaObject object = Guard([&] { return vm.NewObject("fixture/Throwing", "()V"); });
  EXPECT_TRUE(object.IsInstanceOf("fixture/Throwing"));
  // In this one Java throws nothing.
  EXPECT_TRUE(Guard([&] { return object.IsInstanceOf(vm.FindClass("fixture/Throwing")); }));
}

TEST_F(GuardTest, FailuresWithoutJavasPartPassAsTheyAre) {
  const java::LocalFrame frame;
  const CJavaObject null = vm.NewString(nullptr);
  EXPECT_THROW(Guard([&] { null.CallIntMethod("hashCode", "()I"); }), mirel::base::CNullReferenceException);
  EXPECT_THROW(Guard([] { throw std::runtime_error("the host's"); }), std::runtime_error);
  EXPECT_EQ(WhatOf<java::Misuse>([] { Guard([] { throw java::Misuse("host", 1, "mine"); }); }), "mine");
}

TEST_F(GuardTest, WhatIsPendingWhenAnotherExceptionPassesIsCleared) {
  JNIEnv* const env = java::detail::Env();
  const auto failing = [&](const auto& exception) {
    return [&] {
      Guard([&] {
        env->FindClass("no/Such");
        throw exception;
      });
    };
  };
  EXPECT_EQ(WhatOf<std::runtime_error>(failing(std::runtime_error("the host's"))), "the host's");
  EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
  EXPECT_EQ(WhatOf<java::Misuse>(failing(java::Misuse("host", 1, "mine"))), "mine");
  EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
  EXPECT_THROW(failing(7)(), int);
  EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
}

TEST_F(GuardTest, WhatRawJniLeavesIsThrown) {
  JNIEnv* const env = java::detail::Env();
  EXPECT_EQ(WhatOf<Error>([&] { Guard([&] { env->FindClass("no/Such"); }); }),
            "java.lang.NoClassDefFoundError: no/Such");
  const auto returning = [&] { return env->FindClass("no/Such"); };
  EXPECT_EQ(WhatOf<Error>([&] { Guard(returning); }), "java.lang.NoClassDefFoundError: no/Such");
  EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
  env->FindClass("no/Such");
  bool ran = false;
  EXPECT_EQ(WhatOf<Error>([&] { Guard([&] { ran = true; }); }), "java.lang.NoClassDefFoundError: no/Such");
  EXPECT_FALSE(ran);
}

}  // namespace
}  // namespace tests
