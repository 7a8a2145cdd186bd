// What the tests on one VM share.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "java/realvm/Fixtures.h"

namespace javatest {

// Each test ends with no Java exception pending.
class RealVmTest : public testing::Test {
 protected:
  ~RealVmTest() override;
};

// The text of what a function throws, "" where it throws nothing; the class has to be right.
template <typename Expected, typename Function>
std::string WhatOf(Function&& function) {
  try {
    function();
  } catch (const Expected& failure) {
    return failure.what();
  }
  return "";
}

}  // namespace javatest
