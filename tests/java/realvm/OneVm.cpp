// The one VM of the program java_realvm.
#include "java/realvm/OneVm.h"

#include <optional>

namespace tests {

namespace {

std::optional<java::Vm> s_vm;

class OneVm : public testing::Environment {
 public:
  void SetUp() override { s_vm.emplace(java::StartVm(FixtureSettings())); }
  void TearDown() override { EXPECT_EQ(s_vm->End(), java::VmEnd::Destroyed); }
};

const testing::Environment* const environment = testing::AddGlobalTestEnvironment(new OneVm);

}  // namespace

const java::Vm& TheVm() { return *s_vm; }

RealVmTest::~RealVmTest() {
  const auto pending = java::TakePending();
  EXPECT_EQ(pending.has_value() ? pending->what() : "", std::string()) << "left pending by the test";
}

}  // namespace tests
