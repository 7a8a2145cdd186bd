// The counted reference.
#pragma once

#include <mirel/base/At.h>
#include <mirel/base/Base.h>
#include <mirel/base/Null.h>
#include <mirel/base/NullReferenceException.h>
#include <mirel/base/RefCountedPtr.h>
#include <rx/Memory.h>

#include <new>
#include <type_traits>

namespace mirel::base {

// Refers to a shared object, or to nothing; the last reference to go deletes the object.
// T is a class derived from CBase, or one with a virtual destructor. The count is not atomic: references to one object
// must not be copied, assigned or dropped by two threads at once. Using an empty reference throws
// CNullReferenceException (no message); making a reference from a pointer throws CMemoryException (no message) when
// memory runs out, and the object passed is deleted then.
template <typename T>
class CRef : public CBase {
 public:
  CRef() noexcept : m_block(nullptr), m_object(nullptr) {}

  // Takes ownership of an object; null makes an empty reference.
  CRef(T* object) : m_block(MakeBlock(object, At(185))), m_object(object) {}

  CRef(const CRef& other) noexcept : m_block(other.m_block), m_object(other.m_object) { AddReference(); }

  // An object whose destructor throws lets the exception pass here; its memory and the block are free by then.
  ~CRef() noexcept(false) { Release(); }

  // Drops what it refers to and shares what the other refers to.
  // The other must not live in the object that is dropped: copy `node->next` before assigning it to `node`.
  CRef& operator=(const CRef& other) {
    if (this == &other) return *this;
    // Intentional: the old use is ended before the new one is counted, so an object that is deleted here still
    // sees itself in this reference. What its destructor throws passes once the reference is the other's copy.
    struct Share {
      CRef& self;
      const CRef& other;
      ~Share() {
        self.m_block = other.m_block;
        self.m_object = other.m_object;
        self.AddReference();
      }
    } share{*this, other};
    Release();
    return *this;
  }

  // Drops what it refers to and takes ownership of an object; null makes it empty.
  // When memory runs out the object passed is deleted and the reference stays as it was.
  CRef& operator=(T* object) {
    // Also here the old use is ended first. A block has one reference when it is made, and that is this one.
    struct Adopt {
      CRef& self;
      CRefCountedPtr<T>* block;
      T* object;
      ~Adopt() {
        self.m_block = block;
        self.m_object = object;
      }
    } adopt{*this, MakeBlock(object, At(279)), object};
    Release();
    return *this;
  }

  T* operator->() const {
    if (m_object == nullptr) throw CNullReferenceException("mirel/base/Ref", At(423), nullptr, nullptr);
    return m_object;
  }

  T& operator*() const {
    if (m_object == nullptr) throw CNullReferenceException("mirel/base/Ref", At(437), nullptr, nullptr);
    return *m_object;
  }

  bool operator==(const CNull&) const noexcept { return m_object == nullptr; }
  bool operator!=(const CNull&) const noexcept { return m_object != nullptr; }

 private:
  static CRefCountedPtr<T>* MakeBlock(T* object, At line) {
    if (object == nullptr) return nullptr;
    void* place = RX_malloc(sizeof(CRefCountedPtr<T>));
    if (place == nullptr) {
      Delete(object);
      CBase::_ThrowMemoryException("mirel/base/Ref", line);
    }
    return ::new (place) CRefCountedPtr<T>(object, true);
  }

  void AddReference() noexcept {
    if (m_block != nullptr) m_block->AddReference();
  }

  void Release() {
    if (m_block == nullptr || !m_block->RemoveReference()) return;
    const Memory block{m_block};
    if (m_block->IsOwning()) Delete(m_object);
  }

  // A virtual destructor brings the `delete` of the object's own class along. An object without one is a T and nothing
  // more, and its memory is the root allocator's.
  static void Delete(T* object) {
    if constexpr (std::has_virtual_destructor_v<T>) {
      delete object;
    } else {
      static_assert(std::is_base_of_v<CBase, T>, "a class without a virtual destructor must be derived from CBase");
      const Memory memory{object};
      object->T::~T();
    }
  }

  // Freed at the end of the scope, also when a destructor throws.
  struct Memory {
    void* block;
    ~Memory() { RX_free(block); }
  };

  CRefCountedPtr<T>* m_block;
  T* m_object;
};

}  // namespace mirel::base
