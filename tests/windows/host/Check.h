// Checks that are counted.
#pragma once

#include <torvan/Torvan.h>

#include <cstdio>
#include <cstring>

namespace host {

struct Counts {
  int passed;
  int failed;
};
extern Counts counts;

inline void Check(bool holds, const char* what, const char* file, int line) {
  if (holds) {
    ++counts.passed;
    return;
  }
  ++counts.failed;
  std::printf("%s:%d: failed: %s\n", file, line, what);
}

#define CHECK(expression) host::Check((expression), #expression, __FILE__, __LINE__)

// Texts are equal when their characters are.
inline bool Same(const char* left, const char* right) { return left != nullptr && std::strcmp(left, right) == 0; }
inline bool Same(const mirel::base::CUnicodeString& left, const wchar_t* right) { return left == right; }

// For failures whose line is not published; any line but 0 matches.
constexpr unsigned int AnyLine = 0;

// Whether an action throws exactly a T, by the class caught and by its record, from that line and with that message.
template <class T, class Action>
bool Throws(Action action, const char* file, unsigned int line, const char* message,
            const mirel::base::CClass& record) {
  try {
    action();
  } catch (const T& thrown) {
    const bool sameMessage =
        message == nullptr ? thrown.GetMessageText() == nullptr : Same(thrown.GetMessageText(), message);
    const bool sameLine = line == AnyLine ? thrown.GetSourceLine() != 0 : thrown.GetSourceLine() == line;
    return thrown.GetClass() == &record && Same(thrown.GetSourceFile(), file) && sameLine && sameMessage;
  } catch (...) {
  }
  return false;
}

// Whether an action throws something that is caught as a Base.
template <class Base, class Action>
bool IsCaughtAs(Action action) {
  try {
    action();
  } catch (const Base&) {
    return true;
  } catch (...) {
  }
  return false;
}

void CheckRecords();
void CheckContainers();
void CheckOptions();
void CheckExceptions();
void CheckJava();
void CheckAccessors(const torvan::jni::CJavaObject& object, const torvan::jni::CJavaClass& javaClass);
void CheckLauncher();

}  // namespace host
