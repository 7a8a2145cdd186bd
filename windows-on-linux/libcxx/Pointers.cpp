#include <__hash_table>
#include <memory>

_LIBCPP_BEGIN_NAMESPACE_STD

// Like the header's own half: the counts start at 0, and -1 says that the last reference has gone.
__shared_count::~__shared_count() = default;
__shared_weak_count::~__shared_weak_count() = default;
void __shared_weak_count::__release_weak() noexcept {
  if (__libcpp_atomic_refcount_decrement(__shared_weak_owners_) == -1) __on_zero_shared_weak();
}
__shared_weak_count* __shared_weak_count::lock() noexcept {
  long owners = __atomic_load_n(&__shared_owners_, __ATOMIC_SEQ_CST);
  while (owners != -1) {
    if (__atomic_compare_exchange_n(&__shared_owners_, &owners, owners + 1, false, __ATOMIC_SEQ_CST,
                                    __ATOMIC_SEQ_CST)) {
      return this;
    }
  }
  return nullptr;
}
const void* __shared_weak_count::__get_deleter(const type_info&) const noexcept { return nullptr; }

size_t __next_prime(size_t number) {
  if (number < 3) return number < 1 ? 0 : 2;
  for (number |= 1;; number += 2) {
    size_t divisor = 3;
    while (divisor <= number / divisor && number % divisor != 0) divisor += 2;
    if (divisor > number / divisor) return number;
  }
}

_LIBCPP_END_NAMESPACE_STD
