#include <chrono>

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

namespace std::chrono {

steady_clock::time_point steady_clock::now() noexcept {
  LARGE_INTEGER count;
  LARGE_INTEGER frequency;
  QueryPerformanceCounter(&count);
  QueryPerformanceFrequency(&frequency);
  const long long seconds = count.QuadPart / frequency.QuadPart;
  const long long rest = count.QuadPart % frequency.QuadPart;
  return time_point(duration(seconds * 1'000'000'000 + rest * 1'000'000'000 / frequency.QuadPart));
}

system_clock::time_point system_clock::now() noexcept {
  FILETIME time;
  GetSystemTimeAsFileTime(&time);
  const long long ticks = (static_cast<long long>(time.dwHighDateTime) << 32) | time.dwLowDateTime;
  const long long since1970 = ticks - 116'444'736'000'000'000;  // FILETIME counts from 1601, in 100 ns
  return time_point(duration_cast<duration>(nanoseconds(since1970 * 100)));
}

system_clock::time_point system_clock::from_time_t(time_t time) noexcept { return time_point(seconds(time)); }

}  // namespace std::chrono
