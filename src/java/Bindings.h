// The few Java members that the layer itself needs.
#pragma once

#include <torvan/jni/JniTypes.h>

namespace torvan::java::detail {

// Found once when the VM is started or joined, and kept: when an OutOfMemoryError is read, nothing may be looked up.
// Classes and objects are global references.
struct Bindings {
  jobject loader;  // finds the classes that tags and members name; null until it is known

  jclass classClass;
  jmethodID forName;
  jmethodID getName;

  jclass threadClass;
  jmethodID currentThread;
  jmethodID getContextClassLoader;
  jmethodID setContextClassLoader;

  jclass loaderClass;
  jmethodID getSystemClassLoader;

  jclass throwableClass;
  jmethodID getMessage;
  jmethodID getCause;
  jmethodID printStackTrace;

  jclass stringWriterClass;
  jmethodID newStringWriter;
  jmethodID toString;
  jclass printWriterClass;
  jmethodID newPrintWriter;
};

// Null as long as no VM was started or joined.
const Bindings* Bound() noexcept;

// Finds everything in the VM of the environment. The class loader is the calling thread's context class loader, or the
// system's where the thread has none. Throws StartFailure when the VM lacks any of it. What is pending stays so.
void Bind(JNIEnv* env);

// Sets the context class loader of the calling thread to that of Java's own threads: service look-ups fail without one.
// One that the thread has is replaced only if the layer has just attached the thread. What is pending stays so.
void SetContextClassLoader(JNIEnv* env, bool replaces) noexcept;

}  // namespace torvan::java::detail
