// Options in the system's code page.
#include <gtest/gtest.h>
#include <windows.h>

#include <optional>
#include <string>

#include "java/VmLibrary.h"

namespace tests {
namespace {

using torvan::java::detail::OptionText;

TEST(VmLibraryOptionTextTest, IsInTheSystemsCodePage) {
  std::string reason;
  EXPECT_EQ(OptionText("-Da=b", reason), "-Da=b");
  EXPECT_EQ(OptionText("", reason), "");
  if (GetACP() != 1252) GTEST_SKIP() << "the system's code page is another one";
  EXPECT_EQ(OptionText("-Da=Z\xC3\xBCrich \xE2\x82\xAC", reason), "-Da=Z\xFCrich \x80");
  EXPECT_EQ(reason, "");
}

TEST(VmLibraryOptionTextTest, ACharacterThatTheCodePageLacksIsTheReason) {
  if (GetACP() != 1252) GTEST_SKIP() << "the system's code page is another one";
  std::string reason;
  EXPECT_EQ(OptionText("-Da=\xE6\x95\xB0", reason), std::nullopt);
  EXPECT_EQ(reason, "has a character that the system's code page 1252, in which Java takes its options, has not");
}

}  // namespace
}  // namespace tests
