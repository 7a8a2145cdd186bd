// Java arrays in place, and new ones.
#pragma once

#include <torvan/java/Local.h>
#include <torvan/java/detail/Fit.h>
#include <torvan/java/detail/InPlace.h>
#include <torvan/java/detail/Pending.h>

#include <cstddef>
#include <initializer_list>
#include <iterator>
#include <vector>

namespace torvan::java {

// Makes a Java array from a vector, by the conversion table: a std::vector<jint> becomes an int[], one of texts a
// String[], one of Local<T> a T[]. Members take vectors as they are; use this to keep the array, or to pass the same
// one to several calls. Throws Misuse for what no Java array or text can be, Error when Java's memory is full, and as
// Thread() does.
template <typename E, typename A>
Local<detail::ArrayOf<E>> NewArray(const std::vector<E, A>& values) {
  JNIEnv* const env = detail::CallEnv();
  detail::Passed made = detail::WriteArray(env, values);
  made.Release();
  return detail::Own<detail::ArrayOf<E>>(env, made.Get());
}

template <typename E>
Local<detail::ArrayOf<E>> NewArray(std::initializer_list<E> values) {
  return NewArray(std::vector<E>(values));
}

// The same with the class of the elements given, for a class of another loader. Throws Error also for an element of
// another class.
template <typename T, typename A>
Local<Array<T>> NewArray(const std::vector<Local<T>, A>& values, const Ref<Class>& type) {
  JNIEnv* const env = detail::CallEnv();
  detail::Passed made = detail::WriteObjects(env, values, detail::RequiredClass(type));
  made.Release();
  return detail::Own<Array<T>>(env, made.Get());
}

// Makes an array of that many zeros, or nulls where E is a tag: `NewArray<jbyte>(8192)`. Throws as above.
template <typename E>
Local<Array<E>> NewArray(std::size_t size) {
  JNIEnv* const env = detail::CallEnv();
  if constexpr (detail::NumberLetter<E>() != 0) {
    using Access = detail::JniArray<detail::NumberLetter<E>()>;
    return detail::Own<Array<E>>(env, detail::NewArrayOf(env, Access::New(env, detail::ArraySize(size))));
  } else {
    return detail::Own<Array<E>>(env, detail::NewObjects(env, size, detail::ClassOf<E>(env)));
  }
}

// The elements of a Java array, used in place. Use it in one thread and within its scope; it keeps the array alive.
//
//   java::Elements<jint> numbers(array);
//   for (jint& number : numbers) number *= 2;
//
// Of numbers, `At`, `data` and iterators are the memory itself. The VM may have copied it: Java is sure to see what was
// written only after the scope has ended, and must not write meanwhile. Elements<const jint> only reads and writes
// nothing back. The end of the VM waits for the end of such a scope as it does for a thread of Java's. A thread that is
// detached within the scope loses what it has written, unless the memory was Java's own.
// Throws Misuse when the array is null and when an index is outside of it, Error when Java's memory is full, and as
// Thread() does.
template <typename E, typename = void>
class Elements : public detail::InPlace<E, detail::Copied> {
 public:
  explicit Elements(const Ref<Array<std::remove_const_t<E>>>& array) : Elements::InPlace(array) {}
};

// The elements of a Java array of objects, read and written one by one. Only the references that the host keeps remain.
// E is a tag, whose elements come as Local<E>, or a type of the conversion table: Elements<std::string> of a String[].
// Throws as above, Error for an object that the array does not take, and Misuse for a null where E has none.
template <typename E>
class Elements<E, std::enable_if_t<detail::IsObjectElement<E>()>> {
 public:
  using Value = detail::ElementValue<E>;

  explicit Elements(const Ref<detail::ArrayOf<Value>>& array)
      : m_size(static_cast<std::size_t>(detail::RequiredArraySize(detail::CallEnv(), array.Get()))), m_array(array) {}
  Elements(const Elements&) = delete;
  Elements& operator=(const Elements&) = delete;

  std::size_t size() const noexcept { return m_size; }

  Value At(std::size_t index) const {
    if (index >= m_size) detail::ThrowOutside(index, m_size);
    return detail::ReadObject<Value>(detail::CallEnv(), m_array.Get(), static_cast<jsize>(index));
  }

  // Takes what a member with an argument of this type takes.
  template <typename U>
  void Set(std::size_t index, const U& given) {
    if constexpr (detail::ArgumentsFit(detail::Types<Value>(), detail::Types<detail::Plain<U>>())) {
      if (index >= m_size) detail::ThrowOutside(index, m_size);
      JNIEnv* const env = detail::CallEnv();
      const auto passed = detail::Pass<Value, detail::Plain<U>>(env, given);
      detail::SetElement(env, m_array.Get(), static_cast<jsize>(index), detail::ValueOf(passed).l);
    }
  }

  // Reads as it goes.
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Value;
    using difference_type = std::ptrdiff_t;
    using pointer = void;
    using reference = Value;

    Iterator(const Elements& elements, std::size_t index) noexcept : m_elements(&elements), m_index(index) {}

    Value operator*() const { return m_elements->At(m_index); }
    Iterator& operator++() noexcept {
      ++m_index;
      return *this;
    }
    friend bool operator==(const Iterator& a, const Iterator& b) noexcept { return a.m_index == b.m_index; }
    friend bool operator!=(const Iterator& a, const Iterator& b) noexcept { return a.m_index != b.m_index; }

   private:
    const Elements* m_elements;
    std::size_t m_index;
  };
  Iterator begin() const noexcept { return {*this, 0}; }
  Iterator end() const noexcept { return {*this, m_size}; }

 private:
  std::size_t m_size;
  Local<detail::ArrayOf<Value>> m_array;
};

// Like Elements of numbers, but in the array's own memory, without a copy on nearly all VMs. Garbage collection may
// have to wait meanwhile, so keep the scope short; JNI forbids every call in it: calls throw Misuse "Java is called
// while CriticalElements are open in this thread". With assertions on, references that are dropped in it and members
// that are passed a Thread are detected, too.
template <typename E>
class CriticalElements : public detail::InPlace<E, detail::Critical> {
 public:
  explicit CriticalElements(const Ref<Array<std::remove_const_t<E>>>& array) : CriticalElements::InPlace(array) {}
};

}  // namespace torvan::java
