// The one VM of the program realvm_behaviour, and what its tests share.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "realvm/RealRuntime.h"

namespace tests {

// The VM, created before the first test. The runtime handle that created it is gone by then.
const torvan::jni::CJavaVm& Vm();

// Each test has its own frame of local references and ends with no Java exception pending.
// A fixture that holds handles declares its destructor, which must not throw though theirs may.
class RealVmTest : public testing::Test {
 protected:
  RealVmTest();
  ~RealVmTest() noexcept override;

  const torvan::jni::CJavaVm& vm = Vm();
  JNIEnv* const env = vm.Attach();
};

// A narrow or wide text of ASCII characters.
template <typename Unit>
std::basic_string<Unit> Spell(const char* text) {
  return std::basic_string<Unit>(text, text + std::char_traits<char>::length(text));
}

}  // namespace tests
