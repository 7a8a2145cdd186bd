// What Java threw.
#pragma once

#include <torvan/java/Cast.h>
#include <torvan/java/Failure.h>

#include <memory>
#include <optional>
#include <string>

namespace torvan::java {

// A Java exception, caught: nothing of it is pending any more.
// what() is its class and message ("java.sql.SQLException: Table \"X\" not found"), or the class alone where it has no
// message or its message cannot be read; for a failed static initialiser the cause follows the class, for a look-up
// that failed what there is instead. Class and message are read when it is caught, the rest when it is asked for.
// Copies share what was read, may be made and dropped on any thread, and keep the Java object alive; what was read
// stays after the end of the VM. All texts are UTF-8.
class TORVAN_JAVA_VISIBLE Error : public Failure {
 public:
  Error(const Error& other) noexcept;
  Error& operator=(const Error& other) noexcept;
  ~Error() override;

  // The class with dots, for example "java.lang.IllegalStateException".
  const std::string& ClassName() const noexcept;

  // What getMessage() gave; nothing where that was null or failed.
  const std::optional<std::string>& Message() const noexcept;

  // The stack trace as printStackTrace() prints it, with causes and suppressed exceptions, read at the first call.
  // Where it cannot be read, what() with a line that says so. Throws Failure when the VM refuses the thread.
  std::string StackTrace() const;

  // The cause, if there is one. An exception that is its own cause has none.
  // Throws Misuse "The Java VM has ended" when it was not asked for before, and Error when getCause() fails.
  std::optional<Error> Cause() const;

  // The Java object, for calls on it.
  const Global<java::Throwable>& Throwable() const noexcept;

  // Tells whether the Java object is an instance of T's class. Throws as IsInstance does.
  template <typename T>
  bool IsA() const {
    return IsInstance<T>(Throwable());
  }

 private:
  struct Facts;
  friend class ErrorReader;

  Error(std::string what, std::shared_ptr<Facts> facts);

  std::shared_ptr<Facts> m_facts;
};

// Gives the Java exception that is pending in the calling thread and clears it; nothing when none is.
// For raw JNI and the fixed interface, which leave exceptions pending. Throws as Thread() does.
std::optional<Error> TakePending();

namespace detail {

std::optional<Error> TakePending(JNIEnv* env);

}  // namespace detail

}  // namespace torvan::java
