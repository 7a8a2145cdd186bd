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

  // The operation throws what raw JNI has left pending, and nothing is pending then.
  template <typename Operation>
  static void ExpectWhatIsPendingFirst(Operation operation) {
    JNIEnv* const env = java::detail::Env();
    env->ThrowNew(java::detail::ClassOf<java::Throwable>(env), "left by raw JNI");
    EXPECT_EQ(WhatOf<java::Error>(operation), "java.lang.Throwable: left by raw JNI");
    EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
  }
};

}  // namespace tests
