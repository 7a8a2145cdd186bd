#include <gtest/gtest.h>
#include <torvan/java/Failure.h>

#include <exception>
#include <string>

namespace tests {
namespace {

using namespace torvan::java;

template <typename Base>
std::string TextCaughtBy(const Failure& thrown) {
  try {
    throw Misuse(static_cast<const Misuse&>(thrown));
  } catch (const Base& caught) {
    if constexpr (std::is_base_of_v<std::exception, Base>) {
      return caught.what();
    } else {
      return caught.GetMessageText();
    }
  }
}

TEST(FailureTest, IsCaughtByEachOfItsBases) {
  const Misuse thrown("java/Somewhere", 7, std::string("a text ") + "of its own");
  EXPECT_EQ(TextCaughtBy<Misuse>(thrown), "a text of its own");
  EXPECT_EQ(TextCaughtBy<Failure>(thrown), "a text of its own");
  EXPECT_EQ(TextCaughtBy<torvan::jni::CJniException>(thrown), "a text of its own");
  EXPECT_EQ(TextCaughtBy<mirel::base::CException>(thrown), "a text of its own");
  EXPECT_EQ(TextCaughtBy<std::exception>(thrown), "a text of its own");
}

TEST(FailureTest, SaysWhereItWasRaised) {
  const StartFailure failure("java/Somewhere", 7, "text");
  EXPECT_STREQ(failure.GetSourceFile(), "java/Somewhere");
  EXPECT_EQ(failure.GetSourceLine(), 7u);
}

TEST(FailureTest, CopiesKeepTheTextOfAFailureThatIsGone) {
  std::exception_ptr kept;
  {
    auto first = std::make_unique<StartFailure>("java/Somewhere", 7, std::string(100, 'x'));
    StartFailure copy("java/Elsewhere", 8, "other");
    copy = *first;
    first.reset();
    EXPECT_EQ(copy.what(), std::string(100, 'x'));
    EXPECT_STREQ(copy.GetMessageText(), copy.what());
    kept = std::make_exception_ptr(copy);
  }
  try {
    std::rethrow_exception(kept);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.GetMessageText(), std::string(100, 'x'));
  }
}

static_assert(std::is_nothrow_copy_constructible_v<Failure> && std::is_nothrow_copy_assignable_v<Failure>);
static_assert(std::is_nothrow_copy_constructible_v<Misuse> && std::is_nothrow_copy_constructible_v<StartFailure>);

}  // namespace
}  // namespace tests
