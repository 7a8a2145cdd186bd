// Memory that C++ and Java share.
#pragma once

#include <torvan/java/Global.h>

#include <cstddef>
#include <memory>
#include <type_traits>

namespace torvan::java {

// The order in which numbers are read from bytes. A buffer is big-endian until its order is set, on every machine.
enum class ByteOrder { BigEndian, LittleEndian };

// The order of this machine, in which C++ writes its numbers.
ByteOrder NativeByteOrder() noexcept;

// A java.nio.ByteBuffer over memory of the host: both use the same bytes, and none is copied. It is a Global reference
// to the buffer, can be passed where a Ref to one is expected, and is the tag, too: Ref<ByteBuffer> takes any buffer.
//
//   auto image = std::make_shared<std::vector<std::byte>>(1 << 20);
//   Draw(canvas, java::ByteBuffer(image->data(), image->size(), image));
//
// The owner is kept as long as Java has the buffer or another one that it made of it. After Java has collected them,
// the next thread that makes a ByteBuffer or calls DropCollected() drops the owner; after the end of the VM it is never
// dropped. Without an owner the host must keep the memory until Java has collected the buffer, which a Weak<ByteBuffer>
// tells. Memory of size 0 may be null, as that of an empty vector. Making one throws Misuse for other null memory and
// for more than a Java buffer can hold (2,147,483,647 bytes), Failure where the VM has no direct buffers, Error when
// Java's memory is full, std::bad_alloc, and as Thread() does. The owner is dropped then.
class ByteBuffer : public Global<ByteBuffer> {
 public:
  static constexpr char JavaName[] = "java/nio/ByteBuffer";

  ByteBuffer(void* memory, std::size_t size, std::shared_ptr<const void> owner = nullptr);
  // Over const memory the buffer is read-only: Java code that writes to it gets a ReadOnlyBufferException.
  ByteBuffer(const void* memory, std::size_t size, std::shared_ptr<const void> owner = nullptr);

  // Sets the order of numbers that Java reads and writes; big-endian if not called.
  // Throws Error and as Thread() does.
  const ByteBuffer& Order(ByteOrder order) const;

  // Drops the owners of buffers that Java has collected, and returns how many. While another thread is doing so,
  // returns 0 at once. Throws Error and as Thread() does; the remaining owners are dropped the next time.
  static std::size_t DropCollected();
};

namespace detail {

template <>
struct TagOf<ByteBuffer> {
  using Type = ByteBuffer;
};

struct BufferFacts {
  void* memory;
  std::size_t size;
  ByteOrder order;
};
// Throws Misuse when the buffer is null, not direct, or read-only and to be written.
BufferFacts FactsOf(const Ref<ByteBuffer>& buffer, bool isWritten);
// Throws Misuse "8 bytes at 5 are outside a buffer of 10".
void RequireInside(std::size_t offset, std::size_t count, std::size_t size);
// Copies a number between this machine's order and the other.
void CopyNumber(ByteOrder order, const void* from, void* to, std::size_t size) noexcept;

}  // namespace detail

// The bytes of a direct buffer of Java's, without a copy: all of them, whatever its position and limit. It keeps the
// buffer alive and may be used on any thread; the host has to synchronise with what Java does to the bytes. E is
// std::byte, or const std::byte for a view that only reads.
template <typename E = std::byte>
class BufferView {
  static_assert(std::is_same_v<std::remove_const_t<E>, std::byte>, "torvan::java: a view of a buffer is one of bytes");

 public:
  // Throws as ViewOf.
  explicit BufferView(const Ref<ByteBuffer>& buffer)
      : m_facts(detail::FactsOf(buffer, !std::is_const_v<E>)), m_buffer(buffer) {}

  std::size_t size() const noexcept { return m_facts.size; }
  E* data() const noexcept { return static_cast<E*>(m_facts.memory); }
  E* begin() const noexcept { return data(); }
  E* end() const noexcept { return data() + size(); }

  // Throws Misuse "1 byte at 10 is outside a buffer of 10".
  E& At(std::size_t index) const {
    detail::RequireInside(index, 1, size());
    return data()[index];
  }

  // The order that the buffer had when the view was made.
  ByteOrder Order() const noexcept { return m_facts.order; }

  // A number of that order at any byte, as Java's getInt(offset) and putInt(offset, number) do. Throw as At.
  template <typename T>
  T Get(std::size_t offset) const {
    T number;
    detail::CopyNumber(Order(), Number<T>(offset), &number, sizeof(T));
    return number;
  }
  template <typename T>
  void Put(std::size_t offset, T number) const {
    static_assert(!std::is_const_v<E>, "torvan::java: this view only reads");
    detail::CopyNumber(Order(), &number, Number<T>(offset), sizeof(T));
  }

 private:
  template <typename T>
  void* Number(std::size_t offset) const {
    static_assert(std::is_arithmetic_v<T> && !std::is_same_v<T, bool> && sizeof(T) <= 8,
                  "torvan::java: a buffer has numbers of up to 8 bytes");
    detail::RequireInside(offset, sizeof(T), size());
    return static_cast<std::byte*>(m_facts.memory) + offset;
  }

  detail::BufferFacts m_facts;
  Global<ByteBuffer> m_buffer;
};

// Returns a view of a direct buffer; a ViewOf<const std::byte> only reads.
// Throws Misuse for a null, for a buffer that is not direct ("... its bytes are Java's own ...") and for a read-only
// one unless the view only reads; and as Thread() does.
template <typename E = std::byte>
BufferView<E> ViewOf(const Ref<ByteBuffer>& buffer) {
  return BufferView<E>(buffer);
}

}  // namespace torvan::java
