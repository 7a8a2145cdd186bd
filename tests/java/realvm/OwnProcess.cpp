#include "java/realvm/OwnProcess.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace javatest {

namespace {

constexpr int ExitFailed = 99;

// In a child process GoogleTest keeps failures to itself.
void PrintFailures() {
  const testing::TestResult& result = *testing::UnitTest::GetInstance()->current_test_info()->result();
  for (int i = 0; i < result.total_part_count(); ++i) {
    const testing::TestPartResult& part = result.GetTestPartResult(i);
    if (part.failed()) std::fprintf(stderr, "%s:%d: %s\n", part.file_name(), part.line_number(), part.message());
  }
}

[[noreturn]] void RunAndExit(const std::function<void()>& body) {
  try {
    body();
  } catch (const std::exception& exception) {
    ADD_FAILURE() << "thrown: " << exception.what();
  } catch (const mirel::base::CException& exception) {
    ADD_FAILURE() << "thrown: " << exception.GetMessageText();
  }
  PrintFailures();
  std::exit(testing::Test::HasFailure() ? ExitFailed : 0);
}

}  // namespace

void InProcessOfItsOwn(const std::function<void()>& body, const Expected& expected) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // the child is started anew, as it must be on Windows
  EXPECT_EXIT(RunAndExit(body), testing::ExitedWithCode(expected.exitCode), expected.printed);
}

Note::Note() {
  const char* const folder = std::getenv("TORVAN_TEST_FOLDER");
  m_path = std::string(folder != nullptr ? folder : ".") + "/note-" +
           testing::UnitTest::GetInstance()->current_test_info()->name();
  std::filesystem::remove(m_path);
}

Note::~Note() {
  std::error_code error;
  std::filesystem::remove(m_path, error);
}

std::string Note::Text() const {
  std::ifstream file(m_path);
  return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace javatest
