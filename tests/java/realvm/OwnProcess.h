// Tests that each need their own process, and so their own VM.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "java/What.h"
#include "java/realvm/Fixtures.h"

namespace tests {

// What became of a process: its exit code, and what it printed on the standard error stream has to match.
struct Expected {
  int exitCode = 0;
  testing::Matcher<const std::string&> printed = testing::_;
};

// Runs the body in its own process, in which `settings` start a VM. A body that returns ends its process with 0,
// or with another code when one of its expectations failed or it threw; what failed is printed.
void InOwnProcess(const std::function<void()>& body, const Expected& expected = {});

// A file that is gone after the test, one for each; Java writes it, and the test reads it in its own process.
class Note {
 public:
  Note();
  ~Note();
  Note(const Note&) = delete;
  Note& operator=(const Note&) = delete;

  const std::string& Path() const { return m_path; }
  // "" as long as there is none.
  std::string Text() const;

 private:
  std::string m_path;
};

// Leaves an IllegalStateException, "left pending".
inline void ThrowPending(JNIEnv* env) {
  env->ThrowNew(env->FindClass("java/lang/IllegalStateException"), "left pending");
}

}  // namespace tests
