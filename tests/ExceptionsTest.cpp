// The four exceptions that carry a place and a message.
#include "TextStream.h"

#include <torvan/JavaRuntimeException.h>
#include <torvan/JavaVmException.h>
#include <torvan/JavaVmLauncherException.h>
#include <torvan/JniException.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace tests {
namespace {

using mirel::base::CException;
using torvan::jni::CJavaRuntimeException;
using torvan::jni::CJavaVmException;
using torvan::jni::CJniException;
using torvan::jvmlauncher::CJavaVmLauncherException;

// One exception class: its record, the name its line begins with, the base it is caught by.
template <typename Class, typename BaseClass>
struct Case {
  using Exception = Class;
  using Base = BaseClass;
};
struct Jni : Case<CJniException, CException> {
  static constexpr const mirel::base::CClass* record = &CJniException::m_classCJniException;
  static constexpr const char* printed = "torvan::jni::CJniException: text (more) at jni/File:7\n";
};
struct Runtime : Case<CJavaRuntimeException, CJniException> {
  static constexpr const mirel::base::CClass* record = &CJavaRuntimeException::m_classCJavaRuntimeException;
  static constexpr const char* printed = "mirel::jni::CJavaRuntimeException: text (more) at jni/File:7\n";
};
struct Vm : Case<CJavaVmException, CJniException> {
  static constexpr const mirel::base::CClass* record = &CJavaVmException::m_classCJavaVmException;
  static constexpr const char* printed = "torvan::jni::CJavaVmException: text (more) at jni/File:7\n";
};
struct Launcher : Case<CJavaVmLauncherException, CException> {
  static constexpr const mirel::base::CClass* record = &CJavaVmLauncherException::m_classCJavaVmLauncherException;
  static constexpr const char* printed = "torvan::jvmlauncher::CJavaVmLauncherException: text (more) at jni/File:7\n";
};

template <typename Case>
class ExceptionsTest : public ::testing::Test {};

struct CaseNames {
  template <typename Case>
  static std::string GetName(int) {
    if (std::is_same_v<Case, Jni>) return "Jni";
    if (std::is_same_v<Case, Runtime>) return "Runtime";
    return std::is_same_v<Case, Vm> ? "Vm" : "Launcher";
  }
};
using Cases = ::testing::Types<Jni, Runtime, Vm, Launcher>;
TYPED_TEST_SUITE(ExceptionsTest, Cases, CaseNames);

void ExpectFacts(const CException& exception, const char* file, unsigned int line, const char* message,
                 const char* detail) {
  // The texts are not copied, so they are the same pointers.
  EXPECT_EQ(exception.GetSourceFile(), file);
  EXPECT_EQ(exception.GetSourceLine(), line);
  EXPECT_EQ(exception.GetMessageText(), message);
  EXPECT_EQ(exception.GetDetail(), detail);
}

TYPED_TEST(ExceptionsTest, CarriesFileLineMessageAndDetailUnchanged) {
  const char file[] = "jni/File", message[] = "text", detail[] = "more";
  ExpectFacts(typename TypeParam::Exception(file, 7, message, detail), file, 7, message, detail);
  ExpectFacts(typename TypeParam::Exception(nullptr, 0xFFFFFFFF, nullptr, nullptr), nullptr, 0xFFFFFFFF, nullptr,
              nullptr);
}

TYPED_TEST(ExceptionsTest, CopiesAndAssignmentsCarryTheSame) {
  using Exception = typename TypeParam::Exception;
  const char file[] = "jni/File", message[] = "text", detail[] = "more";
  const Exception original(file, 7, message, detail);
  const Exception copy(original);
  ExpectFacts(copy, file, 7, message, detail);

  Exception assigned(nullptr, 0, nullptr, nullptr);
  static_assert(std::is_same_v<decltype(assigned = original), Exception&>);
  EXPECT_EQ(&(assigned = original), &assigned);
  ExpectFacts(assigned, file, 7, message, detail);
}

TYPED_TEST(ExceptionsTest, AddsNoDataToItsBase) {
  static_assert(std::is_base_of_v<typename TypeParam::Base, typename TypeParam::Exception>);
  static_assert(sizeof(typename TypeParam::Exception) == sizeof(CException));
  static_assert(std::is_base_of_v<CJniException, typename TypeParam::Exception> != std::is_same_v<TypeParam, Launcher>);
}

TYPED_TEST(ExceptionsTest, TellsItsClassThroughItsBase) {
  const typename TypeParam::Exception exception(nullptr, 0, nullptr, nullptr);
  const mirel::base::CObject& object = exception;
  EXPECT_EQ(object.GetClass(), TypeParam::record);
}

TYPED_TEST(ExceptionsTest, IsCaughtByItsOwnClassAndByEveryBase) {
  const typename TypeParam::Exception thrown("jni/File", 7, "text", nullptr);
  EXPECT_THROW(throw thrown, typename TypeParam::Exception);
  EXPECT_THROW(throw thrown, typename TypeParam::Base);
  EXPECT_THROW(throw thrown, CException);
  EXPECT_THROW(throw thrown, mirel::base::CObject);
  try {
    throw thrown;
  } catch (const CException& caught) {
    EXPECT_EQ(caught.GetClass(), TypeParam::record);
    EXPECT_STREQ(caught.GetMessageText(), "text");
  }
}

TYPED_TEST(ExceptionsTest, PrintsTheLineOfEveryException) {
  TextStream stream;
  const typename TypeParam::Exception exception("jni/File", 7, "text", "more");
  static_cast<const CException&>(exception).Print(stream);
  EXPECT_EQ(stream.Text(), TypeParam::printed);
}

TEST(ExceptionsLauncherTest, IsNotCaughtAsOneOfJni) {
  try {
    throw CJavaVmLauncherException(nullptr, 0, nullptr, nullptr);
  } catch (const CJniException&) {
    FAIL();
  } catch (const CException& caught) {
    EXPECT_EQ(caught.GetClass(), &CJavaVmLauncherException::m_classCJavaVmLauncherException);
  }
}

}  // namespace
}  // namespace tests
