// Threads, mutexes and condition variables, each one of the system's own.
#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <thread>

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <process.h>
#include <windows.h>

_LIBCPP_BEGIN_NAMESPACE_STD

namespace {

SRWLOCK* LockOf(__libcpp_mutex_t* mutex) { return reinterpret_cast<SRWLOCK*>(mutex); }
CRITICAL_SECTION* SectionOf(__libcpp_recursive_mutex_t* mutex) { return reinterpret_cast<CRITICAL_SECTION*>(mutex); }
CONDITION_VARIABLE* ConditionOf(__libcpp_condvar_t* condition) {
  return reinterpret_cast<CONDITION_VARIABLE*>(condition);
}

constexpr long long MostMilliseconds = INFINITE - 1;

struct Start {
  void* (*function)(void*);
  void* argument;
};

unsigned int __stdcall Run(void* parameter) {
  const Start start = *static_cast<Start*>(parameter);
  delete static_cast<Start*>(parameter);
  start.function(start.argument);
  return 0;
}

}  // namespace

void mutex::lock() { AcquireSRWLockExclusive(LockOf(&__m_)); }
bool mutex::try_lock() noexcept { return TryAcquireSRWLockExclusive(LockOf(&__m_)) != 0; }
void mutex::unlock() noexcept { ReleaseSRWLockExclusive(LockOf(&__m_)); }

recursive_mutex::recursive_mutex() { InitializeCriticalSection(SectionOf(&__m_)); }
recursive_mutex::~recursive_mutex() { DeleteCriticalSection(SectionOf(&__m_)); }
void recursive_mutex::lock() { EnterCriticalSection(SectionOf(&__m_)); }
bool recursive_mutex::try_lock() noexcept { return TryEnterCriticalSection(SectionOf(&__m_)) != 0; }
void recursive_mutex::unlock() noexcept { LeaveCriticalSection(SectionOf(&__m_)); }

void condition_variable::notify_one() noexcept { WakeConditionVariable(ConditionOf(&__cv_)); }
void condition_variable::notify_all() noexcept { WakeAllConditionVariable(ConditionOf(&__cv_)); }
void condition_variable::wait(unique_lock<mutex>& lock) noexcept {
  SleepConditionVariableSRW(ConditionOf(&__cv_), LockOf(lock.mutex()->native_handle()), INFINITE, 0);
}
void condition_variable::__do_timed_wait(unique_lock<mutex>& lock,
                                         chrono::time_point<chrono::system_clock, chrono::nanoseconds> until) noexcept {
  const chrono::nanoseconds left = until - chrono::system_clock::now();
  const long long milliseconds = clamp(chrono::ceil<chrono::milliseconds>(left).count(), 0LL, MostMilliseconds);
  SleepConditionVariableSRW(ConditionOf(&__cv_), LockOf(lock.mutex()->native_handle()),
                            static_cast<DWORD>(milliseconds), 0);
}

int __libcpp_thread_create(__libcpp_thread_t* thread, void* (*function)(void*), void* argument) {
  auto start = new Start{function, argument};
  *thread = reinterpret_cast<void*>(_beginthreadex(nullptr, 0, &Run, start, 0, nullptr));
  if (*thread != nullptr) return 0;
  delete start;
  return ERROR_NOT_ENOUGH_MEMORY;
}
bool __libcpp_thread_isnull(const __libcpp_thread_t* thread) { return *thread == nullptr; }
int __libcpp_thread_join(__libcpp_thread_t* thread) {
  WaitForSingleObject(*thread, INFINITE);
  CloseHandle(*thread);
  *thread = nullptr;
  return 0;
}

__libcpp_thread_id __libcpp_thread_get_current_id() { return GetCurrentThreadId(); }
__libcpp_thread_id __libcpp_thread_get_id(const __libcpp_thread_t* thread) { return GetThreadId(*thread); }
bool __libcpp_thread_id_equal(__libcpp_thread_id one, __libcpp_thread_id other) { return one == other; }
bool __libcpp_thread_id_less(__libcpp_thread_id one, __libcpp_thread_id other) { return one < other; }
void __libcpp_thread_yield() { SwitchToThread(); }

int __libcpp_tls_create(__libcpp_tls_key* key, void(__stdcall* atThreadExit)(void*)) {
  const DWORD slot = FlsAlloc(atThreadExit);
  *key = static_cast<__libcpp_tls_key>(slot);
  return slot == FLS_OUT_OF_INDEXES ? 1 : 0;
}
void* __libcpp_tls_get(__libcpp_tls_key key) { return FlsGetValue(static_cast<DWORD>(key)); }
int __libcpp_tls_set(__libcpp_tls_key key, void* value) { return FlsSetValue(static_cast<DWORD>(key), value) ? 0 : 1; }

// Every thread has one, for work at its end; there is none here.
__thread_struct::__thread_struct() : __p_(nullptr) {}
__thread_struct::~__thread_struct() = default;
__thread_specific_ptr<__thread_struct>& __thread_local_data() {
  static __thread_specific_ptr<__thread_struct> data;
  return data;
}

void thread::join() {
  if (!__libcpp_thread_isnull(&__t_)) __libcpp_thread_join(&__t_);
}
void thread::detach() {
  CloseHandle(__t_);
  __t_ = nullptr;
}
thread::~thread() {
  if (!__libcpp_thread_isnull(&__t_)) abort();
}

namespace this_thread {

void sleep_for(const chrono::nanoseconds& time) {
  Sleep(static_cast<DWORD>(chrono::duration_cast<chrono::milliseconds>(time).count()));
}

}  // namespace this_thread

_LIBCPP_END_NAMESPACE_STD
