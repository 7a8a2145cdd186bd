#include "java/processes/InputFeed.h"

#include <gtest/gtest.h>

namespace tests {
namespace {

using torvan::java::detail::InputFeed;
using torvan::java::detail::InputSettings;

TEST(InputFeedTest, WhatWasTakenDoesNotMoveTheRest) {
  const InputSettings nothing;
  InputFeed feed(nothing);
  feed.Append(std::string(1000, 'x'));
  const char* const begin = feed.Next().data();
  for (std::size_t taken = 1; taken < 1000; ++taken) {
    feed.Take(1);
    EXPECT_EQ(feed.Next().data(), begin + taken);
    EXPECT_EQ(feed.Taken(), taken);
  }
  feed.Take(1);
  EXPECT_FALSE(feed.HasMore());
}

TEST(InputFeedTest, WhatIsWrittenMeanwhileFollows) {
  const InputSettings nothing;
  InputFeed feed(nothing);
  std::string written;
  std::string taken;
  for (std::size_t i = 0; i < 200; ++i) {
    const std::string piece(i % 7, static_cast<char>('a' + i % 26));
    written += piece;
    feed.Append(piece);
    const std::string next(feed.Next().substr(0, i % 5));
    taken += next;
    feed.Take(next.size());
  }
  taken += feed.Next();
  EXPECT_EQ(taken, written);
}

TEST(InputFeedTest, WhatTheSettingsSayComesFirst) {
  InputSettings settings;
  settings.text = "first";
  InputFeed feed(settings);
  feed.Append("second");
  EXPECT_EQ(feed.Next(), "first");
  feed.Take(5);
  EXPECT_EQ(feed.Taken(), 0u);
  EXPECT_EQ(feed.Next(), "second");
  feed.Drop();
  EXPECT_FALSE(feed.HasMore());
  EXPECT_EQ(feed.Next(), "");
}

}  // namespace
}  // namespace tests
