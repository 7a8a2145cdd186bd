#include "java/ErrorReader.h"

#include <torvan/java/detail/LocalScope.h>
#include <torvan/java/detail/NewObject.h>
#include <torvan/java/detail/Pending.h>
#include <torvan/java/detail/StringText.h>

#include <utility>

#include "java/Bindings.h"

namespace torvan::java {

using detail::Bound;
using detail::LocalScope;

bool ErrorReader::Failed() {
  if (m_env->ExceptionCheck() == JNI_FALSE) return false;
  m_env->ExceptionClear();
  return true;
}

jobject ErrorReader::Call(jobject object, jmethodID method) {
  jobject const result = m_env->CallObjectMethodA(object, method, nullptr);
  return Failed() ? nullptr : result;
}

std::optional<std::string> ErrorReader::Text(jobject object, jmethodID method) {
  const LocalScope text(m_env, Call(object, method));
  if (text.Get() == nullptr) return std::nullopt;
  return detail::ReadUtf8(m_env, static_cast<jstring>(text.Get()));
}

std::string ErrorReader::ClassName(jthrowable throwable) {
  const LocalScope type(m_env, m_env->GetObjectClass(throwable));
  return Text(type.Get(), Bound()->getName).value_or("(a Java exception whose class cannot be read)");
}

std::string ErrorReader::What(jthrowable throwable, const Error::Facts& facts) {
  if (facts.message.has_value()) return facts.className + ": " + *facts.message;
  // It never has a message; its cause says what went wrong.
  if (facts.className != "java.lang.ExceptionInInitializerError") return facts.className;
  const LocalScope cause(m_env, Call(throwable, Bound()->getCause));
  if (cause.Get() == nullptr) return facts.className;
  return facts.className + ": " + Read(static_cast<jthrowable>(cause.Get()), {}).what();
}

Error ErrorReader::Given(const Ref<Throwable>& throwable) {
  if (!throwable) throw Misuse("java/ErrorReader", __LINE__, "null is given as the throwable of an Error");
  return ErrorReader(detail::CallEnv()).Read(static_cast<jthrowable>(throwable.Get()), {});
}

Error ErrorReader::Read(jthrowable throwable, std::string_view addition) {
  auto facts = std::make_shared<Error::Facts>();
  facts->throwable = detail::GlobalOf<Throwable>(m_env, throwable);
  facts->className = ClassName(throwable);
  facts->message = Text(throwable, Bound()->getMessage);
  std::string what = What(throwable, *facts).append(addition);
  return Error(std::move(what), std::move(facts));
}

void ErrorReader::ThrowFor(const Error& error, const std::string& member) {
  if (error.ClassName() != "java.lang.ClassNotFoundException") throw error;
  throw Error(std::string(error.what()) + " (needed by " + member + ")", error.m_facts);
}

std::optional<std::string> ErrorReader::Trace(jobject throwable) {
  const detail::Bindings& bindings = *Bound();
  const LocalScope writer(m_env,
                          detail::TryNewObject(m_env, bindings.stringWriterClass, bindings.newStringWriter, nullptr));
  if (Failed()) return std::nullopt;
  jvalue argument{};
  argument.l = writer.Get();
  const LocalScope printer(m_env,
                           detail::TryNewObject(m_env, bindings.printWriterClass, bindings.newPrintWriter, &argument));
  if (Failed()) return std::nullopt;
  argument.l = printer.Get();
  m_env->CallVoidMethodA(throwable, bindings.printStackTrace, &argument);
  if (Failed()) return std::nullopt;
  return Text(writer.Get(), bindings.toString);
}

}  // namespace torvan::java
