// Exceptions between Java and the C++ functions that it calls.
#include <stdexcept>
#include <string>

#include "java/realvm/CallbackTags.h"
#include "java/realvm/OneVm.h"

namespace tests {
namespace {

using java::Error;
using java::Implement;
using java::Local;
using java::Misuse;
using java::Object;
using java::Ref;
using java::StaticMethod;

class CallbackErrorsTest : public RealVmTest {};

constexpr StaticMethod<jint(std::string_view)> ParseInt{"java/lang/Integer", "parseInt"};
constexpr java::Method<Runnable, void()> RunIt{"run"};

struct Odd {};
struct IoException {
  static constexpr char JavaName[] = "java/io/IOException";
  using Super = java::Throwable;
};
struct IllegalState {
  static constexpr char JavaName[] = "java/lang/IllegalStateException";
};

TEST_F(CallbackErrorsTest, ACppExceptionIsARuntimeExceptionWithItsText) {
  EXPECT_EQ(Thrown([] { throw std::runtime_error("Z\xC3\xBCrich"); }), "java.lang.RuntimeException: Z\xC3\xBCrich");
  EXPECT_EQ(Thrown([] { throw std::invalid_argument(""); }), "java.lang.RuntimeException: ");
  EXPECT_EQ(Thrown([] { throw std::runtime_error("not \xFF UTF-8"); }), "java.lang.RuntimeException: not ? UTF-8");
  EXPECT_EQ(Thrown([] { throw Misuse("java/X", 1, "misused"); }), "java.lang.RuntimeException: misused");
  EXPECT_EQ(Thrown([] { std::string().at(1); }).substr(0, 27), "java.lang.RuntimeException:");
}

TEST_F(CallbackErrorsTest, AnythingElseIsSaidWithItsType) {
#ifndef _MSC_VER
  EXPECT_EQ(Thrown([] { throw 5; }), "java.lang.RuntimeException: a C++ exception of type int");
  EXPECT_EQ(Thrown([] { throw Odd(); }),
            "java.lang.RuntimeException: a C++ exception of type tests::(anonymous namespace)::Odd");
#else
  EXPECT_EQ(Thrown([] { throw 5; }), "java.lang.RuntimeException: a C++ exception of an unknown type");
#endif
}

TEST_F(CallbackErrorsTest, AnErrorIsTheSameThrowableAgain) {
  std::optional<java::Global<java::Throwable>> first;
  const Local<Runnable> runnable = Implement<Runnable>()
                                       .On("run",
                                           [&] {
                                             try {
                                               ParseInt("x");
                                             } catch (const Error& error) {
                                               first = error.Throwable();
                                               throw;
                                             }
                                           })
                                       .New();
  try {
    RunIt(runnable);
    FAIL() << "nothing was thrown";
  } catch (const Error& error) {
    EXPECT_TRUE(java::Same(error.Throwable(), *first));
    EXPECT_STREQ(error.what(), "java.lang.NumberFormatException: For input string: \"x\"");
    EXPECT_THAT(error.StackTrace(), testing::HasSubstr("Integer.parseInt"));
  }
}

TEST_F(CallbackErrorsTest, CheckedExceptionsAreWrappedUnlessTheyAreDeclared) {
  const auto check = [] { java::CallStatic<void>("java/lang/Class", "forName", "no.Such"); };
  EXPECT_EQ(Thrown(check),
            "java.lang.reflect.UndeclaredThrowableException by java.lang.ClassNotFoundException: no/Such");
  EXPECT_EQ(ThrownByCheck(Implement<Shape>().On("check", check)), "java.lang.reflect.UndeclaredThrowableException");
  const auto declared = [] { throw Error(java::New<IoException>("declared")); };
  EXPECT_EQ(ThrownByCheck(Implement<Shape>().On("check", declared)), "java.io.IOException: declared");
}

TEST_F(CallbackErrorsTest, AnExceptionThatAFunctionMakesArrivesAsTheSameThrowable) {
  const java::Global<IoException> made(java::New<IoException>("made"));
  const Local<Shape> shape = Implement<Shape>().On("check", [&made] { throw Error(made); }).New();
  try {
    java::Call<void>(shape, "check");
    FAIL() << "nothing was thrown";
  } catch (const Error& error) {
    EXPECT_TRUE(java::Same(error.Throwable(), made));
    EXPECT_STREQ(error.what(), "java.io.IOException: made");
  }
}

TEST_F(CallbackErrorsTest, WhatTheFixedInterfaceLeftPendingIsThrown) {
  java::MakeFailuresReadable();
  EXPECT_EQ(Thrown([] { TheVm().Handle().FindClass("no/Such"); }), "java.lang.NoClassDefFoundError: no/Such");
  EXPECT_EQ(Thrown([] { throw mirel::base::CMemoryException("x", 1, "what failed", nullptr); }),
            "java.lang.RuntimeException: what failed");
  EXPECT_EQ(
      Thrown([] { java::detail::Env()->ThrowNew(java::detail::ClassOf<IllegalState>(java::detail::Env()), "raw"); }),
      "java.lang.IllegalStateException: raw");
}

TEST_F(CallbackErrorsTest, WhatIsPendingIsThrownBeforeAnObjectIsMade) {
  ExpectWhatIsPendingFirst([] { Implement<Runnable>().On("run", [] {}).New(); });
  ExpectWhatIsPendingFirst([] { Implement<Runnable>().On("missing", [] {}).New(); });
  ExpectWhatIsPendingFirst([] { Implement(Local<java::Class>()).New(); });
}

TEST_F(CallbackErrorsTest, ItGoesThroughJavaBackToCpp) {
  const auto rethrown = [](auto function) {
    try {
      RunIt(Implement<Runnable>().On("run", function).New());
    } catch (const Error& error) {
      return std::string(error.what());
    }
    return std::string("nothing");
  };
  EXPECT_EQ(rethrown([] { throw std::runtime_error("deep"); }), "java.lang.RuntimeException: deep");
  EXPECT_EQ(rethrown([&] { throw std::runtime_error(rethrown([] { throw std::runtime_error("deeper"); })); }),
            "java.lang.RuntimeException: java.lang.RuntimeException: deeper");
}

}  // namespace
}  // namespace tests
