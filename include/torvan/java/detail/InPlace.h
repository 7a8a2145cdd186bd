// The elements of an array of numbers in memory: one algorithm for both of JNI's ways.
#pragma once

#include <torvan/java/Local.h>
#include <torvan/java/detail/ArrayRow.h>
#include <torvan/java/detail/Pending.h>

#include <cstddef>
#include <type_traits>

namespace torvan::java::detail {

// Throws Misuse "null is given for a Java array".
jsize RequiredArraySize(JNIEnv* env, jobject array);
// Throws Misuse "null is given as the class of an array's elements".
jclass RequiredClass(const Ref<Class>& type);

// Throws Misuse "index 5 is outside an array of 3".
[[noreturn]] void ThrowOutside(std::size_t index, std::size_t size);
// Throws what is pending, else std::bad_alloc.
[[noreturn]] void ThrowOutOfMemory(JNIEnv* env);

// The ways: a copy, or the memory itself.
template <typename E>
struct Copied : JniArray<NumberLetter<E>()> {
  static void Enter() noexcept {}
  static void Leave() noexcept {}
};
template <typename E>
struct Critical {
  using Type = typename Jni<NumberLetter<E>()>::Type;
  static Type* Open(JNIEnv* env, jobject array) {
    return static_cast<Type*>(env->GetPrimitiveArrayCritical(static_cast<jarray>(array), nullptr));
  }
  static void Close(JNIEnv* env, jobject array, Type* elements, jint mode) {
    env->ReleasePrimitiveArrayCritical(static_cast<jarray>(array), elements, mode);
  }
  static void Enter() noexcept { EnterCritical(); }
  static void Leave() noexcept { LeaveCritical(); }
};

template <typename E, template <typename> class WayOf>
class InPlace {
  using Way = WayOf<std::remove_const_t<E>>;
  using Number = std::remove_const_t<E>;
  static constexpr bool isNumber = IsJniMemory<Number>() || std::is_same_v<Number, jboolean>;
  static_assert(isNumber,
                "torvan::java: the elements of an array are used in place as what they are in Java: jint, jdouble, "
                "std::byte, jboolean for a boolean[]");

 public:
  InPlace(const InPlace&) = delete;
  InPlace& operator=(const InPlace&) = delete;
  // It belongs to a scope of one thread.
  static void* operator new(std::size_t) = delete;
  static void* operator new[](std::size_t) = delete;

  std::size_t size() const noexcept { return m_size; }
  E* data() const& noexcept { return m_elements; }
  template <typename U = E>
  U* data() const&& {
    static_assert(sizeof(U) == 0,
                  "torvan::java: these elements are given back at the end of the line; name them first");
    return nullptr;
  }
  E* begin() const noexcept { return m_elements; }
  E* end() const noexcept { return m_elements + m_size; }
  E& At(std::size_t index) const {
    if (index >= m_size) ThrowOutside(index, m_size);
    return m_elements[index];
  }

 protected:
  explicit InPlace(const Ref<Array<Number>>& array)
      : m_env(CallEnv()),
        m_attachment(m_env),
        m_size(static_cast<std::size_t>(RequiredArraySize(m_env, array.Get()))),
        m_array(array) {
    if constexpr (isNumber) {
      m_elements = reinterpret_cast<E*>(Way::Open(m_env, m_array.Get()));
      if (m_elements == nullptr) ThrowOutOfMemory(m_env);
      Way::Enter();
    }
  }
  ~InPlace() {
    if constexpr (isNumber) {
      using Raw = typename Jni<NumberLetter<Number>()>::Type;
      Way::Leave();
      // A thread that has left the VM has no use of the array any more.
      if (!m_attachment.IsStillHere() || OpenMemory::Env() != m_env) return;
      auto* const raw = reinterpret_cast<Raw*>(const_cast<Number*>(m_elements));
      Way::Close(m_env, m_array.Get(), raw, std::is_const_v<E> ? JNI_ABORT : 0);
    }
  }

 private:
  OpenMemory m_open;
  JNIEnv* m_env;
  Attachment m_attachment;
  std::size_t m_size;
  Local<Array<Number>> m_array;
  E* m_elements = nullptr;
};

// What E is as an element of an array of objects: a tag comes as a Local.
template <typename E, typename = void>
struct ElementValueOf {
  using Type = E;
};
template <typename E>
struct ElementValueOf<E, std::void_t<decltype(E::JavaName)>> {
  using Type = Local<E>;
};
template <typename E>
using ElementValue = typename ElementValueOf<E>::Type;

template <typename E>
constexpr bool IsObjectElement() {
  return Row<ElementValue<E>>::Letter == 'L';
}

}  // namespace torvan::java::detail
