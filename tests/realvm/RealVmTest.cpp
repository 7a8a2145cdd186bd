#include "realvm/RealVmTest.h"

#include <optional>

namespace tests {

using torvan::jni::CJavaVm;

namespace {

std::optional<CJavaVm>& TheVm() {
  static std::optional<CJavaVm> vm;
  return vm;
}

class OneVm : public testing::Environment {
 public:
  void SetUp() override {
    torvan::Initialize();
    TheVm().emplace(Runtime().CreateJavaVm(FixtureOptions(), false));
  }
  void TearDown() override {
    TheVm().reset();
    torvan::Terminate();
  }
};

const testing::Environment* const environment = testing::AddGlobalTestEnvironment(new OneVm);

}  // namespace

const CJavaVm& Vm() { return TheVm().value(); }

RealVmTest::RealVmTest() { env->PushLocalFrame(256); }

RealVmTest::~RealVmTest() noexcept {
  EXPECT_EQ(TakePending(env), "") << "left pending by the test";
  env->PopLocalFrame(nullptr);
}

}  // namespace tests
