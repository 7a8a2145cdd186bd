// The results of threads that are started with std::async.
#include <future>

_LIBCPP_BEGIN_NAMESPACE_STD

future_error::future_error(error_code code) : logic_error(code.message()), __ec_(code) {}
future_error::~future_error() noexcept = default;

void __assoc_sub_state::__on_zero_shared() noexcept { delete this; }

void __assoc_sub_state::__make_ready() {
  const lock_guard<mutex> guard(__mut_);
  __state_ |= ready;
  __cv_.notify_all();
}

void __assoc_sub_state::set_exception(exception_ptr exception) {
  {
    const lock_guard<mutex> guard(__mut_);
    if (__has_value()) __throw_future_error(future_errc::promise_already_satisfied);
    __exception_ = exception;
  }
  __make_ready();
}

void __assoc_sub_state::__sub_wait(unique_lock<mutex>& lock) {
  if (__is_ready()) return;
  if ((__state_ & static_cast<unsigned>(deferred)) != 0) {
    __state_ &= ~static_cast<unsigned>(deferred);
    lock.unlock();
    __execute();
  } else {
    while (!__is_ready()) __cv_.wait(lock);
  }
}

void __assoc_sub_state::wait() {
  unique_lock<mutex> lock(__mut_);
  __sub_wait(lock);
}

void __assoc_sub_state::__execute() { __throw_future_error(future_errc::no_state); }

_LIBCPP_END_NAMESPACE_STD
