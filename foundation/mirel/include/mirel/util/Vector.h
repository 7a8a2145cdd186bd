// The growable array.
#pragma once

#include <mirel/base/At.h>
#include <mirel/base/Base.h>
#include <mirel/base/IllegalArgumentException.h>
#include <mirel/util/NoSuchElementException.h>
#include <rx/Memory.h>

#include <cstdlib>
#include <cstring>
#include <new>
#include <type_traits>
#include <utility>

namespace mirel::util {

// Holds elements by value in one array.
// The array grows in steps of an increment, so the capacity is always a multiple of it. Elements are moved between
// arrays byte by byte, without constructor or destructor: T must allow that, as handles and texts of this library do.
// Indices, sizes and capacities are 32-bit unsigned. Throws CMemoryException (no message) when memory or these 32 bits
// run out, and then keeps its elements; CNoSuchElementException (no message) for an index that is not below the size.
template <typename T>
class CVector {
 public:
  // Reserves room for `initialCapacity` elements; an increment of 0 means 5.
  CVector(unsigned int initialCapacity, unsigned int increment)
      : m_elements(nullptr), m_size(0), m_capacity(0), m_increment(increment == 0 ? 5 : increment) {
    Reserve(initialCapacity);
  }

  // Copies the elements and the increment of another vector.
  CVector(const CVector& other) : CVector(0, other.m_increment) { CopyElements(other); }

  ~CVector() noexcept(std::is_nothrow_destructible_v<T>) {
    const Array array{m_elements};
    DestroyElements();
  }

  // Replaces the elements by copies of those of another vector, and keeps the increment.
  // When the copy of an element throws, the elements copied before it are held.
  CVector& operator=(const CVector& other) {
    if (this != &other) CopyElements(other);
    return *this;
  }

  unsigned int GetSize() const noexcept { return m_size; }
  unsigned int GetCapacity() const noexcept { return m_capacity; }

  T& operator[](unsigned int index) {
    if (index >= m_size) throw CNoSuchElementException("mirel/util/Vector", base::At(167), nullptr, nullptr);
    return m_elements[index];
  }
  const T& operator[](unsigned int index) const {
    if (index >= m_size) throw CNoSuchElementException("mirel/util/Vector", base::At(175), nullptr, nullptr);
    return m_elements[index];
  }
  // Returns the last element. Throws CNoSuchElementException when there is none.
  T& GetLast() {
    if (m_size == 0) throw CNoSuchElementException("mirel/util/Vector", base::At(634), nullptr, nullptr);
    return m_elements[m_size - 1];
  }

  // Appends a copy of an element, which may be one of this vector.
  void Add(const T& element) {
    const Array outgrown{Grow(m_size + 1)};  // freed after the copy: `element` may be in it
    ::new (static_cast<void*>(m_elements + m_size)) T(element);
    ++m_size;
  }

  // Removes the element at an index and closes the gap.
  void RemoveElementAt(unsigned int index) {
    if (index >= m_size) throw CNoSuchElementException("mirel/util/Vector", __LINE__, nullptr, nullptr);
    T* const element = m_elements + index;
    struct CloseGap {
      CVector& vector;
      T* element;
      ~CloseGap() {
        --vector.m_size;
        const auto after = static_cast<std::size_t>(vector.m_elements + vector.m_size - element);
        std::memmove(static_cast<void*>(element), static_cast<const void*>(element + 1), after * sizeof(T));
      }
    } closeGap{*this, element};
    element->~T();
  }

  // Sorts with the C library's qsort, which is not stable: `compare` gets pointers to two elements.
  // Throws CIllegalArgumentException "Invalid compare function." for null.
  void Sort(int (*compare)(const void*, const void*)) {
    if (compare == nullptr) {
      throw base::CIllegalArgumentException("mirel/util/Vector", base::At(900), "Invalid compare function.", nullptr);
    }
    if (m_size != 0) std::qsort(static_cast<void*>(m_elements), m_size, sizeof(T), compare);
  }

  // Frees room that is not needed, down to the next multiple of the increment and at least one increment.
  void TrimToSize() {
    const unsigned int needed = RoundUp(m_size);
    const unsigned int capacity = needed > m_increment ? needed : m_increment;
    if (capacity >= m_capacity) return;
    RX_free(MoveElements(Allocate(capacity, base::At(967)), capacity));
  }

 private:
  // Frees an array, without its elements, at the end of a scope.
  struct Array {
    T* elements;
    ~Array() { RX_free(elements); }
  };

  // The next multiple of the increment; 32-bit arithmetic throughout, as published.
  unsigned int RoundUp(unsigned int count) const noexcept { return count + (m_increment - 1) * count % m_increment; }

  static T* Allocate(unsigned int capacity, base::At line) {
    T* elements = static_cast<T*>(RX_malloc(static_cast<std::size_t>(capacity) * sizeof(T)));
    if (elements == nullptr) base::CBase::_ThrowMemoryException("mirel/util/Vector", line);
    return elements;
  }

  // Moves the elements byte by byte to another array and returns the one they came from.
  T* MoveElements(T* elements, unsigned int capacity) noexcept {
    T* const left = m_elements;
    if (m_size != 0) std::memcpy(static_cast<void*>(elements), static_cast<const void*>(left), m_size * sizeof(T));
    m_elements = elements;
    m_capacity = capacity;
    return left;
  }

  // Makes room for `count` elements, one more than there are.
  // Returns the array that was outgrown, which the caller frees, or null.
  T* Grow(unsigned int count) {
    const unsigned int capacity = RoundUp(count);
    // A capacity that has wrapped around would be taken for room enough.
    if (capacity <= m_size) base::CBase::_ThrowMemoryException("mirel/util/Vector", base::At(843));
    if (m_capacity >= capacity) return nullptr;
    return MoveElements(Allocate(capacity, base::At(843)), capacity);
  }

  // Destroys the elements and makes room for `count` others; when memory runs out the elements stay.
  void Reserve(unsigned int count) {
    const unsigned int capacity = RoundUp(count);
    if (m_capacity >= capacity) return DestroyElements();
    Array array{Allocate(capacity, base::At(925))};
    DestroyElements();
    std::swap(m_elements, array.elements);
    m_capacity = capacity;
  }

  // Destroys the elements in index order. As in an array of the language itself, one that throws does not keep those
  // after it from being destroyed.
  void DestroyElements() {
    struct Elements {
      T* first;
      T* end;
      void Destroy() {
        while (first != end) (first++)->~T();
      }
      ~Elements() noexcept(std::is_nothrow_destructible_v<T>) { Destroy(); }
    } elements{m_elements, m_elements + m_size};
    m_size = 0;
    elements.Destroy();
  }

  // Replaces the elements by copies of another vector's.
  void CopyElements(const CVector& other) {
    // A capacity that has wrapped around would be taken for room enough: increments differ from vector to vector.
    if (RoundUp(other.m_size) < other.m_size) base::CBase::_ThrowMemoryException("mirel/util/Vector", base::At(925));
    Reserve(other.m_size);
    for (; m_size < other.m_size; ++m_size) {
      ::new (static_cast<void*>(m_elements + m_size)) T(other.m_elements[m_size]);
    }
  }

  T* m_elements;
  unsigned int m_size;
  unsigned int m_capacity;
  unsigned int m_increment;
};

}  // namespace mirel::util
