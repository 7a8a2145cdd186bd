// Handles of strings.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <mirel/base/MemoryException.h>
#include <torvan/JavaException.h>
#include <torvan/jni/JavaString.h>

#include <optional>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "fakes/WideText.h"
#include "jni/HandleTest.h"

namespace tests {
namespace {

using mirel::base::CMemoryException;
using mirel::base::CNull;
using mirel::base::CUnicodeString;
using testing::ElementsAre;
using testing::IsEmpty;
using torvan::jni::CJavaException;
using torvan::jni::CJavaObject;
using torvan::jni::CJavaString;

std::string Reference(const CJavaString& string) { return Describe(static_cast<jstring>(string)); }

class JavaStringTest : public HandleTest {
 protected:
  // A handle of the next object, made of text.
  CJavaString NewString(const RX::UniChar* text = RX_TEXT("old")) {
    CJavaString string = vm.NewString(text);
    jvm.TakeCalls();
    return string;
  }
};

TEST_F(JavaStringTest, ANewStringWorksWithItsGlobalReference) {
  const CJavaString string = vm.NewString(RX_TEXT("\u00E9\U0001D11E"));

  EXPECT_EQ(Reference(string), "global:1");
  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "NewString(\"\\e9\\d834\\dd1e\", 3)", "ExceptionOccurred", attach,
                                       "NewGlobalRef(local:1)"));
}

TEST_F(JavaStringTest, AnyObjectIsTakenForAStringUntested) {
  std::optional<CJavaObject> object(NewObject());
  const Allocations allocations;
  {
    const CJavaString string(*object);
    const CJavaString copy = string;
    object.reset();

    EXPECT_EQ(Reference(copy), "global:1");
    EXPECT_THAT(jvm.Calls(), IsEmpty());
    EXPECT_EQ(allocations.Made(), 0);
  }
  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "DeleteGlobalRef(global:1)"));
}

TEST_F(JavaStringTest, AssignmentOfAStringSharesIt) {
  CJavaString string = NewString();
  {
    const CJavaString other = NewString();
    string = other;
    EXPECT_THAT(jvm.TakeCalls(), ElementsAre(attach, "DeleteGlobalRef(global:1)"));
  }
  EXPECT_EQ(Reference(string), "global:2");
  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_F(JavaStringTest, AssignedTextIsWorkedWithByItsLocalReference) {
  {
    CJavaString string = NewString();

    CJavaString& result = string = RX_TEXT("new");

    EXPECT_EQ(&result, &string);
    EXPECT_EQ(Reference(string), "local:2");
    EXPECT_THAT(jvm.TakeCalls(), ElementsAre(attach, "NewString(\"new\", 3)", "ExceptionOccurred", attach,
                                             "NewGlobalRef(local:2)", attach, "DeleteGlobalRef(global:1)"));

    EXPECT_EQ(Narrow(CUnicodeString(string)), "new");
    EXPECT_EQ(jvm.TakeCalls()[1], "GetStringChars(local:2, null)");
  }
  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "DeleteGlobalRef(global:2)"));
}

TEST_F(JavaStringTest, CopiesOfAnAssignedStringShareBothReferences) {
  std::optional<CJavaString> string(NewString());
  *string = RX_TEXT("new");
  const CJavaString copy = *string;
  jvm.TakeCalls();

  string.reset();

  EXPECT_EQ(Reference(copy), "local:2");
  EXPECT_THAT(jvm.Calls(), IsEmpty());
  EXPECT_EQ(jvm.LiveGlobals(), 1u);
}

TEST_F(JavaStringTest, AssignmentLeavesCopiesWithTheOldText) {
  CJavaString string = NewString();
  const CJavaString copy = string;

  string = RX_TEXT("new");

  EXPECT_EQ(Reference(copy), "global:1");
  EXPECT_EQ(jvm.LiveGlobals(), 2u);
}

TEST_F(JavaStringTest, AssignmentOfNoTextMakesItNull) {
  for (const RX::UniChar* text : {static_cast<const RX::UniChar*>(nullptr), RX_TEXT("")}) {
    CJavaString string = NewString();
    string = RX_TEXT("x");
    jvm.TakeCalls();

    string = text;

    EXPECT_TRUE(string == CNull());
    EXPECT_THAT(jvm.TakeCalls(), ElementsAre(attach, testing::StartsWith("DeleteGlobalRef(")));
    string = text;
    EXPECT_TRUE(string == CNull());
    EXPECT_THAT(jvm.TakeCalls(), IsEmpty());
  }
}

TEST_F(JavaStringTest, AssignmentThatGetsNoStringMakesItNull) {
  CJavaString string = NewString();
  jvm.AnswerNull("NewString(\"new\", 3)");

  string = RX_TEXT("new");

  EXPECT_TRUE(string == CNull());
  EXPECT_THAT(jvm.Calls(),
              ElementsAre(attach, "NewString(\"new\", 3)", "ExceptionOccurred", attach, "DeleteGlobalRef(global:1)"));
}

TEST_F(JavaStringTest, AFailedAssignmentKeepsTheString) {
  CJavaString string = NewString();
  const jobject made = jvm.NewObject();
  jvm.Return<&Jni::NewString>(static_cast<jstring>(made));
  const auto assign = [&] { string = RX_TEXT("new"); };

  jvm.AnswerNull("NewGlobalRef(local:2)");
  EXPECT_EQ(FailureOf(assign), Throws<CMemoryException>("jni/JniHelper", AnyLine, nullptr));
  EXPECT_EQ(Reference(string), "global:1");

  jvm.Throw({"java.lang.OutOfMemoryError", "heap", {}});
  EXPECT_EQ(FailureOf(assign), Throws<CJavaException>(nullptr, 0, "Exception thrown by Java."));
  EXPECT_EQ(Reference(string), "global:1");
  jvm.ClearPending();

  Failure failure;
  const int runs = FailEachAllocation([&] { failure = FailureOf(assign); },
                                      [&](int, const Allocations& allocations) {
                                        EXPECT_EQ(failure.type, typeid(CMemoryException));
                                        EXPECT_EQ(allocations.Live(), 0u);
                                        EXPECT_EQ(Reference(string), "global:1");
                                        EXPECT_EQ(jvm.LiveGlobals(), 1u);
                                      });
  EXPECT_EQ(runs, 2);
  EXPECT_EQ(Reference(string), "local:2");
}

TEST_F(JavaStringTest, AnAssignmentIsDoneWhateverTheVmThrowsOfTheOldString) {
  struct Foreign {};
  for (const RX::UniChar* text : {RX_TEXT("new"), RX_TEXT("")}) {
    CJavaString string = NewString();
    const jstring old = string;
    jvm.On<&Jni::DeleteGlobalRef>([](jobject) { throw Foreign(); });

    EXPECT_THROW(string = text, Foreign);

    EXPECT_EQ(Reference(string), *text != 0 ? "local:2" : "null");
    jvm.AnswerGlobals();
    jvm.Env()->DeleteGlobalRef(old);
  }
}

TEST_F(JavaStringTest, ANullStringBecomesANullTextWithoutAskingTheVm) {
  const CJavaString string(Object(vm, nullptr));

  const CUnicodeString text = string;

  EXPECT_EQ(static_cast<const RX::UniChar*>(text), nullptr);
  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_F(JavaStringTest, TheTextIsCopiedAndItsCharactersReleased) {
  const CJavaString string = NewString(RX_TEXT("\u00E9\U0001D11E"));
  // A pending exception is not checked for.
  const jthrowable pending = jvm.Throw({"java.lang.Error", "bad", {}});

  const CUnicodeString text = string;

  EXPECT_EQ(Narrow(text), "\xC3\xA9\xF0\x9D\x84\x9E");
  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "GetStringChars(global:1, null)",
                                       "ReleaseStringChars(global:1, \"\\e9\\d834\\dd1e\")"));
  EXPECT_EQ(jvm.Pending(), pending);
}

TEST_F(JavaStringTest, TheTextEndsAtItsFirstZeroUnit) {
  const CJavaString string = NewString();
  jvm.At(string).text = std::u16string(u"ab\0cd", 5);

  EXPECT_EQ(Narrow(CUnicodeString(string)), "ab");
}

TEST_F(JavaStringTest, AnEmptyJavaStringIsAnEmptyText) {
  const CJavaString string(NewObject());

  const CUnicodeString text = string;

  ASSERT_NE(static_cast<const RX::UniChar*>(text), nullptr);
  EXPECT_EQ(text.GetLength(), 0u);
}

TEST_F(JavaStringTest, CharactersAreReleasedWhenTheTextCannotBeMade) {
  const CJavaString string = NewString();
  Allocations allocations;
  allocations.Fail(1);

  EXPECT_EQ(FailureOf([&] { static_cast<void>(CUnicodeString(string)); }).type, typeid(CMemoryException));

  EXPECT_EQ(jvm.Calls().back(), "ReleaseStringChars(global:1, \"old\")");
  EXPECT_EQ(jvm.HeldStringChars(), 0u);
}

TEST_F(JavaStringTest, CharactersThatTheVmDoesNotReturnAreTreatedAsOthers) {
  const CJavaString string = NewString();
  jvm.Return<&Jni::GetStringChars>(static_cast<const jchar*>(nullptr));
  jvm.On<&Jni::ReleaseStringChars>([](jstring, const jchar*) {});

  const CUnicodeString text = string;

  EXPECT_EQ(static_cast<const RX::UniChar*>(text), nullptr);
  EXPECT_THAT(jvm.Calls(), ElementsAre(attach, "GetStringChars(global:1, null)", "ReleaseStringChars(global:1, null)"));
}

}  // namespace
}  // namespace tests
