#include <cstring>
#include <typeinfo>

// The system keeps the readable names that it has made in a list, which is aligned to 16 bytes.
struct alignas(16) NameList {
  void* links[2];
};

extern "C" {
int __cdecl __std_type_info_compare(const void* left, const void* right);
size_t __cdecl __std_type_info_hash(const void* data);
const char* __cdecl __std_type_info_name(void* data, NameList* names);
}

namespace std {

int type_info::__compare(const type_info& other) const noexcept {
  return this == &other ? 0 : __std_type_info_compare(&__data, &other.__data);
}

const char* type_info::name() const noexcept {
  static NameList names{};
  return __std_type_info_name(&__data, &names);
}

size_t type_info::hash_code() const noexcept { return __std_type_info_hash(&__data); }

}  // namespace std
