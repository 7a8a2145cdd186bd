// Java's own words for failures of the fixed interface.
#pragma once

#include <torvan/java/Error.h>

#include <type_traits>
#include <utility>

namespace torvan::java {

// Lets the fixed interface tell what Java threw: from then on, in all threads, CJavaException has the class, message
// and stack trace, and the original stays pending, as that interface leaves it. On HotSpot it tells neither without
// this. Call it once after StartVm or JoinVm; further calls do nothing and give the same answer. False for a VM that
// offers no JVMTI: nothing has changed there. Throws Misuse where no VM runs.
bool MakeFailuresReadable();

namespace detail {

// What has to be before and after the host's function.
void BeginGuard();
void EndGuard();
// Throws what Java threw in place of a failure that was caught; comes back where Java threw nothing.
void ThrowJavasOwn(const mirel::base::CException& caught);

}  // namespace detail

// Runs a function that uses the fixed interface or raw JNI and gives its result; what Java threw meanwhile is thrown as
// Error and no longer pending, whatever the fixed interface makes of it: a look-up that failed, a constructor that
// threw, an exception without a message. Its failures that Java has no part in pass as they are, as do all other
// exceptions. Makes failures readable first. Where the VM does not let that happen, a Java exception that the fixed
// interface could not read is thrown as Failure that says so. Throws Misuse where no VM runs, and first of all what is
// pending already.
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
      return static_cast<std::invoke_result_t<Function>>(result);
    }
  } catch (const Failure&) {
    throw;
  } catch (const mirel::base::CException& caught) {
    detail::ThrowJavasOwn(caught);
    throw;
  }
}

}  // namespace torvan::java
