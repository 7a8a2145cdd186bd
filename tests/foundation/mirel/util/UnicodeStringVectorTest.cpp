#include <gtest/gtest.h>
#include <mirel/util/UnicodeStringVector.h>

#include <initializer_list>
#include <vector>

#include "foundation/MemoryFailures.h"
#include "foundation/mirel/Units.h"

namespace tests {
namespace {

using mirel::base::CUnicodeString;
using mirel::util::CNoSuchElementException;
using mirel::util::CUnicodeStringVector;

CUnicodeStringVector VectorOf(std::initializer_list<const RX::UniChar*> texts) {
  CUnicodeStringVector vector;
  for (const RX::UniChar* text : texts) vector.Add(text);
  return vector;
}

std::vector<WideText> TextsOf(const CUnicodeStringVector& vector) {
  std::vector<WideText> texts;
  for (unsigned int i = 0; i < vector.GetSize(); ++i) texts.push_back(UnitsOf(vector[i]));
  return texts;
}

TEST(UnicodeStringVectorTest, TextsAreHeldInTheOrderOfAdding) {
  const CUnicodeStringVector vector = VectorOf({RX_TEXT("b"), RX_TEXT(""), nullptr, RX_TEXT("a"), RX_TEXT("b")});
  EXPECT_EQ(TextsOf(vector),
            (std::vector<WideText>{RX_TEXT("b"), RX_TEXT(""), RX_TEXT("(null)"), RX_TEXT("a"), RX_TEXT("b")}));
}

TEST(UnicodeStringVectorTest, TextsAreCopiedAndSurviveGrowth) {
  CUnicodeStringVector vector(0, 1);
  std::vector<WideText> expected;
  for (int i = 0; i < 100; ++i) {
    const WideText text(static_cast<std::size_t>(i), static_cast<RX::UniChar>('a' + i % 26));
    vector.Add(CUnicodeString(text.c_str()));
    expected.push_back(text);
  }
  EXPECT_EQ(TextsOf(vector), expected);
}

TEST(UnicodeStringVectorTest, RoomFor10TextsIsReservedByDefaultAndGrowsBy5) {
  Allocations allocations;
  CUnicodeStringVector vector;
  const CUnicodeString null;
  for (int i = 0; i < 10; ++i) vector.Add(null);
  EXPECT_EQ(allocations.Made(), 1);
  for (int i = 0; i < 5; ++i) vector.Add(null);
  EXPECT_EQ(allocations.Made(), 2);
  vector.Add(null);
  EXPECT_EQ(allocations.Made(), 3);
}

TEST(UnicodeStringVectorTest, AnIndexThatIsNotBelowTheSizeIsRefused) {
  const CUnicodeStringVector vector = VectorOf({RX_TEXT("a")});
  const Failure refused = Throws<CNoSuchElementException>("mirel/util/Vector", 175, nullptr);
  EXPECT_EQ(FailureOf([&] { vector[1]; }), refused);
  EXPECT_EQ(FailureOf([&] { vector[0xFFFFFFFF]; }), refused);
}

TEST(UnicodeStringVectorTest, CopiesAreIndependent) {
  CUnicodeStringVector original = VectorOf({RX_TEXT("a"), RX_TEXT("b")});
  const CUnicodeStringVector copy(original);
  CUnicodeStringVector assigned = VectorOf({RX_TEXT("x"), RX_TEXT("y"), RX_TEXT("z")});
  assigned = original;
  original.Add(CUnicodeString(RX_TEXT("c")));
  EXPECT_EQ(TextsOf(copy), (std::vector<WideText>{RX_TEXT("a"), RX_TEXT("b")}));
  EXPECT_EQ(TextsOf(assigned), (std::vector<WideText>{RX_TEXT("a"), RX_TEXT("b")}));
}

TEST(UnicodeStringVectorTest, VectorsAreEqualWhenTheyHoldEqualTextsInTheSameOrder) {
  const struct {
    const char* name;
    CUnicodeStringVector left;
    CUnicodeStringVector right;
    bool equal;
  } rows[] = {
      {"both empty", VectorOf({}), VectorOf({}), true},
      {"same texts", VectorOf({RX_TEXT("a"), RX_TEXT("b")}), VectorOf({RX_TEXT("a"), RX_TEXT("b")}), true},
      {"other order", VectorOf({RX_TEXT("a"), RX_TEXT("b")}), VectorOf({RX_TEXT("b"), RX_TEXT("a")}), false},
      {"other case", VectorOf({RX_TEXT("a")}), VectorOf({RX_TEXT("A")}), false},
      {"last differs", VectorOf({RX_TEXT("a"), RX_TEXT("b")}), VectorOf({RX_TEXT("a"), RX_TEXT("c")}), false},
      {"beginning", VectorOf({RX_TEXT("a")}), VectorOf({RX_TEXT("a"), RX_TEXT("b")}), false},
      {"empty and one empty text", VectorOf({}), VectorOf({RX_TEXT("")}), false},
      {"null and empty text", VectorOf({nullptr}), VectorOf({RX_TEXT("")}), true},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    EXPECT_EQ(row.left == row.right, row.equal);
    EXPECT_EQ(row.right == row.left, row.equal);
  }
}

TEST(UnicodeStringVectorTest, RoomDoesNotCountForEquality) {
  EXPECT_TRUE(CUnicodeStringVector(1, 1) == CUnicodeStringVector(50, 7));
}

TEST(UnicodeStringVectorTest, ExhaustionThrowsAndAddingKeepsWhatWasHeld) {
  CUnicodeStringVector vector(1, 1);
  vector.Add(CUnicodeString(RX_TEXT("a")));
  const CUnicodeString text(RX_TEXT("b"));
  const auto unchanged = [&] { EXPECT_EQ(TextsOf(vector), (std::vector<WideText>{RX_TEXT("a")})); };

  Failure failure;
  const int failures = FailEachAllocation([&] { failure = FailureOf([&] { vector.Add(text); }); },
                                          [&](int, const Allocations&) {
                                            EXPECT_EQ(failure.type, typeid(mirel::base::CMemoryException));
                                            unchanged();
                                          });
  EXPECT_GE(failures, 1);
  EXPECT_EQ(TextsOf(vector), (std::vector<WideText>{RX_TEXT("a"), RX_TEXT("b")}));
}

TEST(UnicodeStringVectorTest, AnAssignmentThatFindsNoRoomKeepsWhatWasHeld) {
  CUnicodeStringVector vector = VectorOf({RX_TEXT("a"), RX_TEXT("b")});
  CUnicodeStringVector longer(0, 5);
  for (int i = 0; i < 11; ++i) longer.Add(CUnicodeString(RX_TEXT("x")));
  Allocations allocations;
  allocations.Fail(1);
  EXPECT_EQ(FailureOf([&] { vector = longer; }),
            Throws<mirel::base::CMemoryException>("mirel/util/Vector", 925, nullptr));
  EXPECT_EQ(TextsOf(vector), (std::vector<WideText>{RX_TEXT("a"), RX_TEXT("b")}));
}

TEST(UnicodeStringVectorTest, AFailedCopyLeavesNoBlockBehind) {
  const CUnicodeStringVector vector = VectorOf({RX_TEXT("a"), RX_TEXT("b"), RX_TEXT("c")});
  Failure failure;
  EXPECT_EQ(FailEachAllocation([&] { failure = FailureOf([&] { CUnicodeStringVector copy(vector); }); },
                               [&](int, const Allocations& allocations) {
                                 EXPECT_EQ(failure.type, typeid(mirel::base::CMemoryException));
                                 EXPECT_EQ(allocations.Live(), 0u);
                               }),
            4);
}

}  // namespace
}  // namespace tests
