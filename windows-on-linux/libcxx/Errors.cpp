#include <cstring>
#include <future>
#include <string>
#include <system_error>

_LIBCPP_BEGIN_NAMESPACE_STD

error_category::~error_category() noexcept = default;
error_condition error_category::default_error_condition(int value) const noexcept { return {value, *this}; }
bool error_category::equivalent(int code, const error_condition& condition) const noexcept {
  return default_error_condition(code) == condition;
}
bool error_category::equivalent(const error_code& code, int condition) const noexcept {
  return *this == code.category() && code.value() == condition;
}

namespace {

class Category : public error_category {
 public:
  explicit Category(const char* name) : m_name(name) {}
  const char* name() const noexcept override { return m_name; }
  string message(int value) const override { return string(m_name) + " " + to_string(value); }

 private:
  const char* m_name;
};

// The C library's own errors.
class GenericCategory final : public Category {
 public:
  GenericCategory() : Category("generic") {}
  string message(int value) const override { return strerror(value); }
};

}  // namespace

const error_category& generic_category() noexcept {
  static const GenericCategory category;
  return category;
}
const error_category& future_category() noexcept {
  static const Category category("future");
  return category;
}
const error_category& system_category() noexcept {
  static const Category category("system");
  return category;
}

string error_code::message() const { return category().message(value()); }
system_error::system_error(error_code code, const char* text)
    : runtime_error(string(text) + ": " + code.message()), __ec_(code) {}
system_error::~system_error() noexcept = default;
void __throw_system_error(int code, const char* text) { throw system_error(error_code(code, system_category()), text); }

_LIBCPP_END_NAMESPACE_STD
