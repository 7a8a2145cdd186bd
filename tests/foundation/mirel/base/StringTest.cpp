#include <gtest/gtest.h>
#include <mirel/base/String.h>

#include <memory>

#include "foundation/MemoryFailures.h"

namespace tests {
namespace {

using mirel::base::CString;

const char* Bytes(const CString& text) { return text; }

TEST(StringTest, ATextMadeFromNothingConvertsToNullAndOneMadeFromEmptyTextToEmptyText) {
  EXPECT_EQ(Bytes(CString()), nullptr);
  EXPECT_EQ(Bytes(CString(static_cast<const char*>(nullptr))), nullptr);
  EXPECT_STREQ(Bytes(CString("")), "");
}

TEST(StringTest, BytesAreCopiedAsTheyAre) {
  char source[] = "ab\xC3\xA4\xFF";
  const CString text(source);
  source[0] = 'x';
  EXPECT_STREQ(Bytes(text), "ab\xC3\xA4\xFF");
}

TEST(StringTest, CopiesOutliveTheirOriginal) {
  auto original = std::make_unique<CString>("abc");
  const CString copy(*original);
  CString assigned("a longer text of its own");
  EXPECT_EQ(&(assigned = *original), &assigned);
  original.reset();
  EXPECT_STREQ(Bytes(copy), "abc");
  EXPECT_STREQ(Bytes(assigned), "abc");
}

TEST(StringTest, CopiesOfANullTextAreNull) {
  CString assigned("abc");
  assigned = CString();
  EXPECT_EQ(Bytes(assigned), nullptr);
  EXPECT_EQ(Bytes(CString(assigned)), nullptr);
}

TEST(StringTest, AssignmentToItselfKeepsTheText) {
  CString text("abc");
  const CString& same = text;
  text = same;
  EXPECT_STREQ(Bytes(text), "abc");
}

TEST(StringTest, ExhaustionThrowsAndKeepsWhatAnAssignmentWasToReplace) {
  const CString other("other");
  CString text("abc");
  const auto unchanged = [&] { EXPECT_STREQ(Bytes(text), "abc"); };
  EXPECT_EQ(FailEachAllocationOf(
                "mirel/base/String", [] { CString made("x"); }, unchanged),
            1);
  EXPECT_EQ(FailEachAllocationOf(
                "mirel/base/String", [&] { CString made(other); }, unchanged),
            1);
  EXPECT_EQ(FailEachAllocationOf(
                "mirel/base/String", [&] { text = other; }, unchanged),
            1);
  EXPECT_STREQ(Bytes(text), "other");
}

}  // namespace
}  // namespace tests
