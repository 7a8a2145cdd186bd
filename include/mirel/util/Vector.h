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

namespace mirel::util {

// Holds elements by value in one array.
// The array grows in steps of an increment, so the capacity is always a multiple of it. Elements are moved between
// arrays byte by byte, without constructor or destructor: T must allow that, as handles and texts of this library do.
// Indices, sizes and capacities are 32-bit unsigned. Throws CMemoryException (no message) when memory runs out, and the
// vector then keeps its elements; CNoSuchElementException (no message) for an index that is not below the size.
template <typename T>
class CVector {
 public:
  // Reserves room for `initialCapacity` elements; an increment of 0 means 5.
  CVector(unsigned int initialCapacity, unsigned int increment)
      : m_elements(nullptr), m_size(0), m_capacity(0), m_increment(increment == 0 ? 5 : increment) {
    Reserve(initialCapacity);
  }

  // Copies the elements and the increment of another vector.
  CVector(const CVector& other) : CVector(other.m_size, other.m_increment) { CopyElements(other); }

  ~CVector() noexcept(std::is_nothrow_destructible_v<T>) {
    struct FreeArray {
      CVector& vector;
      ~FreeArray() {
        RX_free(vector.m_elements);
        vector.m_capacity = 0;
      }
    } freeArray{*this};
    DestroyElements();
  }

  // Copies the elements of another vector in place of its own and keeps its increment.
  // When the copy of an element throws, the elements copied before it are held.
  CVector& operator=(const CVector& other) {
    if (this == &other) return *this;
    Reserve(other.m_size);
    DestroyElements();
    CopyElements(other);
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
  // Gives the last element. Throws CNoSuchElementException when there is none.
  T& GetLast() {
    if (m_size == 0) throw CNoSuchElementException("mirel/util/Vector", base::At(634), nullptr, nullptr);
    return m_elements[m_size - 1];
  }

  // Appends a copy of an element, which may be one of this vector.
  void Add(const T& element) {
    // Growth frees the old array only after the element is copied: it may stand in that array.
    OldArray old(*this, m_size + 1);
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
        const auto behind = static_cast<std::size_t>(vector.m_elements + vector.m_size - element);
        std::memmove(static_cast<void*>(element), static_cast<const void*>(element + 1), behind * sizeof(T));
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

  // Gives back room that is not needed, down to the next multiple of the increment and at least one increment.
  void TrimToSize() {
    const unsigned int needed = RoundUp(m_size);
    const unsigned int capacity = needed > m_increment ? needed : m_increment;
    if (capacity >= m_capacity) return;
    T* elements = Allocate(capacity, base::At(967));
    MoveElements(elements);
    RX_free(m_elements);
    m_elements = elements;
    m_capacity = capacity;
  }

 private:
  // Grows the vector and keeps the array it grew out of until the growth is complete.
  class OldArray {
   public:
    OldArray(CVector& vector, unsigned int needed) : m_array(nullptr) {
      const unsigned int capacity = vector.RoundUp(needed);
      if (capacity < needed) base::CBase::_ThrowMemoryException("mirel/util/Vector", base::At(843));
      if (vector.m_capacity >= capacity) return;
      T* elements = Allocate(capacity, base::At(843));
      vector.MoveElements(elements);
      m_array = vector.m_elements;
      vector.m_elements = elements;
      vector.m_capacity = capacity;
    }
    ~OldArray() { RX_free(m_array); }
    OldArray(const OldArray&) = delete;
    OldArray& operator=(const OldArray&) = delete;

   private:
    T* m_array;
  };

  // The next multiple of the increment; 32-bit arithmetic throughout, as published.
  unsigned int RoundUp(unsigned int count) const noexcept { return count + (m_increment - 1) * count % m_increment; }

  static T* Allocate(unsigned int capacity, base::At line) {
    T* elements = static_cast<T*>(RX_malloc(static_cast<std::size_t>(capacity) * sizeof(T)));
    if (elements == nullptr) base::CBase::_ThrowMemoryException("mirel/util/Vector", line);
    return elements;
  }

  void MoveElements(T* elements) noexcept {
    if (m_size == 0) return;
    std::memcpy(static_cast<void*>(elements), static_cast<const void*>(m_elements), m_size * sizeof(T));
  }

  // Makes room for `count` elements without keeping what an array too small holds: the caller replaces it.
  void Reserve(unsigned int count) {
    const unsigned int capacity = RoundUp(count);
    if (m_capacity >= capacity) return;
    T* elements = Allocate(capacity, base::At(925));
    struct FreeArray {
      T* array;
      ~FreeArray() { RX_free(array); }
    } freeArray{m_elements};
    DestroyElements();
    m_elements = elements;
    m_capacity = capacity;
  }

  void DestroyElements() {
    const unsigned int size = m_size;
    m_size = 0;
    for (unsigned int i = 0; i < size; ++i) m_elements[i].~T();
  }

  void CopyElements(const CVector& other) {
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
