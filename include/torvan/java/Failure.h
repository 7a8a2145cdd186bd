// The failures of torvan::java.
#pragma once

#include <torvan/JniException.h>
#include <torvan/java/detail/Attributes.h>

#include <exception>
#include <memory>
#include <string>

namespace torvan::java {

// The base of every exception of torvan::java.
// Catch it as Failure, jni::CJniException, mirel::base::CException or std::exception. Copies share the text and may be
// made on any thread; copying throws nothing.
class TORVAN_JAVA_VISIBLE Failure : public jni::CJniException, public std::exception {
 public:
  // Takes the source file (path below the source root, without extension), its line, and the text in UTF-8.
  Failure(const char* file, unsigned int line, std::string text);
  Failure(const Failure& other) noexcept;
  Failure& operator=(const Failure& other) noexcept;
  ~Failure() override;

  // The text in UTF-8, valid as long as this failure or a copy of it. GetMessageText() returns the same.
  const char* what() const noexcept override;

 private:
  explicit Failure(const char* file, unsigned int line, std::shared_ptr<const std::string> text);

  std::shared_ptr<const std::string> m_text;
};

// A wrong use that the layer itself refuses, such as a null object, a null result for a C++ type without null, or text
// that is not UTF-8.
class TORVAN_JAVA_VISIBLE Misuse : public Failure {
 public:
  using Failure::Failure;
  Misuse(const Misuse& other) noexcept;
  Misuse& operator=(const Misuse& other) noexcept;
  ~Misuse() override;
};

// Something that could not be started: a VM, or a Java program in another process.
// The text says which step failed, on what, and the system's or the VM's own reason.
class TORVAN_JAVA_VISIBLE StartFailure : public Failure {
 public:
  using Failure::Failure;
  StartFailure(const StartFailure& other) noexcept;
  StartFailure& operator=(const StartFailure& other) noexcept;
  ~StartFailure() override;
};

}  // namespace torvan::java
