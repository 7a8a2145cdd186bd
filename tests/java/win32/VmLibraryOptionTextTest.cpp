// Options in the system's code page.
#include <gtest/gtest.h>
#include <torvan/java/Failure.h>
#include <windows.h>

#include "java/VmLibrary.h"
#include "java/What.h"

namespace tests {
namespace {

using torvan::java::detail::OptionText;

TEST(VmLibraryOptionTextTest, IsInTheSystemsCodePage) {
  EXPECT_EQ(OptionText("-Da=b"), "-Da=b");
  EXPECT_EQ(OptionText(""), "");
  if (GetACP() != 1252) GTEST_SKIP() << "the system's code page is another one";
  EXPECT_EQ(OptionText("-Da=Z\xC3\xBCrich \xE2\x82\xAC"), "-Da=Z\xFCrich \x80");
}

TEST(VmLibraryOptionTextTest, ACharacterThatTheCodePageLacksIsRefused) {
  if (GetACP() != 1252) GTEST_SKIP() << "the system's code page is another one";
  EXPECT_EQ(WhatOf<torvan::java::StartFailure>([] { OptionText("-Da=\xE6\x95\xB0"); }),
            "The option -Da=\xE6\x95\xB0 has a character that the system's code page 1252, in which Java takes its "
            "options, has not");
}

}  // namespace
}  // namespace tests
