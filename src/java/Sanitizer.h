// What a thread sanitizer cannot see: that Java hands things from one thread to another in an orderly way.
#pragma once

#if defined(__SANITIZE_THREAD__)
#define TORVAN_JAVA_THREAD_SANITIZER
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define TORVAN_JAVA_THREAD_SANITIZER
#endif
#endif

#ifdef TORVAN_JAVA_THREAD_SANITIZER
extern "C" void __tsan_acquire(void* address);
extern "C" void __tsan_release(void* address);
#endif

namespace torvan::java::detail {

// All that was done before Released is seen after an Acquired of the same address, which Java put after it.
inline void Released([[maybe_unused]] const void* address) noexcept {
#ifdef TORVAN_JAVA_THREAD_SANITIZER
  __tsan_release(const_cast<void*>(address));
#endif
}
inline void Acquired([[maybe_unused]] const void* address) noexcept {
#ifdef TORVAN_JAVA_THREAD_SANITIZER
  __tsan_acquire(const_cast<void*>(address));
#endif
}

}  // namespace torvan::java::detail
