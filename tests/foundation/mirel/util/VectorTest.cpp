#include "foundation/mirel/util/VectorSupport.h"

#include <mirel/base/IllegalArgumentException.h>
#include <mirel/util/NoSuchElementException.h>

namespace tests {
namespace {

using mirel::base::CIllegalArgumentException;
using mirel::util::CNoSuchElementException;

static_assert(sizeof(CVector<Counted>) == 24);

class VectorTest : public ContainerTest {};

TEST_F(VectorTest, HoldsTheArrayTheSizeTheCapacityAndTheIncrementInThisOrder) {
  CVector<Counted> vector(8, 4);
  vector.Add(7);
  const auto fields = FieldsOf<VectorFields>(vector);
  EXPECT_EQ(fields.elements, &vector[0]);
  EXPECT_EQ(fields.size, 1u);
  EXPECT_EQ(fields.capacity, 8u);
  EXPECT_EQ(fields.increment, 4u);
}

TEST_F(VectorTest, WithoutCapacityNothingIsAllocated) {
  CVector<Counted> vector(0, 5);
  EXPECT_EQ(allocations.Made(), 0);
  EXPECT_EQ(FieldsOf<VectorFields>(vector).elements, nullptr);
  EXPECT_EQ(vector.GetSize(), 0u);
}

struct CapacityCase {
  const char* name;
  unsigned int initialCapacity;
  unsigned int increment;
  unsigned int capacity;
};
std::ostream& operator<<(std::ostream& out, const CapacityCase& value) { return out << value.name; }
std::string NameOf(const ::testing::TestParamInfo<CapacityCase>& info) { return info.param.name; }

class VectorCapacityTest : public ContainerTest, public ::testing::WithParamInterface<CapacityCase> {};

TEST_P(VectorCapacityTest, IsTheInitialCapacityRoundedUpToTheIncrement) {
  CVector<char> vector(GetParam().initialCapacity, GetParam().increment);
  EXPECT_EQ(vector.GetCapacity(), GetParam().capacity);
}

INSTANTIATE_TEST_SUITE_P(
    Rounding, VectorCapacityTest,
    ::testing::Values(CapacityCase{"None", 0, 5, 0}, CapacityCase{"BelowOneIncrement", 1, 5, 5},
                      CapacityCase{"OneIncrement", 5, 5, 5}, CapacityCase{"AboveOneIncrement", 6, 5, 10},
                      CapacityCase{"AsTheLauncherAsks", 10, 5, 10}, CapacityCase{"IncrementZeroMeansFive", 3, 0, 5},
                      CapacityCase{"IncrementZeroMeansFiveAboveFive", 6, 0, 10}, CapacityCase{"IncrementOne", 3, 1, 3},
                      CapacityCase{"IncrementThree", 7, 3, 9}, CapacityCase{"IncrementAboveTheCapacity", 3, 100, 100},
                      CapacityCase{"SumWrapsAroundAt32Bits", 0xFFFFFFFF, 10, 6}),
    NameOf);

TEST_F(VectorTest, TheProductInTheRoundingWrapsAroundAt32Bits) {
  allocations.Fail(1);
  // 4 * 0x40000000 is 0 in 32 bits, so nothing is added; in 64 bits one element would be.
  EXPECT_EQ(FailureOf([] { CVector<char>(0x40000000, 5); }),
            Throws<mirel::base::CMemoryException>("mirel/util/Vector", 925, nullptr));
  EXPECT_EQ(allocations.LastSize(), 0x40000000u);
}

// Adds 0, 1, 2 and so on.
void AddNumbers(CVector<Counted>& vector, unsigned int count) {
  for (unsigned int i = 0; i < count; ++i) vector.Add(static_cast<int>(i));
}

TEST_F(VectorTest, CapacityGrowsByTheIncrement) {
  struct Row {
    const char* name;
    unsigned int initialCapacity, increment, additions, capacity;
  };
  const Row rows[] = {
      {"the first element", 0, 5, 1, 5},
      {"no growth up to the capacity", 10, 5, 10, 10},
      {"the 11th element", 10, 5, 11, 15},
      {"increment 0 grows in steps of 5", 0, 0, 6, 10},
      {"increment 0 grows in steps of 5 again", 0, 0, 11, 15},
      {"increment 1 grows with every element", 0, 1, 3, 3},
      {"increment 7", 7, 7, 8, 14},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    CVector<Counted> vector(row.initialCapacity, row.increment);
    AddNumbers(vector, row.additions);
    EXPECT_EQ(vector.GetSize(), row.additions);
    EXPECT_EQ(vector.GetCapacity(), row.capacity);
    EXPECT_EQ(vector.GetLast().Value(), static_cast<int>(row.additions) - 1);
  }
}

TEST_F(VectorTest, GrowthMovesElementsWithoutConstructorOrDestructor) {
  CVector<Counted> vector(0, 1);
  for (int value : {1, 2, 3}) vector.Add(value);
  EXPECT_EQ(Counted::tally.copied, 3);
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(1, 2, 3)) << "what was passed, and nothing else";
  EXPECT_THAT(ValuesOf(vector), ElementsAre(1, 2, 3));
  EXPECT_EQ(allocations.Live(), 1u);
}

TEST_F(VectorTest, AnElementOfTheVectorItselfCanBeAddedWhileItGrows) {
  CVector<Counted> vector = VectorOf({1, 2}, 1);
  vector.Add(vector[1]);
  EXPECT_THAT(ValuesOf(vector), ElementsAre(1, 2, 2));
}

TEST_F(VectorTest, ReadsAndWritesByIndex) {
  CVector<Counted> vector = VectorOf({1, 2, 3}, 5);
  vector[1] = Counted(20);
  const auto& constant = vector;
  EXPECT_EQ(constant[0].Value(), 1);
  EXPECT_EQ(constant[1].Value(), 20);
  EXPECT_EQ(vector.GetLast().Value(), 3);
  vector.GetLast() = Counted(30);
  EXPECT_EQ(vector[2].Value(), 30);
}

TEST_F(VectorTest, AnIndexNotBelowTheSizeThrows) {
  CVector<Counted> empty(5, 5);
  CVector<Counted> vector = VectorOf({1, 2, 3}, 5);
  for (const auto& row : {std::pair(&empty, 0u), {&vector, 3u}, {&vector, 4u}, {&vector, 0xFFFFFFFFu}}) {
    const unsigned int index = row.second;
    SCOPED_TRACE(index);
    CVector<Counted>& container = *row.first;
    const CVector<Counted>& constant = container;
    EXPECT_EQ(FailureOf([&] { container[index].Value(); }),
              Throws<CNoSuchElementException>("mirel/util/Vector", 167, nullptr));
    EXPECT_EQ(FailureOf([&] { constant[index].Value(); }),
              Throws<CNoSuchElementException>("mirel/util/Vector", 175, nullptr));
  }
}

TEST_F(VectorTest, AnEmptyVectorHasNoLastElement) {
  CVector<Counted> vector(5, 5);
  EXPECT_EQ(FailureOf([&] { vector.GetLast(); }), Throws<CNoSuchElementException>("mirel/util/Vector", 634, nullptr));
}

TEST_F(VectorTest, RemovingAnElementDestroysItAndClosesTheGap) {
  CVector<Counted> vector = VectorOf({1, 2, 3}, 5);
  vector.RemoveElementAt(1);
  EXPECT_THAT(ValuesOf(vector), ElementsAre(1, 3));
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(2));
  vector.RemoveElementAt(1);
  EXPECT_THAT(ValuesOf(vector), ElementsAre(1));
  EXPECT_EQ(vector.GetCapacity(), 5u);
  EXPECT_EQ(FailureOf([&] { vector.RemoveElementAt(1); }),
            Throws<CNoSuchElementException>("mirel/util/Vector", AnyLine, nullptr));
}

int CompareValues(const void* left, const void* right) {
  return static_cast<const Counted*>(left)->Value() - static_cast<const Counted*>(right)->Value();
}

TEST_F(VectorTest, SortOrdersTheElementsInPlaceWithoutCopies) {
  CVector<Counted> vector = VectorOf({3, -1, 2, 3, 0}, 5);
  vector.Sort(CompareValues);
  EXPECT_THAT(ValuesOf(vector), ElementsAre(-1, 0, 2, 3, 3));
  EXPECT_EQ(Counted::tally.copied, 0);
  EXPECT_THAT(Counted::tally.destroyed, IsEmpty());
}

TEST_F(VectorTest, AnEmptyVectorCanBeSorted) {
  CVector<Counted> vector(0, 5);
  vector.Sort(CompareValues);
  EXPECT_EQ(vector.GetSize(), 0u);
}

TEST_F(VectorTest, SortWithoutAFunctionThrowsAndLeavesTheVector) {
  for (CVector<Counted> vector : {VectorOf({3, 1, 2}, 5), VectorOf({}, 5)}) {
    const std::vector<int> before = ValuesOf(vector);
    EXPECT_EQ(FailureOf([&] { vector.Sort(nullptr); }),
              Throws<CIllegalArgumentException>("mirel/util/Vector", 900, "Invalid compare function."));
    EXPECT_EQ(ValuesOf(vector), before);
  }
}

TEST_F(VectorTest, TrimmingFreesWholeIncrementsButTheLast) {
  struct Row {
    const char* name;
    unsigned int size, initialCapacity, increment, capacity;
  };
  const Row rows[] = {
      {"an empty vector keeps one increment", 0, 20, 5, 5},
      {"within the first increment", 3, 20, 5, 5},
      {"exactly one increment", 5, 20, 5, 5},
      {"rounded up", 6, 20, 5, 10},
      {"a full vector", 20, 20, 5, 20},
      {"room within the last increment stays", 16, 20, 5, 20},
      {"a vector that never had room gets none", 0, 0, 5, 0},
      {"the increment 0 means 5", 1, 15, 0, 5},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    CVector<Counted> vector(row.initialCapacity, row.increment);
    AddNumbers(vector, row.size);
    const std::vector<int> values = ValuesOf(vector);
    Counted::tally.ForgetDone();
    const int made = allocations.Made();
    vector.TrimToSize();
    EXPECT_EQ(vector.GetCapacity(), row.capacity);
    EXPECT_EQ(ValuesOf(vector), values);
    EXPECT_EQ(Counted::tally.copied, 0);
    EXPECT_THAT(Counted::tally.destroyed, IsEmpty());
    EXPECT_EQ(allocations.Made() - made, row.capacity < row.initialCapacity ? 1 : 0);
  }
}

TEST_F(VectorTest, ACopyHasTheElementsAndTheIncrementAndIsIndependent) {
  CVector<Counted> vector = VectorOf({1, 2, 3}, 4);
  CVector<Counted> copy(vector);
  EXPECT_EQ(Counted::tally.copied, 3);
  EXPECT_EQ(FieldsOf<VectorFields>(copy).increment, 4u);
  copy[0] = Counted(10);
  copy.Add(4);
  EXPECT_THAT(ValuesOf(vector), ElementsAre(1, 2, 3));
  EXPECT_THAT(ValuesOf(copy), ElementsAre(10, 2, 3, 4));
}

TEST_F(VectorTest, AssignmentReplacesTheElementsAndKeepsTheIncrement) {
  struct Row {
    const char* name;
    std::vector<int> target, source;
    unsigned int capacity;
  };
  const Row rows[] = {
      {"fewer", {1, 2, 3}, {7}, 3}, {"as many", {1, 2, 3}, {7, 8, 9}, 3}, {"more", {1, 2, 3}, {5, 6, 7, 8}, 6},
      {"none", {1, 2, 3}, {}, 3},   {"into an empty one", {}, {7}, 3},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    CVector<Counted> target = VectorOf(row.target, 3);
    const CVector<Counted> source = VectorOf(row.source, 10);
    EXPECT_EQ(&(target = source), &target);
    EXPECT_EQ(Counted::tally.destroyed, row.target);
    EXPECT_EQ(ValuesOf(target), row.source);
    EXPECT_EQ(ValuesOf(source), row.source);
    EXPECT_EQ(target.GetCapacity(), row.capacity);
    EXPECT_EQ(FieldsOf<VectorFields>(target).increment, 3u);
  }
}

TEST_F(VectorTest, AssignmentToItselfDoesNothing) {
  CVector<Counted> vector = VectorOf({1, 2}, 2);
  const CVector<Counted>& same = vector;
  vector = same;
  EXPECT_THAT(ValuesOf(vector), ElementsAre(1, 2));
  EXPECT_EQ(Counted::tally.copied, 0);
}

TEST_F(VectorTest, TheEndDestroysTheElementsInIndexOrder) {
  { CVector<Counted> vector = VectorOf({3, 1, 2}, 5); }
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(3, 1, 2));
  EXPECT_EQ(allocations.Live(), 0u);
}

}  // namespace
}  // namespace tests
