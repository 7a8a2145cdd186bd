// Exceptions that are kept and thrown again: a copy of the object, and what the compiler says of its class.
#include <cstdlib>
#include <cstring>
#include <exception>
#include <utility>

#define WIN32_LEAN_AND_MEAN
#define NOMINMAX
#include <windows.h>

namespace {

// What the compiler writes for each class that is thrown. Places are relative to the module's start.
struct ThrownClass {
  unsigned int properties;
  int type;
  int place[3];
  int size;
  int copy;
};
struct ThrownClasses {
  int count;
  int first;  // the class itself; its bases follow
};
struct ThrowInformation {
  unsigned int attributes;
  int destroy;
  int forward;
  int classes;
};

constexpr unsigned int HasVirtualBases = 4;

// An exception's object, wherever it is.
struct Thrown {
  void* object;
  const ThrowInformation* information;
  char* module;

  template <class T>
  T At(int place) const {
    return place == 0 ? nullptr : reinterpret_cast<T>(module + place);
  }
  const ThrownClass& Class() const {
    return *At<const ThrownClass*>(At<const ThrownClasses*>(information->classes)->first);
  }
  void CopyTo(void* place) const {
    const ThrownClass& type = Class();
    if (type.copy == 0) {
      memcpy(place, object, static_cast<size_t>(type.size));
    } else if ((type.properties & HasVirtualBases) != 0) {
      At<void (*)(void*, void*, int)>(type.copy)(place, object, 1);
    } else {
      At<void (*)(void*, void*)>(type.copy)(place, object);
    }
  }
  void Destroy() const {
    if (const auto destroy = At<void (*)(void*)>(information->destroy)) destroy(object);
  }
};

// What the pointers to one exception share.
struct Kept {
  long uses;
  Thrown thrown;
};

Kept*& KeptBy(std::exception_ptr& pointer) { return reinterpret_cast<Kept*&>(pointer); }
Kept* KeptBy(const std::exception_ptr& pointer) { return reinterpret_cast<Kept* const&>(pointer); }

std::exception_ptr Keep(const Thrown& thrown) {
  const auto kept = static_cast<Kept*>(malloc(sizeof(Kept)));
  void* const object = malloc(static_cast<size_t>(thrown.Class().size));
  thrown.CopyTo(object);
  *kept = {1, {object, thrown.information, thrown.module}};
  std::exception_ptr pointer;
  KeptBy(pointer) = kept;
  return pointer;
}

}  // namespace

extern "C" {
EXCEPTION_RECORD** __cdecl __current_exception();
[[noreturn]] void __stdcall _CxxThrowException(void* object, const ThrowInformation* information);
}

namespace std {

exception_ptr::exception_ptr() noexcept { KeptBy(*this) = nullptr; }
exception_ptr::exception_ptr(nullptr_t) noexcept : exception_ptr() {}
exception_ptr::exception_ptr(const exception_ptr& other) noexcept {
  if ((KeptBy(*this) = KeptBy(other)) != nullptr) InterlockedIncrement(&KeptBy(other)->uses);
}
exception_ptr::~exception_ptr() noexcept {
  Kept* const kept = KeptBy(*this);
  if (kept == nullptr || InterlockedDecrement(&kept->uses) > 0) return;
  kept->thrown.Destroy();
  free(kept->thrown.object);
  free(kept);
}
exception_ptr& exception_ptr::operator=(const exception_ptr& other) noexcept {
  exception_ptr copy(other);
  swap(KeptBy(*this), KeptBy(copy));
  return *this;
}
exception_ptr& exception_ptr::operator=(nullptr_t) noexcept { return *this = exception_ptr(); }
exception_ptr::operator bool() const noexcept { return KeptBy(*this) != nullptr; }
bool operator==(const exception_ptr& left, const exception_ptr& right) noexcept {
  return KeptBy(left) == KeptBy(right);
}

exception_ptr __copy_exception_ptr(void* object, const void* information) {
  void* module = nullptr;
  RtlPcToFileHeader(const_cast<void*>(information), &module);
  return Keep({object, static_cast<const ThrowInformation*>(information), static_cast<char*>(module)});
}

exception_ptr current_exception() noexcept {
  const EXCEPTION_RECORD* const record = *__current_exception();
  if (record == nullptr) return nullptr;
  return Keep({reinterpret_cast<void*>(record->ExceptionInformation[1]),
               reinterpret_cast<const ThrowInformation*>(record->ExceptionInformation[2]),
               reinterpret_cast<char*>(record->ExceptionInformation[3])});
}

// The handler destroys what is thrown, so that is another copy. It stays on this stack until the handler ends.
void rethrow_exception(exception_ptr pointer) {
  const Thrown& thrown = KeptBy(pointer)->thrown;
  void* const copy = __builtin_alloca(static_cast<size_t>(thrown.Class().size));
  thrown.CopyTo(copy);
  _CxxThrowException(copy, thrown.information);
}

}  // namespace std
