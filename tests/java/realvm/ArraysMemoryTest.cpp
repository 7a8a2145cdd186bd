// Arrays, buffers, collections and class loaders when C++ runs out of memory, at each step on the way.
#include <map>
#include <thread>

#include "java/realvm/FewAllocations.h"
#include "java/realvm/JavaFiles.h"
#include "java/realvm/OwnProcess.h"

namespace tests {
namespace {

using java::Array;
using java::ByteBuffer;
using java::ClassLoader;
using java::Elements;
using java::Local;
using java::NewArray;
using java::Ref;
using java::StaticMethod;

using Texts = std::vector<std::string>;
using Matrix = std::vector<std::vector<double>>;
using Numbers = std::vector<std::optional<jint>>;

class ArraysMemoryTest : public FewAllocationsTest {};

constexpr const char* const Fixture = "fixture/Arrays";
constexpr StaticMethod<std::vector<jint>(std::vector<jint>)> SameInts{Fixture, "same"};
constexpr StaticMethod<Texts(Texts)> SameTexts{Fixture, "same"};
constexpr StaticMethod<Matrix(Matrix)> SameMatrix{Fixture, "same"};
constexpr StaticMethod<Numbers(Numbers)> SameNumbers{Fixture, "same"};
const std::string Long(100, 'x');

struct ArrayList {
  static constexpr char JavaName[] = "java/util/ArrayList";
};
struct HashMap {
  static constexpr char JavaName[] = "java/util/HashMap";
};

void CopyAll() {
  const Local<ArrayList> list = java::New<ArrayList>();
  java::Call<void>(list, "add", Long);
  java::Copy<Texts>(list);
  const Local<HashMap> map = java::New<HashMap>();
  java::Call<void>(map, "put", Long, 1);
  java::Copy<std::map<std::string, jint>>(map);
}

void LoadElsewhere() {
  const ClassLoader others = ClassLoader::OfJars({TORVAN_TEST_OTHER_CLASSES});
  const java::ContextClassLoader scope(others);
  others.FindClass("fixture/Plugin");
  others.Close();
}

TEST_F(ArraysMemoryTest, ArraysLeaveNothing) {
  ExpectNothingWithoutMemory([] { SameInts(std::vector<jint>(5000, 1)); }, 1);
  ExpectNothingWithoutMemory([] { SameTexts(Texts{"short", Long}); }, 5);
  ExpectNothingWithoutMemory([] { SameMatrix(Matrix{{1}, {2}}); }, 4);
  ExpectNothingWithoutMemory([] { SameNumbers(Numbers{1, std::nullopt}); }, 1);
  ExpectNothingWithoutMemory([] { Elements<std::string>(NewArray(Texts{Long})).At(0); }, 3);
}

TEST_F(ArraysMemoryTest, CollectionsLeaveNothing) { ExpectNothingWithoutMemory(&CopyAll, 20); }

TEST_F(ArraysMemoryTest, LoadersLeaveNothing) {
  ExpectNothingWithoutMemory([] { ClassLoader::Platform(); }, 0);
  SKIP_UNLESS_JAVA_KNOWS(TORVAN_TEST_OTHER_CLASSES);
  ExpectNothingWithoutMemory(&LoadElsewhere, 10);
}

void DropUntilGone(const std::weak_ptr<int>& owner) {
  for (int i = 0; i < 100 && !owner.expired(); ++i) {
    java::CallStatic<void>("java/lang/System", "gc");
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    ByteBuffer::DropCollected();
  }
}

TEST_F(ArraysMemoryTest, BuffersLeaveNothing) {
  auto owner = std::make_shared<int>(0);
  const std::weak_ptr<int> weak = owner;
  ExpectNothingWithoutMemory([&] { ByteBuffer(owner.get(), sizeof(int), owner); }, 2);
  ExpectNothingWithoutMemory([&] { ByteBuffer(static_cast<const int*>(owner.get()), sizeof(int), owner); }, 2);
  ExpectNothingWithoutMemory([&] { java::ViewOf(ByteBuffer(owner.get(), sizeof(int))).At(0); }, 1);
  owner.reset();
  DropUntilGone(weak);
  EXPECT_TRUE(weak.expired());
}

// Each in a process where none of it was ever used.
TEST_F(ArraysMemoryTest, TheFirstArraysSucceedAtLast) {
  InOwnProcess([] {
    FewAllocationsTest::ExpectToSucceedAtLast(
        [] {
          SameInts(std::vector<jint>(5000, 1));
          SameTexts(Texts{"short", Long});
          SameNumbers(Numbers{1, std::nullopt});
          CopyAll();
        },
        50);
    EXPECT_EQ(SameNumbers(Numbers{1, std::nullopt}), (Numbers{1, std::nullopt}));
  });
}

}  // namespace
}  // namespace tests
