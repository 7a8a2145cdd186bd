// What Java throws, as the host catches it.
#include <exception>
#include <thread>

#include "java/realvm/OneVm.h"

namespace tests {
namespace {

using java::Error;
using testing::HasSubstr;
using testing::StartsWith;

class ErrorTest : public RealVmTest {};

struct RuntimeException {
  static constexpr char JavaName[] = "java/lang/RuntimeException";
};

// Calls a method of fixture.Errors that has no arguments.
void Raise(const char* method, const char* descriptor = "()V") {
  JNIEnv* const env = java::detail::Env();
  const auto type = java::Adopt<java::Class>(java::detail::LoadClass(env, "fixture.Errors"));
  const auto raw = static_cast<jclass>(type.Get());
  const jmethodID id = env->GetStaticMethodID(raw, method, descriptor);
  java::detail::CheckPending(env);
  switch (descriptor[2]) {
    case 'V':
      env->CallStaticVoidMethod(raw, id);
      break;
    case 'I':
      env->CallStaticIntMethod(raw, id);
      break;
    default:
      env->DeleteLocalRef(env->CallStaticObjectMethod(raw, id));
  }
  java::detail::CheckPending(env);
}

Error Caught(const char* method, const char* descriptor = "()V") {
  try {
    Raise(method, descriptor);
  } catch (const Error& error) {
    EXPECT_EQ(java::detail::Env()->ExceptionCheck(), JNI_FALSE) << method;
    return error;
  }
  throw std::runtime_error(std::string("nothing was thrown by ") + method);
}

// What Java itself prints.
std::string TraceOf(const Error& error) {
  JNIEnv* const env = java::detail::Env();
  const auto type = java::Adopt<java::Class>(java::detail::LoadClass(env, "fixture/Errors"));
  const auto raw = static_cast<jclass>(type.Get());
  const jmethodID id = env->GetStaticMethodID(raw, "traceOf", "(Ljava/lang/Throwable;)Ljava/lang/String;");
  const auto text = java::Adopt<java::String>(env->CallStaticObjectMethod(raw, id, error.Throwable().Get()));
  return java::detail::ReadUtf8(env, static_cast<jstring>(text.Get()));
}

struct Kind {
  const char* method;
  const char* descriptor;
  const char* className;
  std::optional<std::string> message;
  const char* cause;  // its what(), or null
};

const Kind Kinds[] = {
    {"plain", "()V", "java.lang.IllegalStateException", "bad state", nullptr},
    {"unicode", "()V", "java.lang.IllegalStateException",
     std::string("Z\xC3\xBCrich \xF0\x9F\x98\x80 \xEF\xBF\xBD \0 end", 22), nullptr},
    {"withoutMessage", "()V", "java.lang.UnsupportedOperationException", std::nullopt, nullptr},
    {"emptyMessage", "()V", "java.lang.IllegalStateException", "", nullptr},
    {"nullMessageWithCause", "()V", "java.lang.IllegalStateException", std::nullopt, "java.io.IOException: the reason"},
    {"chain", "()V", "java.lang.IllegalStateException", "outer", "java.lang.RuntimeException: middle"},
    {"suppressed", "()V", "java.lang.IllegalStateException", "first", nullptr},
    {"ownCause", "()V", "fixture.Errors$OwnCause", "my own", nullptr},
    {"endlessCauses", "()V", "java.io.IOException", "two", "java.io.IOException: one"},
    {"checked", "()V", "java.io.IOException", "checked", nullptr},
    {"stackOverflow", "()I", "java.lang.StackOverflowError", std::nullopt, nullptr},
    {"traceless", "()V", "fixture.Errors$Traceless", "without a trace", nullptr},
    {"localized", "()V", "fixture.Errors$Localized", "plain words", nullptr},
    {"divide", "()I", "java.lang.ArithmeticException", "/ by zero", nullptr},
    {"cast", "()Ljava/lang/Object;", "java.lang.ClassCastException",
     BeforeJava9() ? "java.lang.Double cannot be cast to java.lang.Integer"
                   : "class java.lang.Double cannot be cast to class java.lang.Integer (java.lang.Double and "
                     "java.lang.Integer are in module java.base of loader 'bootstrap')",
     nullptr},
    {"nullPointer", "()I", "java.lang.NullPointerException",
     BeforeJava9() ? std::nullopt
                   : std::optional<std::string>("Cannot invoke \"String.length()\" because the return value of "
                                                "\"fixture.Errors.nothing()\" is null"),
     nullptr},
    {"store", "()V", "java.lang.ArrayStoreException", "java.lang.Double", nullptr},
    {"bounds", "()I", "java.lang.ArrayIndexOutOfBoundsException",
     BeforeJava9() ? "7" : "Index 7 out of bounds for length 2", nullptr},
    {"inner", "()V", "fixture.Errors$1", std::nullopt, nullptr},
};

TEST_F(ErrorTest, TellsClassMessageTraceAndCauseOfEachKind) {
  for (const Kind& kind : Kinds) {
    SCOPED_TRACE(kind.method);
    const Error error = Caught(kind.method, kind.descriptor);
    EXPECT_EQ(error.ClassName(), kind.className);
    EXPECT_EQ(error.Message(), kind.message);
    // A text of C ends at its first NUL; the message does not.
    const std::string what = error.ClassName() + (kind.message ? ": " + *kind.message : "");
    EXPECT_STREQ(error.what(), what.c_str());
    EXPECT_STREQ(error.GetMessageText(), error.what());
    EXPECT_EQ(error.StackTrace(), TraceOf(error));
    EXPECT_THAT(error.StackTrace(), HasSubstr(error.ClassName()));
    const std::optional<Error> cause = error.Cause();
    ASSERT_EQ(cause.has_value(), kind.cause != nullptr);
    EXPECT_STREQ(cause ? cause->what() : nullptr, kind.cause);
    EXPECT_EQ(java::detail::Env()->ExceptionCheck(), JNI_FALSE);
  }
}

struct IllegalState {
  static constexpr char JavaName[] = "java/lang/IllegalStateException";
  using Super = java::Throwable;
};

TEST_F(ErrorTest, OneThatTheHostMakesTellsTheSame) {
  const java::Local<java::Throwable> cause = java::New<java::Throwable>("the reason");
  const java::Local<IllegalState> made = java::New<IllegalState>("made", cause);
  const Error error(made);
  EXPECT_STREQ(error.what(), "java.lang.IllegalStateException: made");
  EXPECT_STREQ(error.GetMessageText(), error.what());
  EXPECT_EQ(error.ClassName(), "java.lang.IllegalStateException");
  EXPECT_EQ(error.Message(), "made");
  EXPECT_TRUE(java::Same(error.Throwable(), made));
  EXPECT_TRUE(error.IsA<IllegalState>());
  EXPECT_EQ(error.StackTrace(), TraceOf(error));
  EXPECT_THAT(error.StackTrace(), HasSubstr("Caused by: java.lang.Throwable: the reason"));
  ASSERT_TRUE(error.Cause().has_value());
  EXPECT_TRUE(java::Same(error.Cause()->Throwable(), cause));
  EXPECT_EQ(Error(java::New<IllegalState>()).Message(), std::nullopt);
  EXPECT_STREQ(Error(error.Throwable()).what(), error.what());
}

TEST_F(ErrorTest, NoneIsMadeOfANullOrWhileAnotherIsPending) {
  EXPECT_EQ(WhatOf<java::Misuse>([] { Error(nullptr); }), "null is given as the throwable of an Error");
  const java::Local<IllegalState> made = java::New<IllegalState>("made");
  JNIEnv* const env = java::detail::Env();
  env->ThrowNew(java::detail::ClassOf<RuntimeException>(env), "pending");
  EXPECT_EQ(WhatOf<Error>([&] { Error{made}; }), "java.lang.RuntimeException: pending");
  EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
}

TEST_F(ErrorTest, TheTraceHasCausesAndSuppressedOnes) {
  EXPECT_THAT(Caught("chain").StackTrace(), testing::AllOf(StartsWith("java.lang.IllegalStateException: outer"),
                                                           HasSubstr("\tat fixture.Errors.chain(Errors.java:"),
                                                           HasSubstr("Caused by: java.lang.RuntimeException: middle"),
                                                           HasSubstr("Caused by: java.io.IOException: inner")));
  EXPECT_THAT(Caught("suppressed").StackTrace(), testing::AllOf(HasSubstr("Suppressed: java.io.IOException: second"),
                                                                HasSubstr("Suppressed: java.io.IOException: third")));
}

TEST_F(ErrorTest, CausesAreFollowedDownTheChain) {
  const Error error = Caught("chain");
  EXPECT_STREQ(error.Cause()->Cause()->what(), "java.io.IOException: inner");
  EXPECT_FALSE(error.Cause()->Cause()->Cause().has_value());
}

TEST_F(ErrorTest, WhatFailsWhileItIsReadIsLeftOut) {
  const Error message = Caught("messageThrows");
  EXPECT_STREQ(message.what(), "fixture.Errors$MessageThrows");
  EXPECT_EQ(message.Message(), std::nullopt);
  EXPECT_STREQ(message.StackTrace().c_str(),
               "fixture.Errors$MessageThrows\n\t(the stack trace was not read: Java failed to print it)\n");

  const Error trace = Caught("traceThrows");
  EXPECT_STREQ(trace.what(), "fixture.Errors$TraceThrows: untraceable");
  EXPECT_STREQ(trace.StackTrace().c_str(),
               "fixture.Errors$TraceThrows: untraceable\n"
               "\t(the stack trace was not read: Java failed to print it)\n");

  const Error cause = Caught("causeThrows");
  EXPECT_STREQ(cause.what(), "fixture.Errors$CauseThrows: causeless");
  EXPECT_EQ(WhatOf<Error>([&] { cause.Cause(); }), "java.lang.IllegalStateException: no cause today");
}

TEST_F(ErrorTest, AFailedInitialiserShowsItsCause) {
  const Error first = Caught("initialiser", "()I");
  EXPECT_STREQ(first.what(),
               "java.lang.ExceptionInInitializerError: java.lang.NumberFormatException: For input string: \"x\"");
  EXPECT_EQ(first.Message(), std::nullopt);
  EXPECT_STREQ(first.Cause()->what(), "java.lang.NumberFormatException: For input string: \"x\"");
  EXPECT_THAT(Caught("initialiserAgain", "()I").what(),
              StartsWith("java.lang.NoClassDefFoundError: Could not initialize class fixture.Errors$Broken"));
}

TEST_F(ErrorTest, AFullHeapIsReportedToo) {
  // Looked up while there is memory.
  JNIEnv* const env = java::detail::Env();
  const java::Local<java::Class> type = java::Adopt<java::Class>(java::detail::LoadClass(env, "fixture/Errors"));
  const auto errors = static_cast<jclass>(type.Get());
  const jmethodID freeMemory = env->GetStaticMethodID(errors, "freeMemory", "()V");
  const Error error = Caught("outOfMemory");
  EXPECT_EQ(error.ClassName(), "java.lang.OutOfMemoryError");
  EXPECT_STREQ(error.what(), "java.lang.OutOfMemoryError: Java heap space");
  EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
  EXPECT_THAT(error.StackTrace(), StartsWith("java.lang.OutOfMemoryError: Java heap space\n"));
  env->CallStaticVoidMethod(errors, freeMemory);
  java::detail::CheckPending(env);
}

TEST_F(ErrorTest, LookUpsFailWithTheirOwnErrors) {
  JNIEnv* const env = java::detail::Env();
  EXPECT_THAT(WhatOf<Error>([&] { java::detail::LoadClass(env, "no/Such"); }),
              StartsWith("java.lang.ClassNotFoundException: no.Such (not on the class path "));
  EXPECT_EQ(WhatOf<Error>([&] { Raise("noSuch"); }), "java.lang.NoSuchMethodError: noSuch");
  env->FindClass("no/Such");
  try {
    java::detail::ThrowPending(env, "; there is nothing of that name");
  } catch (const Error& error) {
    EXPECT_STREQ(error.what(), "java.lang.NoClassDefFoundError: no/Such; there is nothing of that name");
    EXPECT_EQ(error.Message(), "no/Such");
  }
  EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
}

TEST_F(ErrorTest, IsCaughtAsEachOfItsBases) {
  EXPECT_THROW(Raise("plain"), Error);
  EXPECT_THROW(Raise("plain"), java::Failure);
  EXPECT_THROW(Raise("plain"), torvan::jni::CJniException);
  EXPECT_THROW(Raise("plain"), mirel::base::CException);
  EXPECT_THROW(Raise("plain"), std::exception);
}

TEST_F(ErrorTest, KnowsItsClassAndItsObject) {
  const Error error = Caught("plain");
  EXPECT_TRUE(error.IsA<java::Throwable>());
  EXPECT_TRUE(error.IsA<RuntimeException>());
  EXPECT_FALSE(error.IsA<Integer>());
  const auto text = java::Adopt<java::String>(CallObject(error.Throwable().Get(), "toString", "()Ljava/lang/String;"));
  EXPECT_EQ(java::detail::ReadUtf8(java::detail::Env(), static_cast<jstring>(text.Get())), error.what());
}

TEST_F(ErrorTest, TravelsToAThreadThatIsNotAttached) {
  std::exception_ptr kept;
  try {
    Raise("plain");
  } catch (...) {
    kept = std::current_exception();
  }
  std::thread([moved = std::move(kept)]() mutable {
    EXPECT_EQ(WhatOf<Error>([&] { std::rethrow_exception(moved); }), "java.lang.IllegalStateException: bad state");
    moved = nullptr;
    EXPECT_EQ(java::detail::EnvIfAttached(), nullptr);
  }).join();
}

TEST_F(ErrorTest, ManyThreadsAskOneErrorAtOnce) {
  const Error error = Caught("chain");
  std::vector<std::thread> threads;
  std::vector<std::string> traces(8);
  for (std::string& trace : traces) {
    threads.emplace_back([&trace, error] { trace = error.StackTrace() + error.Cause()->what(); });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(traces, std::vector<std::string>(8, error.StackTrace() + error.Cause()->what()));
}

// Java waits there for a lock that the other thread has.
TEST_F(ErrorTest, IsAskedWhileItsTraceIsPrintedByAThreadThatWaits) {
  const Error error = Caught("locked");
  const java::Local<java::Throwable> own(error.Throwable());
  JNIEnv* const env = java::detail::Env();
  ASSERT_EQ(env->MonitorEnter(own.Get()), JNI_OK);
  std::string other;
  std::thread printing([&other, error] { other = error.StackTrace(); });
  Raise("awaitPrinting");
  const std::string trace = error.StackTrace();
  EXPECT_FALSE(error.Cause().has_value());
  EXPECT_EQ(env->MonitorExit(own.Get()), JNI_OK);
  printing.join();
  EXPECT_THAT(trace, StartsWith("fixture.Errors$Locked: locked\n\tat fixture.Errors.locked(Errors.java:"));
  EXPECT_EQ(other, trace);
}

TEST_F(ErrorTest, TakePendingReturnsWhatRawJniLeftAndClearsIt) {
  EXPECT_FALSE(java::TakePending().has_value());
  JNIEnv* const env = java::detail::Env();
  env->FindClass("no/Such");
  const std::optional<Error> taken = java::TakePending();
  ASSERT_TRUE(taken.has_value());
  EXPECT_STREQ(taken->what(), "java.lang.NoClassDefFoundError: no/Such");
  EXPECT_FALSE(java::TakePending().has_value());
}

TEST_F(ErrorTest, ACallThatFindsAnExceptionPendingThrowsIt) {
  java::detail::Env()->FindClass("no/Such");
  EXPECT_EQ(WhatOf<Error>([] { java::Adopt(static_cast<jobject>(nullptr)); }),
            "java.lang.NoClassDefFoundError: no/Such");
}

static_assert(std::is_nothrow_copy_constructible_v<Error> && std::is_nothrow_copy_assignable_v<Error>);

TEST_F(ErrorTest, WhatIsPendingStaysSoWhileAnotherErrorIsRead) {
  const Error error = Caught("endlessCauses");
  JNIEnv* const env = java::detail::Env();
  env->ThrowNew(static_cast<jclass>(java::detail::ClassOf<RuntimeException>(env)), "left pending");
  const std::string trace = error.StackTrace();
  EXPECT_EQ(env->ExceptionCheck(), JNI_TRUE);
  const auto cause = error.Cause();
  EXPECT_EQ(env->ExceptionCheck(), JNI_TRUE);
  const auto pending = java::TakePending();
  ASSERT_TRUE(pending.has_value());
  EXPECT_STREQ(pending->what(), "java.lang.RuntimeException: left pending");
  EXPECT_THAT(trace, StartsWith(error.what()));
  EXPECT_TRUE(cause.has_value());
}

}  // namespace

}  // namespace tests
