// Reasons in the words of a Windows machine.
#include "java/processes/Surroundings.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace tests {
namespace {

using torvan::java::detail::ReasonOf;

// On a machine whose language has more letters than ASCII, the standard library's words would be in the code page.
TEST(SurroundingsTest, TheStandardLibrarysErrorsOfTheSystemAreInTheWordsOfTheirNumbers) {
  const auto reasonOf = [](int error) { return ReasonOf(std::error_code(error, std::system_category())); };
  EXPECT_EQ(reasonOf(ERROR_ACCESS_DENIED), ReasonOf(static_cast<unsigned long>(ERROR_ACCESS_DENIED)));
  EXPECT_EQ(reasonOf(0x7FFFFFFF), "error 2147483647");  // has no words
}

TEST(SurroundingsTest, TheStandardLibrarysOtherErrorsAreInItsOwnWords) {
  const auto error = std::make_error_code(std::errc::resource_unavailable_try_again);
  EXPECT_EQ(ReasonOf(error), error.message());
}

}  // namespace
}  // namespace tests
