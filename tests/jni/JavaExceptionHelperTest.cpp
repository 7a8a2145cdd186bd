#include "jni/JavaExceptionHelper.h"

#include <gmock/gmock.h>
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <torvan/JavaException.h>
#include <torvan/JavaVmException.h>

#include <stdexcept>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "fakes/JvmTest.h"
#include "fakes/TextRoom.h"
#include "fakes/WideText.h"

namespace tests {

using namespace torvan::jni;

namespace {

using testing::ElementsAre;

// Thrown, its parts are: local:1 itself, local:2 its class and local:3 the name of that, local:4 the stack trace with
// the elements local:5 and local:7 and their texts local:6 and local:8, local:9 the message. Classes that are looked up
// follow.
const FakeException Exception{"java.lang.IllegalStateException", "bad", {"a.B.f(B.java:3)", "a.B.main(B.java:9)"}};

class JavaExceptionHelperTest : public JvmTest {
 protected:
  JavaExceptionHelperTest() {
    jvm.AnswerCheck();
    jvm.AnswerLookups();
    jvm.AnswerStrings();
    jvm.AnswerReads();
  }

  void Check() { CheckJavaException(jvm.Env()); }

  // Checks and expects a CJavaException with these texts.
  void ExpectJavaException(const char* className, const char* message, const char* stackTrace) {
    try {
      Check();
      ADD_FAILURE() << "nothing thrown";
    } catch (const CJavaException& exception) {
      EXPECT_EQ(Narrow(exception.GetJavaExceptionClassName()), className);
      EXPECT_EQ(Narrow(exception.GetJavaMessage()), message);
      EXPECT_EQ(Narrow(exception.GetJavaStackTrace()), stackTrace);
      EXPECT_EQ(exception.GetSourceFile(), nullptr);
      EXPECT_EQ(exception.GetSourceLine(), 0u);
      EXPECT_STREQ(exception.GetMessageText(), "Exception thrown by Java.");
    }
  }
};

TEST_F(JavaExceptionHelperTest, NoEnvironmentIsNoFailure) { CheckJavaException(nullptr); }

TEST_F(JavaExceptionHelperTest, NothingPendingCostsOneCall) {
  Check();
  EXPECT_THAT(jvm.Calls(), ElementsAre("ExceptionOccurred"));
}

TEST_F(JavaExceptionHelperTest, AJavaExceptionCarriesDottedNameMessageAndOneLineTrace) {
  jvm.Throw(Exception);
  ExpectJavaException("java.lang.IllegalStateException", "bad", "\tat a.B.f(B.java:3)\tat a.B.main(B.java:9)");
}

TEST_F(JavaExceptionHelperTest, TraceMessageAndClassNameAreReadInThisOrderAndTheExceptionStaysPending) {
  const jthrowable throwable = jvm.Throw(Exception);
  EXPECT_THROW(Check(), CJavaException);
  EXPECT_THAT(
      jvm.Calls(),
      ElementsAre("ExceptionOccurred",  //
                  "FindClass(\"java/lang/StackTraceElement\")", "GetObjectClass(local:1)",
                  "GetMethodID(local:11, \"getStackTrace\", \"()[Ljava/lang/StackTraceElement;\")",
                  "GetMethodID(local:10, \"toString\", \"()Ljava/lang/String;\")",
                  "CallObjectMethodV(local:1, method:getStackTrace)", "GetArrayLength(local:4)",
                  "GetObjectArrayElement(local:4, 0)", "CallObjectMethodV(local:5, method:toString)",
                  "GetStringChars(local:6, null)", "ReleaseStringChars(local:6, \"a.B.f(B.java:3)\")",
                  "GetObjectArrayElement(local:4, 1)", "CallObjectMethodV(local:7, method:toString)",
                  "GetStringChars(local:8, null)",
                  "ReleaseStringChars(local:8, \"a.B.main(B.java:9)\")",  //
                  "GetObjectClass(local:1)", "GetMethodID(local:12, \"getMessage\", \"()Ljava/lang/String;\")",
                  "CallObjectMethodV(local:1, method:getMessage)", "GetStringChars(local:9, null)",
                  "ReleaseStringChars(local:9, \"bad\")",  //
                  "GetObjectClass(local:1)", "FindClass(\"java/lang/Class\")",
                  "GetMethodID(local:13, \"getClass\", \"()Ljava/lang/String;\")",
                  "GetMethodID(local:14, \"getName\", \"()Ljava/lang/String;\")",
                  "CallObjectMethodV(local:1, method:getClass)", "CallObjectMethodV(local:2, method:getName)",
                  "GetStringChars(local:3, null)", "ReleaseStringChars(local:3, \"java.lang.IllegalStateException\")"));
  EXPECT_EQ(jvm.Pending(), throwable);
}

struct NullRow {
  const char* name;
  const char* call;
  unsigned int occurrence;
  unsigned int line;
  const char* message;
};

class JavaExceptionHelperNullTest : public JavaExceptionHelperTest, public testing::WithParamInterface<NullRow> {};

TEST_P(JavaExceptionHelperNullTest, IsReportedAtOnceWithTheJavaExceptionPending) {
  const NullRow& row = GetParam();
  const jthrowable throwable = jvm.Throw(Exception);
  jvm.AnswerNull(row.call, row.occurrence);
  EXPECT_EQ(FailureOf([&] { Check(); }), Throws<CJavaVmException>("jni/JavaExceptionHelper", row.line, row.message));
  EXPECT_EQ(jvm.Calls().back(), row.call);
  EXPECT_EQ(jvm.Pending(), throwable);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Reads, JavaExceptionHelperNullTest, testing::Values(
    NullRow{"TraceClass", "GetObjectClass(local:1)", 1, 107, "Failed to get the class of the exception occured."},
    NullRow{"TraceMethod", "GetMethodID(local:11, \"getStackTrace\", \"()[Ljava/lang/StackTraceElement;\")", 1, 109,
            "Failed to get the method id of getStackTrace () method of the exception occured."},
    NullRow{"ElementMethod", "GetMethodID(local:10, \"toString\", \"()Ljava/lang/String;\")", 1, 111,
            "Failed to get the method id of toString () method of the java.lang.StackTraceElement class."},
    NullRow{"Trace", "CallObjectMethodV(local:1, method:getStackTrace)", 1, 119,
            "Failed to get the stack trace of the exception occured."},
    NullRow{"FirstElementText", "CallObjectMethodV(local:5, method:toString)", 1, 129,
            "Failed to call the toString () method of the given java.lang.StackTrace object."},
    NullRow{"SecondElementText", "CallObjectMethodV(local:7, method:toString)", 1, 129,
            "Failed to call the toString () method of the given java.lang.StackTrace object."},
    NullRow{"ElementChars", "GetStringChars(local:8, null)", 1, 32, "Failed to get chars of the specified jstring."},
    NullRow{"MessageClass", "GetObjectClass(local:1)", 2, 82, "Failed to get the class of the exception occured."},
    NullRow{"MessageMethod", "GetMethodID(local:12, \"getMessage\", \"()Ljava/lang/String;\")", 1, 84,
            "Failed to get the method id of getMessage () method of the exception occured."},
    NullRow{"Message", "CallObjectMethodV(local:1, method:getMessage)", 1, 89,
            "Failed to get the message of the exception occured."},
    NullRow{"MessageChars", "GetStringChars(local:9, null)", 1, 32, "Failed to get chars of the specified jstring."},
    NullRow{"NameClass", "GetObjectClass(local:1)", 3, 53, "Failed to get the class of the exception occured."},
    NullRow{"ClassClass", "FindClass(\"java/lang/Class\")", 1, 55, "Failed to get the java.lang.Class class."},
    NullRow{"ClassMethod", "GetMethodID(local:13, \"getClass\", \"()Ljava/lang/String;\")", 1, 57,
            "Failed to get the method id of the getClass () method of the exception occured."},
    NullRow{"NameMethod", "GetMethodID(local:14, \"getName\", \"()Ljava/lang/String;\")", 1, 59,
            "Failed to get the method id of the getName () method of java.lang.Class class."},
    NullRow{"Class", "CallObjectMethodV(local:1, method:getClass)", 1, 65,
            "Failed to get the class of the exception occured."},
    NullRow{"Name", "CallObjectMethodV(local:2, method:getName)", 1, 67,
            "Failed to get the name of class of the exception occured."},
    NullRow{"NameChars", "GetStringChars(local:3, null)", 1, 32, "Failed to get chars of the specified jstring."}),
    [](const auto& row) { return row.param.name; });
// clang-format on

TEST_F(JavaExceptionHelperTest, TheTraceIsNullWhenItsElementClassIsNotFound) {
  jvm.Throw(Exception);
  jvm.AnswerNull("FindClass(\"java/lang/StackTraceElement\")");
  ExpectJavaException("java.lang.IllegalStateException", "bad", "(null)");
  EXPECT_EQ(jvm.Calls().at(2), "GetObjectClass(local:1)");
  EXPECT_EQ(jvm.Calls().at(3), "GetMethodID(local:10, \"getMessage\", \"()Ljava/lang/String;\")");
}

TEST_F(JavaExceptionHelperTest, AJavaExceptionWithoutAMessageIsNotTranslated) {
  const jthrowable throwable = jvm.Throw(Exception);
  jvm.At(throwable).results["getMessage"] = nullptr;
  EXPECT_EQ(
      FailureOf([&] { Check(); }),
      Throws<CJavaVmException>("jni/JavaExceptionHelper", 89, "Failed to get the message of the exception occured."));
  EXPECT_EQ(jvm.Pending(), throwable);
}

TEST_F(JavaExceptionHelperTest, AnEmptyTraceIsAnEmptyText) {
  jvm.Throw({"a.E", "", {}});
  ExpectJavaException("a.E", "", "");
}

TEST_F(JavaExceptionHelperTest, TheTraceStartsWithRoomFor32Units) {
  jvm.Throw({"a.E", "", {}});
  EXPECT_EQ(FirstRoomOf([&] { EXPECT_THROW(Check(), CJavaException); }), RoomForUnits(32));
}

TEST_F(JavaExceptionHelperTest, NullElementsOfTheTraceAreSkipped) {
  const jthrowable throwable = jvm.Throw(Exception);
  jvm.At(jvm.At(throwable).results["getStackTrace"]).elements[0] = nullptr;
  ExpectJavaException("java.lang.IllegalStateException", "bad", "\tat a.B.main(B.java:9)");
}

TEST_F(JavaExceptionHelperTest, ANegativeLengthIsAnEmptyTrace) {
  jvm.Throw(Exception);
  jvm.Return<&Jni::GetArrayLength>(-1);
  ExpectJavaException("java.lang.IllegalStateException", "bad", "");
}

TEST_F(JavaExceptionHelperTest, TextsEndAtTheirFirstZeroUnit) {
  const jthrowable throwable = jvm.Throw(Exception);
  jvm.At(jvm.At(throwable).results["getMessage"]).text = std::u16string(u"half\0of it", 10);
  ExpectJavaException("java.lang.IllegalStateException", "half", "\tat a.B.f(B.java:3)\tat a.B.main(B.java:9)");
}

TEST_F(JavaExceptionHelperTest, TextsKeepUnitsBeyondAscii) {
  const jthrowable throwable = jvm.Throw(Exception);
  jvm.At(jvm.At(throwable).results["getMessage"]).text = u"\u20AC\U0001D11E";
  ExpectJavaException("java.lang.IllegalStateException", "\xE2\x82\xAC\xF0\x9D\x84\x9E",
                      "\tat a.B.f(B.java:3)\tat a.B.main(B.java:9)");
}

// What a VM throws through its own functions while one element is read.
class JavaExceptionHelperForeignTest : public JavaExceptionHelperTest {
 protected:
  JavaExceptionHelperForeignTest() { jvm.Throw(Exception); }

  void ExpectReplaced() {
    EXPECT_EQ(
        FailureOf([&] { Check(); }),
        Throws<CJavaVmException>("jni/JavaExceptionHelper", 140, "Failed to get given item of the stack trace array."));
  }
};

TEST_F(JavaExceptionHelperForeignTest, FromGettingAnElementIsReplaced) {
  jvm.On<&Jni::GetObjectArrayElement>([](jobjectArray, jsize) -> jobject { throw std::runtime_error("foreign"); });
  ExpectReplaced();
}

TEST_F(JavaExceptionHelperForeignTest, FromGettingCharactersIsReplaced) {
  jvm.On<&Jni::GetStringChars>([](jstring, jboolean*) -> const jchar* { throw 42; });
  ExpectReplaced();
}

TEST_F(JavaExceptionHelperForeignTest, FromReleasingCharactersIsReplaced) {
  static const jchar text[] = {'t', 0};
  jvm.On<&Jni::GetStringChars>([](jstring, jboolean*) { return text; });
  jvm.On<&Jni::ReleaseStringChars>([](jstring, const jchar*) { throw 42; });
  ExpectReplaced();
}

TEST_F(JavaExceptionHelperForeignTest, OfTheFoundationPassesUnchanged) {
  using mirel::base::CIllegalArgumentException;
  jvm.On<&Jni::GetObjectArrayElement>(
      [](jobjectArray, jsize) -> jobject { throw CIllegalArgumentException("the/fake", 7, "mine", nullptr); });
  EXPECT_EQ(FailureOf([&] { Check(); }), Throws<CIllegalArgumentException>("the/fake", 7, "mine"));
}

TEST_F(JavaExceptionHelperForeignTest, OutsideTheElementsPassesUnchanged) {
  jvm.On<&Jni::GetArrayLength>([](jarray) -> jsize { throw 42; });
  EXPECT_THROW(Check(), int);
}

TEST_F(JavaExceptionHelperTest, RunningOutOfMemoryPassesAndLeavesNothingBehind) {
  const jthrowable throwable = jvm.Throw({"a.E", "bad", std::vector<std::string>(20, "a.B.f(B.java:3)")});
  const int failures = FailEachAllocation(
      [&] {
        try {
          Check();
          ADD_FAILURE() << "nothing thrown";
        } catch (const mirel::base::CMemoryException& exception) {
          EXPECT_EQ(exception.GetMessageText(), nullptr);
        } catch (const CJavaException& exception) {
          EXPECT_EQ(Narrow(exception.GetJavaMessage()), "bad");
        }
      },
      [&](int, const Allocations& allocations) {
        EXPECT_EQ(allocations.Live(), 0u);
        EXPECT_EQ(jvm.HeldStringChars(), 0u);
        EXPECT_EQ(jvm.Pending(), throwable);
      });
  // At least the buffer, a text for each element, the three results and the exception's copies of them.
  EXPECT_GE(failures, 1 + 20 + 3 + 3);
}

}  // namespace

}  // namespace tests
