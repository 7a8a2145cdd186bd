// What a vector holds after memory ran out or an element threw.
#include "foundation/mirel/util/VectorSupport.h"

namespace tests {
namespace {

using mirel::base::CMemoryException;

class VectorFailureTest : public ContainerTest {};

TEST_F(VectorFailureTest, ConstructionWithoutMemoryThrows) {
  allocations.Fail(1);
  EXPECT_EQ(FailureOf([] { CVector<Counted>(10, 5); }), Throws<CMemoryException>("mirel/util/Vector", 925, nullptr));
}

TEST_F(VectorFailureTest, EveryAdditionThatFailsLeavesTheElements) {
  const int additions = 6;
  for (int failing = 1;; ++failing) {
    SCOPED_TRACE(failing);
    CVector<Counted> vector(0, 2);
    std::vector<int> expected;
    allocations.Fail(failing);
    const Failure failure = FailureOf([&] {
      for (int i = 0; i < additions; ++i) {
        vector.Add(i);
        expected.push_back(i);
      }
    });
    EXPECT_EQ(ValuesOf(vector), expected);
    EXPECT_EQ(vector.GetCapacity(), expected.size());
    if (!allocations.HasFailed()) {
      EXPECT_EQ(failing, additions / 2 + 1);
      EXPECT_EQ(failure, Failure{});
      break;
    }
    EXPECT_EQ(failure, Throws<CMemoryException>("mirel/util/Vector", 843, nullptr));
    allocations.Fail(0);
    vector.Add(99);
    EXPECT_EQ(vector.GetLast().Value(), 99);
  }
}

TEST_F(VectorFailureTest, AdditionThatWouldWrapTheCapacityAroundThrows) {
  struct Row {
    unsigned int size, increment;
  };
  for (const Row& row : {Row{0xFFFFFFFF, 1}, Row{0xFFFFFFFD, 10}}) {
    FullVector vector(row.size, row.increment);
    EXPECT_EQ(FailureOf([&] { (*vector).Add('x'); }), Throws<CMemoryException>("mirel/util/Vector", 843, nullptr));
    EXPECT_EQ((*vector).GetSize(), row.size);
  }
}

// How many elements an assignment asks room for when the source or the increment is nearly as large as can be.
struct NearlyFull {
  const char* name;
  unsigned int size, increment, targetIncrement, room;  // 0: none, because the capacity has wrapped around
};
void PrintTo(const NearlyFull& row, std::ostream* out) { *out << row.name; }

class VectorFailureNearlyFullTest : public ContainerTest, public ::testing::WithParamInterface<NearlyFull> {};

INSTANTIATE_TEST_SUITE_P(Sizes, VectorFailureNearlyFullTest,
                         ::testing::Values(NearlyFull{"LargestByOne", 0xFFFFFFFF, 1, 1, 0xFFFFFFFF},
                                           NearlyFull{"LargestByTwo", 0xFFFFFFFF, 1, 2, 0},
                                           NearlyFull{"LargestByFive", 0xFFFFFFFF, 1, 5, 0},
                                           NearlyFull{"ThreeLessByTen", 0xFFFFFFFD, 1, 10, 0},
                                           NearlyFull{"ThreeLessByThree", 0xFFFFFFFD, 10, 3, 0xFFFFFFFE},
                                           NearlyFull{"FourLessByTen", 0xFFFFFFFC, 3, 10, 0xFFFFFFFC},
                                           NearlyFull{"TwoByTheLargest", 2, 1, 0xFFFFFFFF, 0xFFFFFFFE}),
                         [](const auto& row) { return row.param.name; });

TEST_P(VectorFailureNearlyFullTest, IsAssignedOnlyToAsMuchRoomAsItNeeds) {
  FullVector source(GetParam().size, GetParam().increment);
  CVector<char> target(0, GetParam().targetIncrement);
  allocations.Fail(1);
  EXPECT_EQ(FailureOf([&] { target = *source; }), Throws<CMemoryException>("mirel/util/Vector", 925, nullptr));
  EXPECT_EQ(allocations.HasFailed() ? allocations.LastSize() : 0, GetParam().room);
}

TEST_F(VectorFailureTest, AnAssignmentThatWouldWrapTheCapacityAroundLeavesTheTarget) {
  FullVector source(0xFFFFFFFD, 1);
  CVector<char> target(10, 10);
  for (const char letter : {'a', 'b', 'c'}) target.Add(letter);
  EXPECT_EQ(FailureOf([&] { target = *source; }), Throws<CMemoryException>("mirel/util/Vector", 925, nullptr));
  ASSERT_EQ(target.GetSize(), 3u);
  EXPECT_EQ(target[2], 'c');
  EXPECT_EQ(target.GetCapacity(), 10u);
}

TEST_F(VectorFailureTest, ACopyThatWouldWrapTheCapacityAroundThrows) {
  FullVector source(0xFFFFFFFD, 10);
  EXPECT_EQ(FailureOf([&] { CVector<char> copy(*source); }),
            Throws<CMemoryException>("mirel/util/Vector", 925, nullptr));
  EXPECT_EQ(allocations.Made(), 0);
}

TEST_F(VectorFailureTest, AnAdditionWhoseCopyThrowsLeavesTheElements) {
  CVector<Counted> vector = VectorOf({1, 2}, 2);
  Counted::tally.throwWhenCopied = {3};
  EXPECT_THROW(vector.Add(3), ElementFailure);
  EXPECT_THAT(ValuesOf(vector), ElementsAre(1, 2));
}

TEST_F(VectorFailureTest, TrimmingWithoutMemoryLeavesTheVector) {
  CVector<Counted> vector = VectorOf({1, 2, 3}, 1);
  vector.RemoveElementAt(0);
  allocations.Fail(1);
  EXPECT_EQ(FailureOf([&] { vector.TrimToSize(); }), Throws<CMemoryException>("mirel/util/Vector", 967, nullptr));
  EXPECT_THAT(ValuesOf(vector), ElementsAre(2, 3));
  EXPECT_EQ(vector.GetCapacity(), 3u);
}

TEST_F(VectorFailureTest, ACopyWithoutMemoryThrows) {
  const CVector<Counted> vector = VectorOf({1, 2, 3}, 1);
  allocations.Fail(1);
  EXPECT_EQ(FailureOf([&] { CVector<Counted> copy(vector); }),
            Throws<CMemoryException>("mirel/util/Vector", 925, nullptr));
}

TEST_F(VectorFailureTest, ACopyOfWhichAnElementThrowsDestroysThoseCopied) {
  const CVector<Counted> vector = VectorOf({1, 2, 3}, 1);
  Counted::tally.throwWhenCopied = {3};
  EXPECT_THROW(CVector<Counted> copy(vector), ElementFailure);
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(1, 2));
}

TEST_F(VectorFailureTest, AssignmentWithoutMemoryLeavesTheTarget) {
  CVector<Counted> target = VectorOf({1, 2}, 2);
  const CVector<Counted> source = VectorOf({7, 8, 9}, 2);
  allocations.Fail(1);
  EXPECT_EQ(FailureOf([&] { target = source; }), Throws<CMemoryException>("mirel/util/Vector", 925, nullptr));
  EXPECT_THAT(ValuesOf(target), ElementsAre(1, 2));
  EXPECT_EQ(target.GetCapacity(), 2u);
}

TEST_F(VectorFailureTest, AnAssignmentWhoseCopyThrowsHoldsTheElementsCopiedBefore) {
  CVector<Counted> target = VectorOf({1, 2}, 2);
  const CVector<Counted> source = VectorOf({7, 8, 9}, 2);
  Counted::tally.throwWhenCopied = {9};
  EXPECT_THROW(target = source, ElementFailure);
  EXPECT_THAT(ValuesOf(target), ElementsAre(7, 8));
}

TEST_F(VectorFailureTest, AnElementThatThrowsAtTheEndKeepsNoOtherAndNoMemory) {
  CVector<Counted> source = VectorOf({1, 2, 3}, 5);
  Counted::tally.throwWhenDestroyed = {2};
  EXPECT_THROW({ CVector<Counted> vector(source); }, ElementFailure);
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(1, 2, 3));
  EXPECT_EQ(allocations.Live(), 1u) << "the source";
  Counted::tally.throwWhenDestroyed = {};
}

TEST_F(VectorFailureTest, AnElementThatThrowsWhileItIsReplacedLeavesAnEmptyVector) {
  CVector<Counted> target = VectorOf({1, 2, 3}, 3);
  const CVector<Counted> source = VectorOf({5, 6, 7, 8}, 3);
  Counted::tally.throwWhenDestroyed = {1};
  EXPECT_THROW(target = source, ElementFailure);
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(1, 2, 3));
  EXPECT_EQ(target.GetSize(), 0u);
  EXPECT_EQ(allocations.Live(), 2u) << "one array a vector";
  target = source;
  EXPECT_THAT(ValuesOf(target), ElementsAre(5, 6, 7, 8));
}

TEST_F(VectorFailureTest, AnElementThatThrowsWhileItIsRemovedIsGone) {
  CVector<Counted> vector = VectorOf({1, 2, 3}, 3);
  Counted::tally.throwWhenDestroyed = {2};
  EXPECT_THROW(vector.RemoveElementAt(1), ElementFailure);
  EXPECT_THAT(ValuesOf(vector), ElementsAre(1, 3));
}

}  // namespace
}  // namespace tests
