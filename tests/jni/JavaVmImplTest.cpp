// A VM handle and the implementation that it is made of.
#include <mirel/base/NullReferenceException.h>
#include <torvan/jni/JavaVm.h>

#include "fakes/Failure.h"
#include "jni/JavaVmImpl.h"

namespace torvan::jni {

// The handle's friend as this file has it: the library's own never makes a handle of nothing.
class CJavaRuntimeImpl {
 public:
  static CJavaVm HandleOf(const mirel::base::CRef<CJavaVmImpl>& impl) { return CJavaVm(impl); }
};

namespace {

TEST(JavaVmImplTest, AHandleOfNothingIsRefused) {
  EXPECT_EQ(tests::FailureOf([] { CJavaRuntimeImpl::HandleOf({}); }),
            tests::Throws<mirel::base::CNullReferenceException>("mirel/base/Ref", 423, nullptr));
}

}  // namespace

}  // namespace torvan::jni
