#include "java/realvm/OwnProcess.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "ChildProcess.h"

namespace tests {

namespace {

[[noreturn]] void RunAndExit(const std::function<void()>& body) {
  try {
    body();
  } catch (const std::exception& exception) {
    ADD_FAILURE() << "thrown: " << exception.what();
  } catch (const mirel::base::CException& exception) {
    ADD_FAILURE() << "thrown: " << exception.GetMessageText();
  }
  ExitWithTheResult();
}

}  // namespace

void InOwnProcess(const std::function<void()>& body, const Expected& expected) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");  // the child is started anew, as it must be on Windows
  EXPECT_EXIT(RunAndExit(body), testing::ExitedWithCode(expected.exitCode), expected.printed);
}

Note::Note() {
  m_path = std::string("./note-") + testing::UnitTest::GetInstance()->current_test_info()->name();
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

}  // namespace tests
