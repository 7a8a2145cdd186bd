#include "TextStream.h"

#include <fakes/Allocations.h>
#include <fakes/Failure.h>
#include <fakes/WideText.h>
#include <mirel/base/MemoryException.h>
#include <torvan/JavaException.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>
#include <vector>

namespace tests {
namespace {

using mirel::base::CException;
using mirel::base::CUnicodeString;
using torvan::jni::CJavaException;
using torvan::jni::CJniException;

static_assert(std::is_base_of_v<CJniException, CJavaException>);
static_assert(sizeof(CJavaException) == sizeof(CException) + 3 * sizeof(CUnicodeString));

CJavaException IllegalState() {
  return {RX_TEXT("java.lang.IllegalStateException"), RX_TEXT("x"), RX_TEXT("\tat a.B.c(B.java:1)")};
}

std::vector<std::string> TextsOf(const CJavaException& exception) {
  return {Narrow(exception.GetJavaExceptionClassName()), Narrow(exception.GetJavaMessage()),
          Narrow(exception.GetJavaStackTrace())};
}

const std::vector<std::string> illegalState = {"java.lang.IllegalStateException", "x", "\tat a.B.c(B.java:1)"};
const std::vector<std::string> old = {"old class", "old message", "old trace"};

CJavaException Old() { return {RX_TEXT("old class"), RX_TEXT("old message"), RX_TEXT("old trace")}; }

TEST(JavaExceptionTest, AnswersItsThreeTextsAndHasAMessageWithoutAPlace) {
  const CJavaException exception = IllegalState();
  EXPECT_EQ(TextsOf(exception), illegalState);
  EXPECT_EQ(exception.GetSourceFile(), nullptr);
  EXPECT_EQ(exception.GetSourceLine(), 0u);
  EXPECT_STREQ(exception.GetMessageText(), "Exception thrown by Java.");
  EXPECT_EQ(exception.GetDetail(), nullptr);
}

TEST(JavaExceptionTest, ReturnsTheStoredTextsThemselvesInTheirOrder) {
  const CJavaException exception = IllegalState();
  const auto* const first = &exception.GetJavaExceptionClassName();
  EXPECT_EQ(&exception.GetJavaMessage(), first + 1);
  EXPECT_EQ(&exception.GetJavaStackTrace(), first + 2);
  EXPECT_EQ(static_cast<const void*>(first + 3), static_cast<const void*>(&exception + 1)) << "after the base";
}

TEST(JavaExceptionTest, KeepsTextsThatAreNull) {
  const CJavaException exception({}, {}, {});
  EXPECT_EQ(static_cast<const RX::UniChar*>(exception.GetJavaMessage()), nullptr);
  EXPECT_STREQ(exception.GetMessageText(), "Exception thrown by Java.");
}

TEST(JavaExceptionTest, ACopyOutlivesTheOriginal) {
  auto* const original = new CJavaException(IllegalState());
  const CJavaException copy(*original);
  delete original;
  EXPECT_EQ(TextsOf(copy), illegalState);
  EXPECT_STREQ(copy.GetMessageText(), "Exception thrown by Java.");
}

TEST(JavaExceptionTest, AssignmentReplacesTheTexts) {
  CJavaException exception = Old();
  const CJavaException other = IllegalState();
  static_assert(std::is_same_v<decltype(exception = other), CJavaException&>);
  EXPECT_EQ(&(exception = other), &exception);
  EXPECT_EQ(TextsOf(exception), illegalState);
  EXPECT_EQ(TextsOf(other), illegalState);
}

TEST(JavaExceptionTest, CopyAndAssignmentTakeTheBasesFactsToo) {
  CJavaException original = IllegalState();
  static_cast<CException&>(original) = CException("jni/File", 7, "text", "more");
  const CJavaException copy(original);
  CJavaException assigned = Old();
  assigned = original;
  for (const CJavaException* exception : {&copy, static_cast<const CJavaException*>(&assigned)}) {
    EXPECT_STREQ(exception->GetSourceFile(), "jni/File");
    EXPECT_EQ(exception->GetSourceLine(), 7u);
    EXPECT_STREQ(exception->GetMessageText(), "text");
    EXPECT_STREQ(exception->GetDetail(), "more");
  }
}

TEST(JavaExceptionTest, ConstructionWithoutMemoryThrowsAndLeaksNothing) {
  Allocations allocations;
  const CUnicodeString className(RX_TEXT("a.B")), message(RX_TEXT("m")), trace(RX_TEXT("t"));
  const std::size_t live = allocations.Live();
  for (int failing : {1, 2, 3}) {
    allocations.Fail(failing);
    EXPECT_THROW(CJavaException(className, message, trace), mirel::base::CMemoryException);
    EXPECT_EQ(allocations.Live(), live);
  }
  allocations.Fail(4);
  { CJavaException exception(className, message, trace); }
  EXPECT_FALSE(allocations.HasFailed());
  EXPECT_EQ(allocations.Live(), live);
}

TEST(JavaExceptionTest, TextsAreAssignedInTheirOrder) {
  Allocations allocations;
  const CJavaException other = IllegalState();
  for (std::size_t assigned = 0; assigned < 3; ++assigned) {
    SCOPED_TRACE(assigned);
    CJavaException exception = Old();
    allocations.Fail(static_cast<int>(assigned) + 1);
    EXPECT_THROW(exception = other, mirel::base::CMemoryException);
    allocations.Fail(0);
    const std::vector<std::string> texts = TextsOf(exception);
    for (std::size_t i = 0; i < 3; ++i) EXPECT_EQ(texts[i], i < assigned ? illegalState[i] : old[i]);
  }
}

TEST(JavaExceptionTest, TellsItsClassAndIsCaughtByEveryBase) {
  const CJavaException thrown = IllegalState();
  EXPECT_EQ(thrown.GetClass(), &CJavaException::m_classCJavaException);
  EXPECT_THROW(throw thrown, CJavaException);
  EXPECT_THROW(throw thrown, CJniException);
  try {
    throw thrown;
  } catch (const CException& caught) {
    EXPECT_EQ(TextsOf(dynamic_cast<const CJavaException&>(caught)), illegalState);
  }
}

TEST(JavaExceptionTest, PrintsTheBannerOnItsOwnLineAndNothingElse) {
  const std::string banner = "--- Java Exception occured -----------------------------------------------------";
  ASSERT_EQ(banner.size(), 80u);
  TextStream stream;
  const CJavaException exception = IllegalState();
  static_cast<const CException&>(exception).Print(stream);
  EXPECT_EQ(stream.Text(), banner + "\n");
}

}  // namespace
}  // namespace tests
