// What every container test checks.
#pragma once

#include "foundation/mirel/util/Counted.h"

#include <fakes/Allocations.h>
#include <fakes/Failure.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace tests {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Counts blocks and elements. At the end of a test every block must be freed and every element destroyed.
class ContainerTest : public ::testing::Test {
 protected:
  ContainerTest() { Counted::tally = {}; }
  ~ContainerTest() override {
    EXPECT_EQ(allocations.Live(), 0u);
    EXPECT_EQ(Counted::tally.Live(), 0);
  }

  Allocations allocations;
};

// Reads the bytes of an object as the fields that hosts compile against.
template <typename Fields, typename Object>
Fields FieldsOf(const Object& object) {
  static_assert(sizeof(Fields) == sizeof(Object));
  Fields fields;
  std::memcpy(&fields, static_cast<const void*>(&object), sizeof(fields));
  return fields;
}

}  // namespace tests
