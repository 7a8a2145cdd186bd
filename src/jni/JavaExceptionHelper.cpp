#include "jni/JavaExceptionHelper.h"

#include <mirel/base/At.h>
#include <mirel/base/UnicodeStringBuffer.h>
#include <torvan/JavaException.h>
#include <torvan/JavaVmException.h>

#include "jni/JniText.h"

#if defined(_MSC_VER)
#define TORVAN_NOINLINE __declspec(noinline)
#else
#define TORVAN_NOINLINE __attribute__((noinline))
#endif

namespace torvan::jni {

using mirel::base::At;
using mirel::base::CUnicodeString;
using mirel::base::CUnicodeStringBuffer;

namespace {

CJavaVmException Failure(unsigned int line, const char* text) {
  return CJavaVmException("jni/JavaExceptionHelper", line, text, nullptr);
}

[[noreturn]] void Fail(unsigned int line, const char* text) { throw Failure(line, text); }

CUnicodeString ToUnicodeString(JNIEnv* env, jstring string) {
  const jchar* characters = env->GetStringChars(string, nullptr);
  if (characters == nullptr) Fail(At(32), "Failed to get chars of the specified jstring.");
  return TakeCharacters(env, string, characters);
}

// What the name of an exception's class is read by.
struct NameMethods {
  jclass classClass;
  jmethodID getClass;  // null where the VM refuses the look-up
};

NameMethods FindNameMethods(JNIEnv* env, jthrowable throwable) {
  jclass throwableClass = env->GetObjectClass(throwable);
  if (throwableClass == nullptr) Fail(At(53), "Failed to get the class of the exception occured.");  // sic
  jclass classClass = env->FindClass("java/lang/Class");
  if (classClass == nullptr) Fail(At(55), "Failed to get the java.lang.Class class.");
  // Intentional: getClass is looked up as if it returned a string. A VM that refuses that reports this failure for
  // every Java exception.
  return {classClass, env->GetMethodID(throwableClass, "getClass", "()Ljava/lang/String;")};
}

CUnicodeString GetExceptionClassName(JNIEnv* env, jthrowable throwable, const NameMethods& methods) {
  jmethodID getName = env->GetMethodID(methods.classClass, "getName", "()Ljava/lang/String;");
  if (getName == nullptr)
    Fail(At(59), "Failed to get the method id of the getName () method of java.lang.Class class.");
  jobject classObject = env->CallObjectMethod(throwable, methods.getClass);
  if (classObject == nullptr) Fail(At(65), "Failed to get the class of the exception occured.");  // sic
  const auto name = static_cast<jstring>(env->CallObjectMethod(classObject, getName));
  if (name == nullptr) Fail(At(67), "Failed to get the name of class of the exception occured.");  // sic
  return ToUnicodeString(env, name);
}

CUnicodeString GetExceptionMessage(JNIEnv* env, jthrowable throwable) {
  jclass throwableClass = env->GetObjectClass(throwable);
  if (throwableClass == nullptr) Fail(At(82), "Failed to get the class of the exception occured.");  // sic
  jmethodID getMessage = env->GetMethodID(throwableClass, "getMessage", "()Ljava/lang/String;");
  if (getMessage == nullptr)
    Fail(At(84), "Failed to get the method id of getMessage () method of the exception occured.");  // sic
  const auto message = static_cast<jstring>(env->CallObjectMethod(throwable, getMessage));
  if (message == nullptr) {
    // Intentional: a Java exception without a message is reported as this failure.
    Fail(At(89), "Failed to get the message of the exception occured.");  // sic
  }
  return ToUnicodeString(env, message);
}

void AppendElement(CUnicodeStringBuffer& trace, JNIEnv* env, jobjectArray elements, jsize index, jmethodID toString) {
  jobject element = env->GetObjectArrayElement(elements, index);
  if (element == nullptr) return;
  const auto text = static_cast<jstring>(env->CallObjectMethod(element, toString));
  if (text == nullptr) Fail(At(129), "Failed to call the toString () method of the given java.lang.StackTrace object.");
  // Intentional: no line break; the whole trace is one line.
  trace += RX_TEXT("\tat ");
  trace += ToUnicodeString(env, text);
}

CUnicodeString GetExceptionStackTrace(JNIEnv* env, jthrowable throwable) {
  jclass elementClass = env->FindClass("java/lang/StackTraceElement");
  if (elementClass == nullptr) return CUnicodeString();
  jclass throwableClass = env->GetObjectClass(throwable);
  if (throwableClass == nullptr) Fail(At(107), "Failed to get the class of the exception occured.");  // sic
  jmethodID getStackTrace = env->GetMethodID(throwableClass, "getStackTrace", "()[Ljava/lang/StackTraceElement;");
  if (getStackTrace == nullptr)
    Fail(At(109), "Failed to get the method id of getStackTrace () method of the exception occured.");  // sic
  jmethodID toString = env->GetMethodID(elementClass, "toString", "()Ljava/lang/String;");
  if (toString == nullptr)
    Fail(At(111), "Failed to get the method id of toString () method of the java.lang.StackTraceElement class.");
  const auto elements = static_cast<jobjectArray>(env->CallObjectMethod(throwable, getStackTrace));
  if (elements == nullptr) Fail(At(119), "Failed to get the stack trace of the exception occured.");  // sic
  CUnicodeStringBuffer trace(32);
  const jsize count = env->GetArrayLength(elements);
  for (jsize i = 0; i < count; ++i) {
    try {
      AppendElement(trace, env, elements, i, toString);
    } catch (const mirel::base::CException&) {
      throw;
    } catch (...) {
      Fail(At(140), "Failed to get given item of the stack trace array.");
    }
  }
  return trace.ToString();
}

// Returns only when the VM has refused to look up getClass. Kept apart from the next function: what that throws then
// passes none of the many places here that have something to free.
TORVAN_NOINLINE void ThrowWhatIsRead(JNIEnv* env, jthrowable throwable) {
  // The first of these to fail is the failure that is reported.
  const CUnicodeString stackTrace = GetExceptionStackTrace(env, throwable);
  const CUnicodeString message = GetExceptionMessage(env, throwable);
  const NameMethods methods = FindNameMethods(env, throwable);
  if (methods.getClass == nullptr) return;
  const CUnicodeString className = GetExceptionClassName(env, throwable, methods);
  throw CJavaException(className, message, stackTrace);
}

}  // namespace

void ThrowJavaException(JNIEnv* env, jthrowable throwable) {
  ThrowWhatIsRead(env, throwable);
  // Every Java exception of HotSpot ends here, so that it is thrown at once, with the texts already freed.
  throw Failure(At(57), "Failed to get the method id of the getClass () method of the exception occured.");  // sic
}

}  // namespace torvan::jni
