// Java's collections, maps and iterators: walked through, and copied.
#pragma once

#include <torvan/java/Elements.h>
#include <torvan/java/detail/Iteration.h>

#include <cstddef>
#include <iterator>
#include <utility>
#include <vector>

namespace torvan::java {

// Walks through a Java Iterable, Iterator or Map, in one loop:
//
//   for (const std::string& name : java::Each<std::string>(names)) ...
//   for (const auto& [name, age] : java::Each<std::pair<std::string, jint>>(agesByName)) ...
//
// T is a tag, whose objects come as Local<T>, or a type of the conversion table, whose numbers are unboxed; a std::pair
// of these is for a Map, or anything else with map entries. Each object's class is tested. References to earlier
// elements are deleted. Use it in one thread and within its scope. Throws Misuse for a null, for an object of another
// kind or class than T, and for a null element where T has none; Error for what Java throws, such as a
// ConcurrentModificationException; and as a call does.
template <typename T>
class Each {
  static_assert(detail::Item<T>::isGood,
                "torvan::java: no object of Java comes out as this C++ type; use a tag, a type of the conversion table "
                "that can be a result, or for a map a std::pair of these");

 public:
  using Value = typename detail::Item<T>::Value;

  explicit Each(const Ref<Object>& source) : m_source(detail::IteratorOf(source, detail::Item<T>::isEntry)) {}
  Each(const Each&) = delete;
  Each& operator=(const Each&) = delete;

  // Each is a single pass: the value belongs to the range and is replaced by the next one; it may be moved from.
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;
    using value_type = Value;
    using difference_type = std::ptrdiff_t;
    using pointer = Value*;
    using reference = Value&;

    explicit Iterator(Each* range) noexcept : m_range(range) {}

    Value& operator*() const noexcept { return *m_range->m_value; }
    Value* operator->() const noexcept { return &*m_range->m_value; }
    Iterator& operator++() {
      if (!m_range->Advance()) m_range = nullptr;
      return *this;
    }
    friend bool operator==(const Iterator& a, const Iterator& b) noexcept { return a.m_range == b.m_range; }
    friend bool operator!=(const Iterator& a, const Iterator& b) noexcept { return a.m_range != b.m_range; }

   private:
    Each* m_range;
  };
  Iterator begin() { return Iterator(Advance() ? this : nullptr); }
  Iterator end() noexcept { return Iterator(nullptr); }

 private:
  bool Advance() {
    m_value.reset();
    if (!detail::HasNext(m_source)) return false;
    if constexpr (detail::Item<T>::isGood) m_value.emplace(detail::Item<T>::Next(m_source));
    return true;
  }

  Local<detail::JavaIterator> m_source;
  std::optional<Value> m_value;
};

namespace detail {

// What a container is filled with: a map's entry without the const of its key.
template <typename T>
struct Filling {
  using Type = T;
};
template <typename K, typename V>
struct Filling<std::pair<const K, V>> {
  using Type = std::pair<K, V>;
};

}  // namespace detail

// Copies all of a Java collection, map, iterator or array to a container of C++:
// `Copy<std::map<std::string, jint>>(agesByName)`, `Copy<std::vector<std::string>>(list)`, `Copy<std::set<jint>>(set)`.
// Any container with insert() will do. The elements are converted as by Each; those of an Array<E> as by the conversion
// table, all numbers at once. Throws as Each does, and std::bad_alloc.
template <typename C, typename Source>
C Copy(const Source& source) {
  using T = typename detail::Filling<typename C::value_type>::Type;
  C copy;
  if constexpr (detail::IsArrayTag<typename detail::TagOf<Source>::Type>) {
    const Ref<typename detail::Row<std::vector<T>>::Tag> array(source);
    JNIEnv* const env = detail::CallEnv();
    detail::RequiredArraySize(env, array.Get());
    auto values = detail::ReadArray<std::vector<T>>(env, array.Get());
    if constexpr (std::is_same_v<C, std::vector<T>>) {
      copy = std::move(values);
    } else {
      for (auto&& value : values) copy.insert(copy.end(), std::move(value));
    }
  } else {
    for (T& value : Each<T>(source)) copy.insert(copy.end(), std::move(value));
  }
  return copy;
}

}  // namespace torvan::java
