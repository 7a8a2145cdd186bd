// What Java threw.
#pragma once

#include <torvan/java/Cast.h>
#include <torvan/java/Failure.h>

#include <memory>
#include <optional>
#include <string>

namespace torvan::java {

// A Java exception that was caught and is no longer pending, or one to be thrown into Java.
// what() is its class and message ("java.sql.SQLException: Table \"X\" not found"), or the class alone where it has no
// message or its message cannot be read; for a failed static initialiser the cause follows the class; for a failed
// look-up, what there is instead. Class and message are read when it is caught or made, the rest at the first request.
// Copies share what was read, may be made and dropped on any thread, and keep the Java object alive; what was read
// remains after the end of the VM. All texts are UTF-8.
class TORVAN_JAVA_VISIBLE Error : public Failure {
 public:
  // Makes an error of any throwable, to be thrown from a function that Java calls: Java gets that very object.
  //   throw java::Error(java::New<TransformerException>("no such page"));
  // Its tag has java::Throwable as Super, or a tag that has. Class and message are read here. Throws Misuse for a null,
  // std::bad_alloc, and as a call does: what is pending first.
  explicit Error(const Ref<java::Throwable>& throwable);

  Error(const Error& other) noexcept;
  Error& operator=(const Error& other) noexcept;
  ~Error() override;

  // The class with dots, for example "java.lang.IllegalStateException".
  const std::string& ClassName() const noexcept;

  // What getMessage() returned; nothing when that was null or failed.
  const std::optional<std::string>& Message() const noexcept;

  // The stack trace as printStackTrace() prints it, with causes and suppressed exceptions, read at the first call.
  // If it cannot be read, what() and a line that says so. Throws Failure when the VM refuses the thread.
  std::string StackTrace() const;

  // The cause, if there is one. An exception that is its own cause has none.
  // Throws Misuse "The Java VM has ended" unless it was read before that, and Error when getCause() fails.
  std::optional<Error> Cause() const;

  // The Java object, for calls on it.
  const Global<java::Throwable>& Throwable() const noexcept;

  // Returns whether the Java object is an instance of T's class. Throws as IsInstance does.
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

// Returns the Java exception that is pending in the calling thread and clears it; nothing when there is none.
// For raw JNI and the fixed interface, which leave exceptions pending. Throws as Thread() does.
std::optional<Error> TakePending();

namespace detail {

std::optional<Error> TakePending(JNIEnv* env);

}  // namespace detail

}  // namespace torvan::java
