#include <torvan/java/ByteBuffer.h>

#include <torvan/java/Cast.h>
#include <torvan/java/Constructor.h>
#include <torvan/java/Elements.h>
#include <torvan/java/Failure.h>
#include <torvan/java/Field.h>
#include <torvan/java/Method.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <cstring>
#include <limits>
#include <map>
#include <mutex>
#include <optional>
#include <string>

#include "java/ClassNames.h"

namespace torvan::java {

namespace {

struct Order {
  static constexpr char JavaName[] = "java/nio/ByteOrder";
};
struct Queue {
  static constexpr char JavaName[] = "java/lang/ref/ReferenceQueue";
};
struct Phantom {
  static constexpr char JavaName[] = "java/lang/ref/PhantomReference";
};
struct Map {
  static constexpr char JavaName[] = "java/util/concurrent/ConcurrentHashMap";
};

constexpr Method<ByteBuffer, Local<ByteBuffer>()> AsReadOnly{"asReadOnlyBuffer"};
constexpr Method<ByteBuffer, bool()> IsReadOnly{"isReadOnly"};
constexpr Method<ByteBuffer, Local<Order>()> GetOrder{"order"};
constexpr Method<ByteBuffer, Local<ByteBuffer>(Ref<Order>)> SetOrder{"order"};
constexpr StaticField<Local<Order>> BigEndian{"java/nio/ByteOrder", "BIG_ENDIAN"};
constexpr StaticField<Local<Order>> LittleEndian{"java/nio/ByteOrder", "LITTLE_ENDIAN"};

constexpr Constructor<Queue()> NewQueue;
constexpr Constructor<Map()> NewMap;
constexpr Constructor<Phantom(Ref<Object>, Ref<Queue>)> NewPhantom;
constexpr Method<Queue, Local<Object>()> Poll{"poll", "()Ljava/lang/ref/Reference;"};
constexpr Method<Map, Local<Object>(Ref<Object>, std::optional<jlong>)> Put{
    "put", "(Ljava/lang/Object;Ljava/lang/Object;)Ljava/lang/Object;"};
constexpr Method<Map, std::optional<jlong>(Ref<Object>)> Find{"get", "(Ljava/lang/Object;)Ljava/lang/Object;"};
constexpr Method<Map, Local<Object>(Ref<Object>)> Remove{"remove"};

using Owner = std::shared_ptr<const void>;

// The owners of the buffers' memory. A reference queue of Java's tells which buffers were collected: each has a phantom
// reference, with the number that it has here. The queue is polled, so that no thread is needed and owners are dropped
// on a thread of the host.
//
// Whatever fails on the way, each owner is dropped in the end: a reference that has left the queue is kept in an array
// of Java's, which needs no memory, and is taken from there the next time.
class Owners {
 public:
  // Never destroyed: buffers may be made and dropped by static destructors.
  static Owners& The() {
    static Owners& owners = *new Owners;
    return owners;
  }

  void Add(const Local<ByteBuffer>& buffer, Owner owner) {
    MakeQueue();
    jlong id = 0;
    {
      const std::lock_guard lock(m_mutex);
      id = ++m_last;
      m_owners.emplace(id, std::move(owner));
    }
    try {
      Put(m_numbers, NewPhantom(buffer, m_queue), id);
    } catch (...) {
      Take(id);
      throw;
    }
  }

  std::size_t DropCollected() {
    {
      const std::lock_guard lock(m_mutex);
      if (m_owners.empty()) return 0;
    }
    std::size_t count = 0;
    const Turn turn(m_isPolling);
    if (!turn.IsMine()) return 0;
    while (const Local<Object> reference = NextCollected()) {
      if (const std::optional<jlong> id = Find(m_numbers, reference)) count += Take(*id) != nullptr ? 1 : 0;
      Remove(m_numbers, reference);
      detail::SetElement(detail::CallEnv(), m_polled.Get(), 0, nullptr);
    }
    return count;
  }

 private:
  // One thread polls at a time. Others do not wait for it, nor does the destructor of an owner that it drops.
  class Turn {
   public:
    explicit Turn(std::atomic<bool>& isTaken) noexcept : m_isTaken(isTaken), m_isMine(!isTaken.exchange(true)) {}
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;
    ~Turn() {
      if (m_isMine) m_isTaken = false;
    }

    bool IsMine() const noexcept { return m_isMine; }

   private:
    std::atomic<bool>& m_isTaken;
    bool m_isMine;
  };

  // Java runs without the lock: its classes may come from a loader that makes buffers itself.
  void MakeQueue() {
    {
      const std::lock_guard lock(m_mutex);
      if (m_queue) return;
    }
    Global<Map> numbers(NewMap());
    Global<Array<Object>> polled(NewArray<Object>(1));
    Global<Queue> queue(NewQueue());
    const std::lock_guard lock(m_mutex);
    if (m_queue) return;
    m_numbers = std::move(numbers);
    m_polled = std::move(polled);
    m_queue = std::move(queue);
  }

  // The reference of a buffer that was collected; null where there is none.
  Local<Object> NextCollected() {
    JNIEnv* const env = detail::CallEnv();
    Local<Object> reference = detail::Own<Object>(env, detail::GetElement(env, m_polled.Get(), 0, true));
    if (reference) return reference;
    reference = Poll(m_queue);
    if (reference) detail::SetElement(env, m_polled.Get(), 0, reference.Get());
    return reference;
  }

  // The owners are returned and so destroyed outside the lock: an owner's destructor may make buffers.
  Owner Take(jlong id) {
    const std::lock_guard lock(m_mutex);
    const auto found = m_owners.find(id);
    if (found == m_owners.end()) return nullptr;
    Owner owner = std::move(found->second);
    m_owners.erase(found);
    return owner;
  }

  std::mutex m_mutex;
  std::map<jlong, Owner> m_owners;
  jlong m_last = 0;
  std::atomic<bool> m_isPolling{false};
  Global<Queue> m_queue;  // these are set once, with the first owner
  Global<Map> m_numbers;
  Global<Array<Object>> m_polled;  // one place
};

Global<ByteBuffer> MakeBuffer(void* memory, std::size_t size, Owner owner, bool isReadOnly) {
  static std::byte none;  // a VM may take null for a failure
  if (memory == nullptr && size == 0) memory = &none;
  if (memory == nullptr) throw Misuse("java/ByteBuffer", __LINE__, "null is given as the memory of a buffer");
  if (size > static_cast<std::size_t>(std::numeric_limits<jint>::max())) {
    throw Misuse("java/ByteBuffer", __LINE__,
                 "a buffer of " + std::to_string(size) + " bytes is longer than a Java buffer can be");
  }
  JNIEnv* const env = detail::CallEnv();
  Owners::The().DropCollected();
  const auto made = detail::Own<ByteBuffer>(env, env->NewDirectByteBuffer(memory, static_cast<jlong>(size)));
  detail::CheckPending(env);
  if (!made) throw Failure("java/ByteBuffer", __LINE__, "This Java VM has no direct buffers");
  Global<ByteBuffer> buffer = isReadOnly ? Global<ByteBuffer>(AsReadOnly(made)) : Global<ByteBuffer>(made);
  if (owner != nullptr) Owners::The().Add(made, std::move(owner));
  return buffer;
}

}  // namespace

ByteOrder NativeByteOrder() noexcept {
  const std::uint16_t one = 1;
  unsigned char first = 0;
  std::memcpy(&first, &one, 1);
  return first == 1 ? ByteOrder::LittleEndian : ByteOrder::BigEndian;
}

ByteBuffer::ByteBuffer(void* memory, std::size_t size, std::shared_ptr<const void> owner)
    : Global(MakeBuffer(memory, size, std::move(owner), false)) {}

ByteBuffer::ByteBuffer(const void* memory, std::size_t size, std::shared_ptr<const void> owner)
    : Global(MakeBuffer(const_cast<void*>(memory), size, std::move(owner), true)) {}

const ByteBuffer& ByteBuffer::Order(ByteOrder order) const {
  SetOrder(*this, order == ByteOrder::BigEndian ? BigEndian.Get() : LittleEndian.Get());
  return *this;
}

std::size_t ByteBuffer::DropCollected() { return Owners::The().DropCollected(); }

namespace detail {

BufferFacts FactsOf(const Ref<ByteBuffer>& buffer, bool isWritten) {
  if (!buffer) throw Misuse("java/ByteBuffer", __LINE__, "null is given for a Java buffer");
  JNIEnv* const env = CallEnv();
  const jlong size = env->GetDirectBufferCapacity(buffer.Get());
  if (size < 0) {
    const LocalScope type(env, env->GetObjectClass(buffer.Get()));
    const std::string name = NameOf(env, static_cast<jclass>(type.Get()));
    throw Misuse("java/ByteBuffer", __LINE__,
                 "a " + name + " is not direct: its bytes are Java's own, and can be copied only");
  }
  if (isWritten && IsReadOnly(buffer)) {
    throw Misuse("java/ByteBuffer", __LINE__, "the buffer is read-only: use ViewOf<const std::byte>");
  }
  const ByteOrder order = Same(GetOrder(buffer), BigEndian.Get()) ? ByteOrder::BigEndian : ByteOrder::LittleEndian;
  return {env->GetDirectBufferAddress(buffer.Get()), static_cast<std::size_t>(size), order};
}

void RequireInside(std::size_t offset, std::size_t count, std::size_t size) {
  if (count <= size && offset <= size - count) return;
  const std::string bytes = count == 1 ? "1 byte" : std::to_string(count) + " bytes";
  const std::string place = std::to_string(offset) + (count == 1 ? " is" : " are");
  throw Misuse("java/ByteBuffer", __LINE__, bytes + " at " + place + " outside a buffer of " + std::to_string(size));
}

void CopyNumber(ByteOrder order, const void* from, void* to, std::size_t size) noexcept {
  std::memcpy(to, from, size);
  auto* const bytes = static_cast<std::byte*>(to);
  if (order != NativeByteOrder()) std::reverse(bytes, bytes + size);
}

}  // namespace detail

}  // namespace torvan::java
