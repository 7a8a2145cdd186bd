// What an operation throws, as a value that tests compare.
#pragma once

#include <gtest/gtest.h>
#include <mirel/base/Exception.h>

#include <ostream>
#include <string>
#include <typeindex>
#include <typeinfo>
#include <utility>

namespace tests {

constexpr unsigned int AnyLine = 0xFFFFFFFF;  // for a failure whose line is not published; any line but 0 matches

// The exact class, source file, line and message; a null text shows as "(null)".
struct Failure {
  std::type_index type = typeid(void);  // void: nothing was thrown
  std::string file;
  unsigned int line = 0;
  std::string message;
};

inline bool operator==(const Failure& left, const Failure& right) {
  const bool sameLine =
      left.line == right.line || (left.line == AnyLine && right.line != 0) || (right.line == AnyLine && left.line != 0);
  return left.type == right.type && left.file == right.file && left.message == right.message && sameLine;
}

inline std::ostream& operator<<(std::ostream& out, const Failure& failure) {
  if (failure.type == typeid(void)) return out << "nothing thrown";
  return out << failure.type.name() << " " << failure.file << ":" << failure.line << " " << failure.message;
}

namespace detail {
inline std::string Shown(const char* text) { return text != nullptr ? text : "(null)"; }
}  // namespace detail

template <typename Exception>
Failure Throws(const char* file, unsigned int line, const char* message) {
  return {typeid(Exception), detail::Shown(file), line, detail::Shown(message)};
}

// Runs an operation and returns what it threw. Anything that is no CException passes through. Use:
//   EXPECT_EQ(FailureOf([&] { vm.Detach(); }), Throws<CJavaVmException>("jni/JavaVm", AnyLine, "..."));
template <typename Operation>
Failure FailureOf(Operation&& operation) {
  try {
    std::forward<Operation>(operation)();
    return {};
  } catch (const mirel::base::CException& exception) {
    EXPECT_EQ(exception.GetDetail(), nullptr);
    return {typeid(exception), detail::Shown(exception.GetSourceFile()), exception.GetSourceLine(),
            detail::Shown(exception.GetMessageText())};
  }
}

}  // namespace tests
