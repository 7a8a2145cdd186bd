// Java's own words for failures of the fixed interface.
#pragma once

#include <torvan/java/Error.h>

#include <type_traits>
#include <utility>

namespace torvan::java {

// Makes the fixed interface report what Java threw: from then on, in all threads, CJavaException has the class, message
// and stack trace, and the original stays pending, as that interface leaves it. Without this it has none of them on
// HotSpot. Call it once after StartVm or JoinVm; further calls do nothing and return the same. Returns false, and
// changes nothing, when the VM has no JVMTI. Throws Misuse when no VM runs.
bool MakeFailuresReadable();

namespace detail {

// What runs before and after the host's function.
void BeginGuard();
void EndGuard();
// Throws what Java threw instead of the failure that was caught; returns when Java threw nothing.
void ThrowJavasOwn(const mirel::base::CException& caught);
// Clears what Java threw, for an exception that passes unchanged.
void ClearPending() noexcept;

}  // namespace detail

// Runs a function that uses the fixed interface or raw JNI and returns its result. What Java threw meanwhile is thrown
// as Error and no longer pending, whatever the fixed interface made of it: a failed look-up, a constructor that threw,
// an exception without a message. Failures without a Java exception pass unchanged, as do all exceptions that the fixed
// interface does not throw; a Java exception that is pending then is cleared and lost. Calls MakeFailuresReadable
// first; if the VM does not allow that, a Java exception that the fixed interface could not read is thrown as a Failure
// that says so. Throws Misuse when no VM runs, and, before the function is run, what is already pending.
template <typename Function>
std::invoke_result_t<Function> Guard(Function&& function) {
  detail::BeginGuard();
  try {
    if constexpr (std::is_void_v<std::invoke_result_t<Function>>) {
      std::forward<Function>(function)();
      detail::EndGuard();
    } else {
      std::invoke_result_t<Function> result = std::forward<Function>(function)();
      detail::EndGuard();
      return std::forward<std::invoke_result_t<Function>>(result);
    }
  } catch (const Failure&) {
    detail::ClearPending();
    throw;
  } catch (const mirel::base::CException& caught) {
    detail::ThrowJavasOwn(caught);
    throw;
  } catch (...) {
    detail::ClearPending();
    throw;
  }
}

}  // namespace torvan::java
