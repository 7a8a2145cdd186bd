// The Java class of all objects that C++ implements, and the C++ objects that Java owns.
#pragma once

#include <torvan/java/detail/Callback.h>

#include <string>

#include "java/Sanitizer.h"

namespace torvan::java::detail {

// A class of exceptions, and its constructor that takes a text.
struct ExceptionClass {
  jclass type;
  jmethodID make;
};

// The class, found once and never released. Classes and objects are global references.
struct HandlerClass {
  jclass type;
  jmethodID newPlan;     // (Class, Method[], String[], Class[][], long)
  jmethodID newHandler;  // (plan, address of the functions)
  jmethodID proxy;
  jfieldID owns;

  jobject cleaner;         // null where Java has no Cleaner
  jmethodID registerWith;  // its register(Object, Runnable)
  jobject noPlan;          // for handlers that do nothing but clean

  ExceptionClass runtimeException;
  ExceptionClass classCastException;
  jmethodID getDeclaringClass;  // of a java.lang.reflect.Method
};

// Defines the class in the VM at the first call. Throws Error, and Failure when the VM does not take native methods.
const HandlerClass& TheHandlerClass(JNIEnv* env);

// Makes a new exception of that class the one that is pending in Java, also while the VM ends. The text may be
// anything. Throws Error and std::bad_alloc where it cannot.
void ThrowNew(JNIEnv* env, const ExceptionClass& type, const std::string& text);

// What is destroyed when a Java object is collected.
class OwnedByJava {
 public:
  OwnedByJava() noexcept;
  OwnedByJava(const OwnedByJava&) = delete;
  OwnedByJava& operator=(const OwnedByJava&) = delete;
  virtual ~OwnedByJava();

 private:
  // A list of all such objects, so that a leak checker finds them when the process ends.
  OwnedByJava* m_previous = nullptr;
  OwnedByJava* m_next = nullptr;
};

// Makes Java the owner of `owned`, which is destroyed after `object` is collected. Where Java has no Cleaner it is
// never destroyed. When this throws Error, nothing has changed.
void GiveToJava(JNIEnv* env, jobject object, OwnedByJava* owned);

// Calls a function for Java: what it throws is thrown into Java, and the result is zero then.
inline jlong CallForJava(JNIEnv* env, jobject self, const HandledFunction& function, const FromJava& given) {
#ifdef TORVAN_JAVA_THREAD_SANITIZER
  Acquired(function.owner);
  const jlong result = function.entry(env, self, &function, given.a, given.b, given.c);
  Released(function.owner);
  return result;
#else
  return function.entry(env, self, &function, given.a, given.b, given.c);
#endif
}

}  // namespace torvan::java::detail
