// How a Java exception is read.
#pragma once

#include <torvan/java/Error.h>

#include <mutex>
#include <optional>
#include <string_view>
#include <utility>

namespace torvan::java {

// What all copies of an Error share. The first three never change; what is asked for later is guarded.
struct Error::Facts {
  std::string className;
  std::optional<std::string> message;
  Global<java::Throwable> throwable;

  std::mutex lock;
  std::optional<std::string> trace;
  std::optional<std::optional<Error>> cause;

  // What was kept of one of the two. The lock is never held while Java runs, which may wait for another thread that
  // asks the same error, or not return from the end of the VM.
  template <typename T>
  std::optional<T> Known(const std::optional<T>& kept) {
    const std::lock_guard<std::mutex> guard(lock);
    return kept;
  }
  // Keeps what was read, unless another thread was first, and returns what is kept.
  template <typename T>
  T Keep(std::optional<T>& kept, T read) {
    const std::lock_guard<std::mutex> guard(lock);
    if (!kept.has_value()) kept.emplace(std::move(read));
    return *kept;
  }
};

// Reads a Java exception that is no longer pending. What Java throws while it is read is cleared, so that one error
// never hides another.
class ErrorReader {
 public:
  explicit ErrorReader(JNIEnv* env) noexcept : m_env(env) {}

  // Of a throwable that the host has. Throws as Error's constructor.
  static Error Given(const Ref<java::Throwable>& throwable);

  Error Read(jthrowable throwable, std::string_view addition);
  // Throws an error again that a look-up of a member's class made. Where there is no such class, what() then names the
  // member, too.
  [[noreturn]] static void ThrowFor(const Error& error, const std::string& member);
  // Nothing where it cannot be read.
  std::optional<std::string> Trace(jobject throwable);

 private:
  // The text that a method without arguments returns; nothing when it returned null or failed.
  std::optional<std::string> Text(jobject object, jmethodID method);
  jobject Call(jobject object, jmethodID method);
  // Clears what the last call threw and tells whether it threw.
  bool Failed();
  std::string ClassName(jthrowable throwable);
  std::string What(jthrowable throwable, const Error::Facts& facts);

  JNIEnv* m_env;
};

}  // namespace torvan::java
