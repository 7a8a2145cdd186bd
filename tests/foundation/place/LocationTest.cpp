#include <gtest/gtest.h>
#include <place/Location.h>

#include <memory>
#include <string>

#include "foundation/MemoryFailures.h"

namespace tests {
namespace {

using WideText = std::basic_string<RX::UniChar>;

// What ToPath leaves in a text that held something else; a null text shows as "(null)".
struct Answer {
  int status;
  WideText path;
};

Answer AnswerOf(const Place::Location& location) {
  RX::UniString path(RX_TEXT("before"));
  const int status = location.ToPath(path);
  const RX::UniChar* const units = path;
  return {status, units != nullptr ? WideText(units) : WideText(RX_TEXT("(null)"))};
}

TEST(LocationTest, AFileIsNamedByItsPath) {
  const Answer answer = AnswerOf(Place::Location(RX_TEXT("C:\\Programme\\a b\\\u00e4.jar")));
  EXPECT_EQ(answer.status, 0);
  EXPECT_EQ(answer.path, WideText(RX_TEXT("C:\\Programme\\a b\\\u00e4.jar")));
}

TEST(LocationTest, ALocationWithoutAPathReturnsAStatusAndEmptiesTheText) {
  const struct {
    const char* name;
    Place::Location location;
  } rows[] = {
      {"default", Place::Location()},
      {"null", Place::Location(static_cast<const RX::UniChar*>(nullptr))},
      {"empty", Place::Location(RX_TEXT(""))},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.name);
    const Answer answer = AnswerOf(row.location);
    EXPECT_NE(answer.status, 0);
    EXPECT_EQ(answer.path, WideText(RX_TEXT("(null)")));
  }
}

TEST(LocationTest, CopiesAreIndependent) {
  auto original = std::make_unique<Place::Location>(RX_TEXT("/a"));
  const Place::Location copy(*original);
  Place::Location assigned(RX_TEXT("/b"));
  assigned = *original;
  *original = Place::Location();
  original.reset();
  EXPECT_EQ(AnswerOf(copy).path, WideText(RX_TEXT("/a")));
  EXPECT_EQ(AnswerOf(assigned).path, WideText(RX_TEXT("/a")));
}

TEST(LocationTest, ExhaustionThrowsAndChangesNothing) {
  const Place::Location other(RX_TEXT("/other"));
  Place::Location location(RX_TEXT("/a"));
  RX::UniString path(RX_TEXT("before"));
  const auto unchanged = [&] {
    EXPECT_EQ(WideText(path), WideText(RX_TEXT("before")));
    RX::UniString now;
    EXPECT_EQ(location.ToPath(now), 0);
    EXPECT_EQ(WideText(now), WideText(RX_TEXT("/a")));
  };
  EXPECT_EQ(FailEachRootAllocationOf([&] { Place::Location made(RX_TEXT("/x")); }, unchanged), 1);
  EXPECT_EQ(FailEachRootAllocationOf([&] { Place::Location made(other); }, unchanged), 1);
  EXPECT_EQ(FailEachRootAllocationOf([&] { location.ToPath(path); }, unchanged), 1);
  path = RX::UniString(RX_TEXT("before"));
  EXPECT_EQ(FailEachRootAllocationOf([&] { location = other; }, unchanged), 1);
}

}  // namespace
}  // namespace tests
