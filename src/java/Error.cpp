#include <torvan/java/Error.h>

#include <torvan/java/detail/LocalScope.h>
#include <torvan/java/detail/Pending.h>

#include <utility>

#include "java/Bindings.h"
#include "java/ErrorReader.h"
#include "java/PendingAside.h"

namespace torvan::java {

Error::Error(std::string what, std::shared_ptr<Facts> facts)
    : Failure("java/Error", __LINE__, std::move(what)), m_facts(std::move(facts)) {}
Error::Error(const Ref<java::Throwable>& throwable) : Error(ErrorReader::Given(throwable)) {}
Error::Error(const Error& other) noexcept = default;
Error& Error::operator=(const Error& other) noexcept = default;
Error::~Error() = default;

const std::string& Error::ClassName() const noexcept { return m_facts->className; }
const std::optional<std::string>& Error::Message() const noexcept { return m_facts->message; }
const Global<Throwable>& Error::Throwable() const noexcept { return m_facts->throwable; }

std::string Error::StackTrace() const {
  if (const auto known = m_facts->Known(m_facts->trace)) return *known;
  const std::string unread = std::string(what()) + "\n\t(the stack trace was not read: ";
  if (!detail::HasVm()) return unread + "the Java VM has ended)\n";
  JNIEnv* const env = detail::Env();
  const detail::PendingAside pending(env);
  auto read = ErrorReader(env).Trace(m_facts->throwable.Get());
  if (!read.has_value()) return unread + "Java failed to print it)\n";
  return m_facts->Keep(m_facts->trace, *std::move(read));
}

std::optional<Error> Error::Cause() const {
  if (const auto known = m_facts->Known(m_facts->cause)) return *known;
  JNIEnv* const env = detail::Env();
  const detail::PendingAside pending(env);
  jobject const own = m_facts->throwable.Get();
  const detail::LocalScope cause(env, env->CallObjectMethodA(own, detail::Bound()->getCause, nullptr));
  detail::CheckPending(env);
  std::optional<Error> read;
  if (cause.Get() != nullptr && env->IsSameObject(cause.Get(), own) == JNI_FALSE) {
    read = ErrorReader(env).Read(static_cast<jthrowable>(cause.Get()), {});
  }
  return m_facts->Keep(m_facts->cause, std::move(read));
}

std::optional<Error> TakePending() { return detail::TakePending(detail::Env()); }

namespace detail {

std::optional<Error> TakePending(JNIEnv* env) {
  const LocalScope pending(env, env->ExceptionOccurred());
  if (pending.Get() == nullptr) return std::nullopt;
  env->ExceptionClear();
  return ErrorReader(env).Read(static_cast<jthrowable>(pending.Get()), {});
}

void ThrowPending(JNIEnv* env, std::string_view addition) {
  const LocalScope pending(env, env->ExceptionOccurred());
  env->ExceptionClear();
  throw ErrorReader(env).Read(static_cast<jthrowable>(pending.Get()), addition);
}

}  // namespace detail

}  // namespace torvan::java
