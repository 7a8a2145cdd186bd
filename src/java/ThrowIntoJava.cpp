#include <torvan/java/Error.h>
#include <torvan/java/detail/LocalScope.h>
#include <torvan/java/detail/NewObject.h>
#include <torvan/java/detail/StringText.h>

#include <cstdlib>
#include <string>

#if __has_include(<cxxabi.h>)
#include <cxxabi.h>
#endif

#include "java/Handler.h"

namespace torvan::java::detail {

namespace {

// The type of the exception that is being handled, as far as the compiler tells.
std::string TypeOfThrown() {
#if __has_include(<cxxabi.h>) && !defined(_MSC_VER)
  const std::type_info* const type = abi::__cxa_current_exception_type();
  if (type == nullptr) return "of an unknown type";
  int status = 0;
  char* const plain = abi::__cxa_demangle(type->name(), nullptr, nullptr, &status);
  const std::string name = plain != nullptr ? plain : type->name();
  std::free(plain);
  return "of type " + name;
#else
  return "of an unknown type";
#endif
}

// Makes a Java string of a C++ text in any encoding: in one that is not UTF-8, "?" replaces what is not ASCII.
jstring NewAnyText(JNIEnv* env, const std::string& text) {
  try {
    return NewText(env, std::string_view(text));
  } catch (const Misuse&) {
    std::string ascii = text;
    for (char& c : ascii) {
      if (static_cast<signed char>(c) < 0) c = '?';
    }
    return NewText(env, std::string_view(ascii));
  }
}

void ThrowRuntimeException(JNIEnv* env, const std::string& text) {
  env->ExceptionClear();
  ThrowNew(env, TheHandlerClass(env).runtimeException, text);
}

void Throw(JNIEnv* env, const Error& error) noexcept {
  env->ExceptionClear();
  env->Throw(static_cast<jthrowable>(error.Throwable().Get()));
}

void ThrowHandled(JNIEnv* env) {
  try {
    throw;
  } catch (const Error& error) {
    Throw(env, error);
  } catch (const std::exception& exception) {
    ThrowRuntimeException(env, exception.what());
  } catch (const mirel::base::CException& exception) {
    const char* const text = exception.GetMessageText();
    if (env->ExceptionCheck() == JNI_FALSE) ThrowRuntimeException(env, text != nullptr ? text : "");
  } catch (...) {
    ThrowRuntimeException(env, "a C++ exception " + TypeOfThrown());
  }
}

}  // namespace

void ThrowNew(JNIEnv* env, const ExceptionClass& type, const std::string& text) {
  const LocalScope message(env, NewAnyText(env, text));
  jvalue argument{};
  argument.l = message.Get();
  const LocalScope made(env, TryNewObject(env, type.type, type.make, &argument));
  if (made.Get() != nullptr) env->Throw(static_cast<jthrowable>(made.Get()));
}

void ThrowIntoJava(JNIEnv* env) noexcept {
  try {
    ThrowHandled(env);
  } catch (const Error& error) {
    Throw(env, error);  // Java has no memory, most likely
  } catch (...) {
    env->ThrowNew(TheHandlerClass(env).runtimeException.type, "a C++ exception, and no memory to say which");
  }
}

}  // namespace torvan::java::detail
