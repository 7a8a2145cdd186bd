#include <any>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <variant>

extern "C" int __cdecl __uncaught_exceptions();

namespace std {

exception::~exception() noexcept = default;
const char* exception::what() const noexcept { return "std::exception"; }

bad_alloc::bad_alloc() noexcept = default;
bad_alloc::~bad_alloc() noexcept = default;
const char* bad_alloc::what() const noexcept { return "std::bad_alloc"; }
bad_array_new_length::bad_array_new_length() noexcept = default;
bad_array_new_length::~bad_array_new_length() noexcept = default;
const char* bad_array_new_length::what() const noexcept { return "std::bad_array_new_length"; }

const nothrow_t nothrow{};

bad_cast::bad_cast() noexcept = default;
bad_cast::~bad_cast() noexcept = default;
const char* bad_cast::what() const noexcept { return "std::bad_cast"; }
const char* bad_any_cast::what() const noexcept { return "std::bad_any_cast"; }
bad_optional_access::~bad_optional_access() noexcept = default;
const char* bad_optional_access::what() const noexcept { return "std::bad_optional_access"; }
const char* bad_variant_access::what() const noexcept { return "std::bad_variant_access"; }

bad_weak_ptr::~bad_weak_ptr() noexcept = default;
const char* bad_weak_ptr::what() const noexcept { return "std::bad_weak_ptr"; }

void __throw_bad_alloc() { throw bad_alloc(); }
void terminate() noexcept { abort(); }
int uncaught_exceptions() noexcept { return __uncaught_exceptions(); }

inline namespace __1 {

namespace {

char* CopyOf(const char* text) {
  const size_t size = strlen(text) + 1;
  return static_cast<char*>(memcpy(malloc(size), text, size));
}

}  // namespace

__libcpp_refstring::__libcpp_refstring(const char* text) : __imp_(CopyOf(text)) {}
__libcpp_refstring::__libcpp_refstring(const __libcpp_refstring& other) noexcept : __imp_(CopyOf(other.__imp_)) {}
__libcpp_refstring::~__libcpp_refstring() { free(const_cast<char*>(__imp_)); }

}  // namespace __1

logic_error::logic_error(const string& text) : __imp_(text.c_str()) {}
logic_error::logic_error(const char* text) : __imp_(text) {}
logic_error::logic_error(const logic_error& other) noexcept : exception(other), __imp_(other.__imp_) {}
logic_error::~logic_error() noexcept = default;
const char* logic_error::what() const noexcept { return __imp_.c_str(); }

runtime_error::runtime_error(const string& text) : __imp_(text.c_str()) {}
runtime_error::runtime_error(const char* text) : __imp_(text) {}
runtime_error::runtime_error(const runtime_error& other) noexcept : exception(other), __imp_(other.__imp_) {}
runtime_error::~runtime_error() noexcept = default;
const char* runtime_error::what() const noexcept { return __imp_.c_str(); }

domain_error::~domain_error() noexcept = default;
length_error::~length_error() noexcept = default;
out_of_range::~out_of_range() noexcept = default;
invalid_argument::~invalid_argument() noexcept = default;
range_error::~range_error() noexcept = default;

}  // namespace std
