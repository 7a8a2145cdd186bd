// The one VM of the program java_realvm.
#include "java/realvm/OneVm.h"

#include <optional>

namespace javatest {

namespace {

class OneVm : public testing::Environment {
 public:
  void SetUp() override { m_vm.emplace(java::StartVm(FixtureSettings())); }
  void TearDown() override { EXPECT_EQ(m_vm->End(), java::VmEnd::Destroyed); }

 private:
  std::optional<java::Vm> m_vm;
};

const testing::Environment* const environment = testing::AddGlobalTestEnvironment(new OneVm);

}  // namespace

RealVmTest::~RealVmTest() {
  const auto pending = java::TakePending();
  EXPECT_EQ(pending.has_value() ? pending->what() : "", std::string()) << "left pending by the test";
}

}  // namespace javatest
