// What the tests on one VM share.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "java/What.h"
#include "java/realvm/Fixtures.h"

namespace tests {

// The VM of all tests.
const java::Vm& TheVm();

// Each test ends with no Java exception pending.
class RealVmTest : public testing::Test {
 protected:
  ~RealVmTest() override;
};

}  // namespace tests
