// Tells a thread sanitizer what it cannot see: that Java synchronises what it hands from one thread to another.
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

// What happened before Released is visible after an Acquired of the same address, which Java has ordered after it.
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
