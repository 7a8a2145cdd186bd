#include <gtest/gtest.h>
#include <mirel/util/ObjectVector.h>

#include <initializer_list>
#include <vector>

#include "foundation/MemoryFailures.h"

namespace tests {
namespace {

using mirel::base::CIllegalArgumentException;
using mirel::base::CMemoryException;
using mirel::base::CObject;
using mirel::util::CNoSuchElementException;
using mirel::util::CObjectVector;

// An object of a value: equal to every object of this value, counted while it lives.
class Value : public CObject {
 public:
  explicit Value(int v) : value(v) { ++s_live; }
  Value(const Value& other) : CObject(other), value(other.value) { ++s_live; }
  ~Value() override { --s_live; }

  bool Equals(const CObject* other) const override {
    asked.push_back(value);
    const Value* const that = dynamic_cast<const Value*>(other);
    return that != nullptr && that->value == value;
  }
  CObject* Clone() const override { return new Value(*this); }

  int value;

  static inline int s_live = 0;
  static inline std::vector<int> asked;  // whose Equals was called, in order
};

class Uncloneable : public CObject {};

class ObjectVectorTest : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(Value::s_live, 0);
    Value::asked.clear();
  }
  void TearDown() override { EXPECT_EQ(Value::s_live, 0) << "objects were not deleted, or twice"; }

  static void Fill(CObjectVector& vector, std::initializer_list<int> values) {
    for (const int value : values) vector.Add(new Value(value));
  }
  static std::vector<int> ValuesOf(const CObjectVector& vector) {
    std::vector<int> values;
    for (unsigned int i = 0; i < vector.GetSize(); ++i) values.push_back(static_cast<const Value&>(vector[i]).value);
    return values;
  }
};

TEST_F(ObjectVectorTest, ObjectsAreOwnedAndHeldInTheOrderOfAdding) {
  CObjectVector vector(1, 1);
  Value* const first = new Value(3);
  vector.Add(first);
  Fill(vector, {1, 2, 3, 4, 5, 6, 7});
  EXPECT_EQ(&vector[0], first);
  EXPECT_EQ(ValuesOf(vector), (std::vector<int>{3, 1, 2, 3, 4, 5, 6, 7}));
  EXPECT_EQ(Value::s_live, 8);
}

TEST_F(ObjectVectorTest, RoomIsReservedAndGrowsByTheIncrement) {
  Allocations allocations;
  CObjectVector vector(5, 5);
  Fill(vector, {1, 2, 3, 4, 5});
  EXPECT_EQ(allocations.Made(), 1 + 5);
  Fill(vector, {6, 7, 8, 9, 10});
  EXPECT_EQ(allocations.Made(), 2 + 10);
}

TEST_F(ObjectVectorTest, NullCannotBeAdded) {
  CObjectVector vector(1, 1);
  EXPECT_EQ(FailureOf([&] { vector.Add(nullptr); }),
            Throws<CIllegalArgumentException>("mirel/util/ObjectVector", AnyLine, "Invalid object."));
  EXPECT_EQ(vector.GetSize(), 0u);
}

TEST_F(ObjectVectorTest, AnIndexThatIsNotBelowTheSizeIsRefused) {
  CObjectVector vector(5, 5);
  Fill(vector, {1});
  EXPECT_EQ(FailureOf([&] { vector[1]; }), Throws<CNoSuchElementException>("mirel/util/Vector", 175, nullptr));
}

TEST_F(ObjectVectorTest, AnObjectIsContainedWhenOneHeldSaysThatItEquals) {
  CObjectVector vector(5, 5);
  Fill(vector, {1, 2, 3});
  const Value two(2);
  const Value four(4);
  EXPECT_TRUE(vector.Contains(&two));
  EXPECT_EQ(Value::asked, (std::vector<int>{1, 2}));
  EXPECT_FALSE(vector.Contains(&four));
  EXPECT_TRUE(vector.Contains(&vector[2]));
}

TEST_F(ObjectVectorTest, NullIsNotContainedAndNoElementIsAsked) {
  CObjectVector vector(5, 5);
  Fill(vector, {1});
  EXPECT_FALSE(vector.Contains(nullptr));
  EXPECT_TRUE(Value::asked.empty());
}

TEST_F(ObjectVectorTest, RemovingDeletesTheFirstEqualObject) {
  CObjectVector vector(5, 5);
  Fill(vector, {1, 2, 1, 2});
  const CObject* const secondTwo = &vector[3];
  const Value two(2);
  vector.RemoveElement(&two);
  EXPECT_EQ(ValuesOf(vector), (std::vector<int>{1, 1, 2}));
  EXPECT_EQ(&vector[2], secondTwo);
  EXPECT_EQ(Value::s_live, 3 + 1);
  vector.RemoveElement(&two);
  EXPECT_EQ(ValuesOf(vector), (std::vector<int>{1, 1}));
}

TEST_F(ObjectVectorTest, AHeldObjectCanBeRemovedByItself) {
  CObjectVector vector(5, 5);
  Fill(vector, {1, 2, 3});
  vector.RemoveElement(&vector[1]);
  EXPECT_EQ(ValuesOf(vector), (std::vector<int>{1, 3}));
}

TEST_F(ObjectVectorTest, RemovingWhatIsNotHeldIsRefused) {
  CObjectVector vector(5, 5);
  Fill(vector, {1});
  const Value two(2);
  const Failure refused = Throws<CNoSuchElementException>("mirel/util/ObjectVector", AnyLine, nullptr);
  EXPECT_EQ(FailureOf([&] { vector.RemoveElement(&two); }), refused);
  EXPECT_EQ(FailureOf([&] { vector.RemoveElement(nullptr); }), refused);
  EXPECT_EQ(ValuesOf(vector), (std::vector<int>{1}));
}

TEST_F(ObjectVectorTest, CopiesHoldClones) {
  CObjectVector original(5, 5);
  Fill(original, {1, 2});
  const CObjectVector copy(original);
  EXPECT_NE(&copy[0], &original[0]);
  const Value one(1);
  original.RemoveElement(&one);
  EXPECT_EQ(ValuesOf(copy), (std::vector<int>{1, 2}));
}

TEST_F(ObjectVectorTest, AssignmentReplacesTheObjectsByClones) {
  for (const std::initializer_list<int> before : {std::initializer_list<int>{}, {9}, {7, 8, 9, 10, 11, 12}}) {
    CObjectVector original(2, 2);
    Fill(original, {1, 2, 3});
    CObjectVector assigned(2, 2);
    Fill(assigned, before);
    EXPECT_EQ(&(assigned = original), &assigned);
    EXPECT_EQ(ValuesOf(assigned), (std::vector<int>{1, 2, 3}));
    EXPECT_EQ(ValuesOf(original), (std::vector<int>{1, 2, 3}));
    EXPECT_NE(&assigned[0], &original[0]);
    EXPECT_EQ(Value::s_live, 6);
  }
}

TEST_F(ObjectVectorTest, AssignmentToItselfKeepsTheVeryObjects) {
  CObjectVector vector(5, 5);
  Fill(vector, {1, 2});
  const CObject* const first = &vector[0];
  const CObjectVector& same = vector;
  vector = same;
  EXPECT_EQ(&vector[0], first);
  EXPECT_EQ(vector.GetSize(), 2u);
}

TEST_F(ObjectVectorTest, AnObjectWithoutACloneStopsACopyAndLeavesTheTargetAsItWas) {
  CObjectVector original(5, 5);
  Fill(original, {1});
  original.Add(new Uncloneable);
  CObjectVector target(5, 5);
  Fill(target, {7});
  const Failure refused =
      Throws<CIllegalArgumentException>("mirel/util/ObjectVector", AnyLine, "Object without a clone.");
  EXPECT_EQ(FailureOf([&] { CObjectVector copy(original); }), refused);
  EXPECT_EQ(FailureOf([&] { target = original; }), refused);
  EXPECT_EQ(ValuesOf(target), (std::vector<int>{7}));
  EXPECT_EQ(Value::s_live, 2);
}

TEST_F(ObjectVectorTest, ExhaustionWhileAddingDeletesTheObjectAndKeepsTheOthers) {
  CObjectVector vector(1, 1);
  Fill(vector, {1});
  Value* const object = new Value(2);
  Allocations allocations;
  allocations.Fail(1);
  EXPECT_EQ(FailureOf([&] { vector.Add(object); }), Throws<CMemoryException>("mirel/util/Vector", 843, nullptr));
  EXPECT_EQ(ValuesOf(vector), (std::vector<int>{1}));
  EXPECT_EQ(Value::s_live, 1);
  Fill(vector, {3});
  EXPECT_EQ(ValuesOf(vector), (std::vector<int>{1, 3}));
}

TEST_F(ObjectVectorTest, ExhaustionWhileCopyingLeavesNothingBehind) {
  CObjectVector original(2, 2);
  Fill(original, {1, 2, 3});
  Failure failure;
  EXPECT_EQ(FailEachAllocation([&] { failure = FailureOf([&] { CObjectVector copy(original); }); },
                               [&](int, const Allocations& allocations) {
                                 EXPECT_EQ(failure.type, typeid(CMemoryException));
                                 EXPECT_EQ(allocations.Live(), 0u);
                                 EXPECT_EQ(Value::s_live, 3);
                               }),
            1 + 3);
}

TEST_F(ObjectVectorTest, ExhaustionWhileAssigningKeepsTheVeryObjects) {
  CObjectVector original(2, 2);
  Fill(original, {1, 2, 3});
  CObjectVector target(2, 2);
  Fill(target, {7});
  const CObject* const seven = &target[0];
  Failure failure;
  const int failures = FailEachAllocation([&] { failure = FailureOf([&] { target = original; }); },
                                          [&](int, const Allocations& allocations) {
                                            EXPECT_EQ(failure.type, typeid(CMemoryException));
                                            EXPECT_EQ(allocations.Live(), 0u);
                                            ASSERT_EQ(target.GetSize(), 1u);
                                            EXPECT_EQ(&target[0], seven);
                                            EXPECT_EQ(Value::s_live, 4);
                                          });
  EXPECT_GE(failures, 1 + 3);
  EXPECT_EQ(ValuesOf(target), (std::vector<int>{1, 2, 3}));
}

}  // namespace
}  // namespace tests
