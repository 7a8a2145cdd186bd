// Memory that C++ and Java share.
#include <algorithm>
#include <cstring>
#include <limits>
#include <thread>

#include "java/realvm/NothingLeft.h"

namespace tests {
namespace {

using java::BufferView;
using java::ByteBuffer;
using java::ByteOrder;
using java::Error;
using java::Local;
using java::Misuse;
using java::Ref;
using java::StaticMethod;
using java::ViewOf;

// The host's own tags work, too.
struct Buffer {
  static constexpr char JavaName[] = "java/nio/ByteBuffer";
};

constexpr const char* const Buffers = "fixture/Buffers";
constexpr StaticMethod<jint(Ref<ByteBuffer>)> Sum{Buffers, "sum"};
constexpr StaticMethod<void(Ref<Buffer>, jbyte)> Fill{Buffers, "fill"};
constexpr StaticMethod<jint(Ref<ByteBuffer>, jint)> GetInt{Buffers, "getInt"};
constexpr StaticMethod<void(Ref<ByteBuffer>, jint, double)> PutDouble{Buffers, "putDouble"};
constexpr StaticMethod<Local<ByteBuffer>(jint, bool)> Direct{Buffers, "direct"};
constexpr StaticMethod<Local<ByteBuffer>(jint)> Passing{Buffers, "passing"};
constexpr StaticMethod<Local<ByteBuffer>(jint)> Heap{Buffers, "heap"};
constexpr StaticMethod<Local<ByteBuffer>(Ref<ByteBuffer>, jint)> Slice{Buffers, "slice"};
constexpr StaticMethod<void(Ref<ByteBuffer>)> Keep{Buffers, "keep"};
constexpr StaticMethod<Local<ByteBuffer>()> Kept{Buffers, "kept"};

void CollectGarbage() { java::CallStatic<void>("java/lang/System", "gc"); }

class ByteBufferTest : public NothingLeftTest {};

TEST_F(ByteBufferTest, IsTheHostsOwnMemory) {
  std::vector<unsigned char> memory(1000, 1);
  const ByteBuffer buffer(memory.data(), memory.size());
  EXPECT_EQ(java::detail::Env()->GetDirectBufferAddress(buffer.Get()), memory.data());
  EXPECT_EQ(Sum(buffer), 1000);
  memory[999] = 5;
  EXPECT_EQ(Sum(buffer), 1004);
  Fill(buffer, jbyte{7});
  EXPECT_EQ(memory[0], 7);
  EXPECT_EQ(memory[999], 7);
  EXPECT_EQ(java::Call<jint>(buffer, "capacity"), 1000);
  EXPECT_EQ(java::CallStatic<jint>(Buffers, "sum", buffer), 7000);
  const Local<ByteBuffer> same(buffer);
  EXPECT_TRUE(java::Same(buffer, same));
}

TEST_F(ByteBufferTest, AViewIsTheBuffersOwnMemory) {
  const Local<ByteBuffer> buffer = Direct(256, false);
  const BufferView view = ViewOf(buffer);
  EXPECT_EQ(view.data(), java::detail::Env()->GetDirectBufferAddress(buffer.Get()));
  EXPECT_EQ(view.size(), 256u);
  EXPECT_EQ(view.At(255), std::byte{255});
  for (std::byte& each : view) each = std::byte{1};
  EXPECT_EQ(Sum(buffer), 256);
  const BufferView<std::byte> part = ViewOf(Slice(buffer, 100));
  EXPECT_EQ(part.data(), view.data() + 100);
  EXPECT_EQ(part.size(), 156u);
}

TEST_F(ByteBufferTest, MemoryGoesToJavaAndBackWithoutACopy) {
  std::vector<unsigned char> memory(16);
  Keep(ByteBuffer(memory.data(), memory.size()));
  EXPECT_EQ(ViewOf(Kept()).data(), reinterpret_cast<std::byte*>(memory.data()));
  Keep(nullptr);
}

TEST_F(ByteBufferTest, AnEmptyVectorIsAnEmptyBuffer) {
  const std::vector<std::byte> readOnly;
  std::vector<std::byte> empty;
  ASSERT_EQ(empty.data(), nullptr);
  auto owner = std::make_shared<int>(5);
  for (const ByteBuffer& buffer :
       {ByteBuffer(empty.data(), 0), ByteBuffer(readOnly.data(), 0), ByteBuffer(empty.data(), 0, owner)}) {
    EXPECT_EQ(java::Call<jint>(buffer, "capacity"), 0);
    EXPECT_EQ(Sum(buffer), 0);
    const auto view = ViewOf<const std::byte>(buffer);
    EXPECT_EQ(view.size(), 0u);
    EXPECT_EQ(view.begin(), view.end());
    EXPECT_EQ(WhatOf<Misuse>([&] { view.At(0); }), "1 byte at 0 is outside a buffer of 0");
  }
  EXPECT_EQ(owner.use_count(), 2) << "Java has the third buffer";
}

TEST_F(ByteBufferTest, AViewKeepsTheBuffer) {
  java::Weak<ByteBuffer> weak;
  {
    const BufferView view = ViewOf([&] {
      Local<ByteBuffer> buffer = Passing(1 << 20);
      weak = java::Weak<ByteBuffer>(buffer);
      return buffer;
    }());
    CollectGarbage();
    EXPECT_TRUE(weak.Lock());
  }
  for (int i = 0; i < 20 && weak.Lock(); ++i) CollectGarbage();
  EXPECT_FALSE(weak.Lock());
}

TEST_F(ByteBufferTest, AViewMayBeUsedElsewhere) {
  const BufferView view = ViewOf(Direct(100, false));
  std::thread([view] { view.At(5) = std::byte{77}; }).join();
  EXPECT_EQ(view.At(5), std::byte{77});
}

TEST_F(ByteBufferTest, NumbersHaveTheOrderThatIsSaid) {
  std::int32_t numbers[2] = {0x01020304, 5};
  const ByteBuffer buffer(numbers, sizeof numbers);
  const bool isLittle = java::NativeByteOrder() == ByteOrder::LittleEndian;
  EXPECT_EQ(java::CallStatic<std::string>(Buffers, "order", buffer), "BIG_ENDIAN");
  EXPECT_EQ(GetInt(buffer, 0), isLittle ? 0x04030201 : 0x01020304);
  buffer.Order(java::NativeByteOrder());
  EXPECT_EQ(GetInt(buffer, 0), 0x01020304);
  EXPECT_EQ(GetInt(buffer.Order(ByteOrder::BigEndian), 4), isLittle ? 0x05000000 : 5);
  EXPECT_EQ(GetInt(buffer.Order(ByteOrder::LittleEndian), 4), isLittle ? 5 : 0x05000000);
}

TEST_F(ByteBufferTest, AViewReadsAndWritesInTheBuffersOrder) {
  for (const bool little : {false, true}) {
    const Local<ByteBuffer> buffer = Direct(32, little);
    const BufferView view = ViewOf(buffer);
    EXPECT_EQ(view.Order(), little ? ByteOrder::LittleEndian : ByteOrder::BigEndian);
    EXPECT_EQ(view.Get<std::int32_t>(1), little ? 0x04030201 : 0x01020304);
    EXPECT_EQ(view.Get<std::int32_t>(1), GetInt(buffer, 1));
    EXPECT_EQ(view.Get<std::uint16_t>(30), little ? 0x1F1E : 0x1E1F);
    view.Put(3, -123456789);
    EXPECT_EQ(GetInt(buffer, 3), -123456789);
    PutDouble(buffer, 17, 0.1);
    EXPECT_EQ(view.Get<double>(17), 0.1);
  }
}

TEST_F(ByteBufferTest, OutsideOfItIsRefused) {
  const BufferView view = ViewOf(Direct(10, false));
  EXPECT_EQ(WhatOf<Misuse>([&] { view.At(10); }), "1 byte at 10 is outside a buffer of 10");
  EXPECT_EQ(WhatOf<Misuse>([&] { view.Get<jlong>(3); }), "8 bytes at 3 are outside a buffer of 10");
  EXPECT_EQ(WhatOf<Misuse>([&] { view.Put(std::size_t(-1), 5); }),
            "4 bytes at 18446744073709551615 are outside a buffer of 10");
  view.Put(6, 5);
  EXPECT_EQ(ViewOf(Direct(0, false)).size(), 0u);
}

TEST_F(ByteBufferTest, ConstMemoryIsReadOnlyInJava) {
  static const char text[] = "constant";
  const ByteBuffer buffer(text, sizeof text - 1);
  EXPECT_GT(Sum(buffer), 0);
  EXPECT_EQ(WhatOf<Error>([&] { Fill(buffer, jbyte{1}); }), "java.nio.ReadOnlyBufferException");
  EXPECT_EQ(WhatOf<Misuse>([&] { ViewOf(buffer); }), "the buffer is read-only: use ViewOf<const std::byte>");
  EXPECT_EQ(static_cast<const void*>(ViewOf<const std::byte>(buffer).data()), text);
}

TEST_F(ByteBufferTest, WhatIsNoDirectBufferIsRefused) {
  EXPECT_EQ(WhatOf<Misuse>([] { ViewOf(Heap(5)); }),
            "a java.nio.HeapByteBuffer is not direct: its bytes are Java's own, and can be copied only");
  EXPECT_EQ(WhatOf<Misuse>([] { ViewOf(nullptr); }), "null is given for a Java buffer");
  const Local<java::Object> text(java::NewString("x"));
  EXPECT_EQ(WhatOf<Misuse>([&] { ViewOf(text.Get()); }),
            "A java.lang.String is given where a java.nio.ByteBuffer is needed");
  char byte = 0;
  EXPECT_EQ(WhatOf<Misuse>([&] { ByteBuffer(&byte, std::size_t{1} << 31); }),
            "a buffer of 2147483648 bytes is longer than a Java buffer can be");
  EXPECT_EQ(WhatOf<Misuse>([] { ByteBuffer(static_cast<void*>(nullptr), 1); }),
            "null is given as the memory of a buffer");
}

// Collects until a buffer's owner is dropped, or for a while.
void DropUntilGone(const std::weak_ptr<int>& owner) {
  for (int i = 0; i < 50 && !owner.expired(); ++i) {
    CollectGarbage();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ByteBuffer::DropCollected();
  }
}

TEST_F(ByteBufferTest, TheOwnerLivesAsLongAsTheBufferInJava) {
  auto owner = std::make_shared<int>(0x01010101);
  const std::weak_ptr<int> weak = owner;
  Keep(ByteBuffer(owner.get(), sizeof(int), owner));
  owner.reset();
  CollectGarbage();
  ByteBuffer::DropCollected();
  ASSERT_FALSE(weak.expired());  // Java has a duplicate of it
  EXPECT_EQ(Sum(Kept()), 4);
  Keep(nullptr);
  DropUntilGone(weak);
  EXPECT_TRUE(weak.expired());
}

TEST_F(ByteBufferTest, TheOwnerOfConstMemoryLivesLikewise) {
  auto owner = std::make_shared<int>(0x01010101);
  const std::weak_ptr<int> weak = owner;
  Keep(ByteBuffer(static_cast<const int*>(owner.get()), sizeof(int), owner));
  owner.reset();
  CollectGarbage();
  ByteBuffer::DropCollected();
  ASSERT_FALSE(weak.expired());
  EXPECT_EQ(Sum(Kept()), 4);
  Keep(nullptr);
  DropUntilGone(weak);
  EXPECT_TRUE(weak.expired());
}

// Wherever Java fails while a collected buffer's owner is looked up, it is dropped the next time.
TEST_F(ByteBufferTest, AnOwnerIsDroppedAlsoAfterThatHasFailed) {
  JNIEnv* const env = java::detail::Env();
  int failures = 0;
  for (bool isOver = false; !isOver && !HasFailure();) {
    auto owner = std::make_shared<int>(0);
    const std::weak_ptr<int> weak = owner;
    { const ByteBuffer buffer(owner.get(), sizeof(int), owner); }
    owner.reset();
    bool hasFailed = false;
    // A step that nothing was collected for is tried again.
    for (int i = 0; i < 50 && !hasFailed && !weak.expired(); ++i) {
      CollectGarbage();
      std::this_thread::sleep_for(std::chrono::milliseconds(20));
      const CountedReferences counted(env);
      CountedReferences::FailAt(failures + 1);
      hasFailed = WhatOf<Error>([] { ByteBuffer::DropCollected(); }) != "nothing";
      EXPECT_EQ(counted.Locals(), 0);
    }
    isOver = !hasFailed;
    if (hasFailed) ++failures;
    DropUntilGone(weak);
    EXPECT_TRUE(weak.expired()) << "step " << failures;
  }
  EXPECT_GE(failures, 4);
}

// Buffers of two owners, each with a destructor that does this; they are dropped one after the other.
template <typename Destroy>
void DropTwo(const Destroy& destroy) {
  static int memory = 0;
  int dropped = 0;
  for (int i = 0; i < 2; ++i) {
    const std::shared_ptr<int> owner(&memory, [&](int*) {
      ++dropped;
      destroy();
    });
    const ByteBuffer buffer(&memory, sizeof memory, owner);
  }
  for (int i = 0; i < 50 && dropped < 2; ++i) {
    CollectGarbage();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ByteBuffer::DropCollected();
  }
  EXPECT_EQ(dropped, 2);
}

TEST_F(ByteBufferTest, WhileOneThreadDropsOwnersAnotherDoesNot) {
  DropTwo([] { std::thread([] { EXPECT_EQ(ByteBuffer::DropCollected(), 0u); }).join(); });
}

TEST_F(ByteBufferTest, AnOwnersDestructorUsesBuffers) {
  DropTwo([] {
    static int other = 0;
    const ByteBuffer buffer(&other, sizeof other);
    ByteBuffer::DropCollected();
  });
}

// What Java has in use, in bytes: the least of several times, because threads reserve some.
jlong UsedHeap() {
  const auto runtime = java::CallStatic<Local<java::Object>>("java/lang/Runtime", "getRuntime");
  jlong least = std::numeric_limits<jlong>::max();
  for (int i = 0; i < 5; ++i) {
    CollectGarbage();
    least = std::min(least, java::Call<jlong>(runtime, "totalMemory") - java::Call<jlong>(runtime, "freeMemory"));
  }
  return least;
}

TEST_F(ByteBufferTest, OwnersAreDroppedWhenLaterBuffersAreMade) {
  constexpr int count = 20000;
  static std::atomic<int> live{0};
  int most = 0;
  const jlong before = UsedHeap();
  for (int i = 0; i < count; ++i) {
    ++live;
    const std::shared_ptr<char> memory(new char[4096], [](const char* bytes) {
      --live;
      delete[] bytes;
    });
    const ByteBuffer buffer(memory.get(), 4096, memory);
    if (i % 2000 == 0) CollectGarbage();
    most = std::max(most, live.load());
  }
  EXPECT_LT(most, count / 2);
  for (int i = 0; i < 50 && live > 0; ++i) {
    CollectGarbage();
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ByteBuffer::DropCollected();
  }
  EXPECT_EQ(live, 0);
  EXPECT_LT(UsedHeap() - before, count * 40);  // an entry for each that Java keeps is more
}

TEST_F(ByteBufferTest, AnOwnerIsDroppedWhereTheBufferCannotBe) {
  auto owner = std::make_shared<int>(1);
  EXPECT_NE(WhatOf<Misuse>([&] { ByteBuffer(owner.get(), std::size_t{1} << 40, owner); }), "nothing");
  EXPECT_EQ(owner.use_count(), 1);
}

TEST_F(ByteBufferTest, ManyThreadsMakeThem) {
  std::vector<std::thread> threads;
  std::atomic<int> wrong{0};
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&wrong] {
      for (int i = 0; i < 500; ++i) {
        const auto memory = std::make_shared<std::vector<unsigned char>>(64, static_cast<unsigned char>(i));
        if (Sum(ByteBuffer(memory->data(), memory->size(), memory)) != 64 * (i & 0xFF)) ++wrong;
        if (i % 100 == 0) CollectGarbage();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong, 0);
}

TEST_F(ByteBufferTest, NothingIsLeft) {
  static int memory = 0;
  ExpectNothing([] { ByteBuffer(&memory, sizeof memory); });
  ExpectNothing([] { ByteBuffer(static_cast<const int*>(&memory), sizeof memory); });
  ExpectNothing([] { ViewOf(ByteBuffer(&memory, sizeof memory).Order(ByteOrder::LittleEndian)).At(0); });
  ExpectNothingOfThrowing([] { ViewOf(Heap(5)); });
  auto owner = std::make_shared<int>(0);
  const std::weak_ptr<int> weak = owner;
  ExpectNothingWhereverItFails([&] { ByteBuffer(owner.get(), sizeof(int), owner); }, 3);
  ExpectNothingWhereverItFails([&] { ByteBuffer(static_cast<const int*>(owner.get()), sizeof(int), owner); }, 4);
  owner.reset();
  DropUntilGone(weak);
  EXPECT_TRUE(weak.expired());
}

}  // namespace
}  // namespace tests
