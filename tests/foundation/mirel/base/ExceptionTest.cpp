#include <gtest/gtest.h>
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <mirel/base/NullReferenceException.h>
#include <mirel/base/win/WinSystemErrorException.h>
#include <mirel/util/NoSuchElementException.h>

#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string>

#include "fakes/Allocations.h"
#include "fakes/DebugOut.h"
#include "foundation/plugin/Plugin.h"

namespace tests {
namespace {

using namespace mirel::base;
using mirel::base::win::CWinSystemErrorException;
using mirel::util::CNoSuchElementException;

std::string Printed(const CException& exception) {
  DebugOut stream;
  exception.Print(stream);
  return stream.Text();
}

TEST(ExceptionTest, FactsAreKeptAsGivenAndNotCopied) {
  const char file[] = "jni/JavaVm";
  const char message[] = "A message.";
  const char detail[] = "A detail.";
  const CException exception(file, 132, message, detail);
  EXPECT_EQ(exception.GetSourceFile(), file);
  EXPECT_EQ(exception.GetSourceLine(), 132u);
  EXPECT_EQ(exception.GetMessageText(), message);
  EXPECT_EQ(exception.GetDetail(), detail);
}

TEST(ExceptionTest, NullTextsStayNull) {
  const CException exception(nullptr, 0, nullptr, nullptr);
  EXPECT_EQ(exception.GetSourceFile(), nullptr);
  EXPECT_EQ(exception.GetSourceLine(), 0u);
  EXPECT_EQ(exception.GetMessageText(), nullptr);
  EXPECT_EQ(exception.GetDetail(), nullptr);
}

TEST(ExceptionTest, CopyAndAssignmentTakeAllFacts) {
  const CException original("file", 7, "message", "detail");
  const CException copy(original);
  CException assigned("x", 1, nullptr, nullptr);
  EXPECT_EQ(&(assigned = original), &assigned);
  for (const CException* exception : std::initializer_list<const CException*>{&copy, &assigned}) {
    EXPECT_STREQ(exception->GetSourceFile(), "file");
    EXPECT_EQ(exception->GetSourceLine(), 7u);
    EXPECT_STREQ(exception->GetMessageText(), "message");
    EXPECT_STREQ(exception->GetDetail(), "detail");
  }
}

TEST(ExceptionTest, EveryClassKnowsItsRecordAndDerivesFromTheCommonBase) {
  const CException base("f", 3, "m", "d");
  const CIllegalArgumentException illegalArgument("f", 3, "m", "d");
  const CMemoryException memory("f", 3, "m", "d");
  const CNullReferenceException nullReference("f", 3, "m", "d");
  const CNoSuchElementException noSuchElement("f", 3, "m", "d");
  const CWinSystemErrorException winSystemError("f", 3, "m", "d", 5);
  const struct {
    const CException& exception;
    const CClass& record;
  } rows[] = {
      {base, CException::m_classCException},
      {illegalArgument, CIllegalArgumentException::m_classCIllegalArgumentException},
      {memory, CMemoryException::m_classCMemoryException},
      {nullReference, CNullReferenceException::m_classCNullReferenceException},
      {noSuchElement, CNoSuchElementException::m_classCNoSuchElementException},
      {winSystemError, CWinSystemErrorException::m_classCWinSystemErrorException},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.record.GetName());
    EXPECT_EQ(row.exception.GetClass(), &row.record);
    EXPECT_TRUE(row.exception.IsInstanceOf(&CException::m_classCException));
    EXPECT_STREQ(row.exception.GetSourceFile(), "f");
    EXPECT_EQ(row.exception.GetSourceLine(), 3u);
    EXPECT_STREQ(row.exception.GetMessageText(), "m");
    EXPECT_STREQ(row.exception.GetDetail(), "d");
  }
}

TEST(ExceptionTest, AnotherLibrarysExceptionIsCaughtByItsBase) {
  try {
    plugin::Throw();
    FAIL() << "nothing thrown";
  } catch (const CException& exception) {
    EXPECT_EQ(typeid(exception), typeid(plugin::CPluginException));
    EXPECT_STREQ(exception.GetSourceFile(), "plugin/Plugin");
    EXPECT_EQ(exception.GetSourceLine(), 17u);
    EXPECT_STREQ(exception.GetMessageText(), "From another library.");
  }
  EXPECT_THROW(plugin::Throw(), CObject);
  EXPECT_THROW(plugin::Throw(), plugin::CPluginException);
}

TEST(ExceptionTest, TheFoundationsExceptionIsCaughtByItsClass) {
  EXPECT_THROW(CBase::_ThrowMemoryException("file", 1), CMemoryException);
  EXPECT_THROW(CBase::_ThrowMemoryException("file", 1), CException);
}

TEST(ExceptionTest, PrintingWritesOneLineOfWhatIsThere) {
  const struct {
    const char* name;
    std::shared_ptr<const CException> exception;
    const char* line;
  } rows[] = {
      {"all facts", std::make_shared<CException>("jni/JavaVm", 132u, "A message.", "A detail."),
       "mirel::base::CException: A message. (A detail.) at jni/JavaVm:132\n"},
      {"no detail", std::make_shared<CIllegalArgumentException>("mirel/util/X", 4294967295u, "A message.", nullptr),
       "mirel::base::CIllegalArgumentException: A message. at mirel/util/X:4294967295\n"},
      {"no message", std::make_shared<CMemoryException>("mirel/base/Base", 0u, nullptr, nullptr),
       "mirel::base::CMemoryException at mirel/base/Base:0\n"},
      {"no place", std::make_shared<CNullReferenceException>(nullptr, 0u, "A message.", nullptr),
       "mirel::base::CNullReferenceException: A message.\n"},
      {"nothing", std::make_shared<CNoSuchElementException>(nullptr, 0u, nullptr, nullptr),
       "mirel::util::CNoSuchElementException\n"},
      {"another library's", std::make_shared<plugin::CPluginException>("plugin/Plugin", 10u, "A message."),
       "plugin::CPluginException: A message. at plugin/Plugin:10\n"},
      {"system error", std::make_shared<CWinSystemErrorException>("jni/X", 9u, "A message.", nullptr, 1018u),
       "mirel::base::win::CWinSystemErrorException: A message. at jni/X:9, system error 1018\n"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(Printed(*row.exception), row.line);
  }
}

TEST(ExceptionTest, PrintingTakesNoMemoryOfTheRootAllocator) {
  Allocations allocations;
  EXPECT_EQ(Printed(CException("file", 1, "message", nullptr)), "mirel::base::CException: message at file:1\n");
  EXPECT_EQ(allocations.Made(), 0);
}

TEST(ExceptionTest, ASystemErrorKeepsItsCode) {
  EXPECT_EQ(CWinSystemErrorException("f", 1, nullptr, nullptr, 0xFFFFFFFF).GetErrorCode(), 0xFFFFFFFFu);
  const CWinSystemErrorException original("f", 1, nullptr, nullptr, 2);
  EXPECT_EQ(CWinSystemErrorException(original).GetErrorCode(), 2u);
}

TEST(ExceptionPrintToDebugOutTest, PrintsToTheCurrentStreamThroughTheExceptionsOwnOperation) {
  DebugOut debugOut;
  PrintToDebugOut(CWinSystemErrorException("file", 1, "message", nullptr, 2));
  EXPECT_EQ(debugOut.Text(), "mirel::base::win::CWinSystemErrorException: message at file:1, system error 2\n");
}

TEST(ExceptionPrintToDebugOutTest, WithoutAStreamNothingIsPrinted) {
  DebugOut debugOut;
  CSystem::debugOut = nullptr;
  PrintToDebugOut(CException("file", 1, "message", nullptr));
  EXPECT_EQ(debugOut.Text(), "");
}

TEST(ExceptionPrintToDebugOutTest, AStreamThatThrowsIsNotNoticed) {
  class BrokenStream : public mirel::io::CPrintStream {
   public:
    void Print(const char*) override { throw std::runtime_error("broken"); }
  } broken;
  DebugOut restoresTheStream;
  CSystem::debugOut = &broken;
  EXPECT_NO_THROW(PrintToDebugOut(CException("file", 1, "message", nullptr)));
}

}  // namespace
}  // namespace tests
