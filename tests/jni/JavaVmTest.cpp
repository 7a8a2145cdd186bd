#include <torvan/jni/JavaVm.h>

#include <gmock/gmock.h>
#include <mirel/base/MemoryException.h>
#include <torvan/JavaVmException.h>

#include <optional>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "fakes/JvmTest.h"

namespace tests {

using namespace torvan::jni;

namespace {

using mirel::base::CMemoryException;
using testing::ElementsAre;
using testing::IsEmpty;

using JavaVmTest = JvmTest;

TEST_F(JavaVmTest, AttachReturnsTheThreadsEnvironmentEveryTime) {
  jvm.AnswerAttachment();
  const CJavaVm vm = Vm();
  EXPECT_EQ(vm.Attach(), jvm.Env());
  EXPECT_EQ(vm.Attach(), jvm.Env());
  vm.Detach();
  EXPECT_THAT(jvm.Calls(),
              ElementsAre("AttachCurrentThread(null)", "AttachCurrentThread(null)", "DetachCurrentThread"));
}

class JavaVmStatusTest : public JvmTest, public testing::WithParamInterface<jint> {};

TEST_P(JavaVmStatusTest, AttachReportsEveryStatusButSuccess) {
  jvm.Return<&Invocation::AttachCurrentThread>(GetParam());
  EXPECT_EQ(FailureOf([&] { Vm().Attach(); }),
            Throws<CJavaVmException>("jni/JavaVm", AnyLine,
                                     "Failed ot attach the current thread to the underlying Java VM."));
}

TEST_P(JavaVmStatusTest, DetachReportsEveryStatusButSuccess) {
  jvm.Return<&Invocation::DetachCurrentThread>(GetParam());
  EXPECT_EQ(FailureOf([&] { Vm().Detach(); }),
            Throws<CJavaVmException>("jni/JavaVm", AnyLine,
                                     "Failed to detach the curretn thread from the underlying Java VM."));
}

INSTANTIATE_TEST_SUITE_P(Statuses, JavaVmStatusTest, testing::Values(JNI_ERR, JNI_EVERSION, 1));

TEST_F(JavaVmTest, HandlesAreEqualWhenTheirVmIs) {
  FakeJvm other;
  const CJavaVm one = Vm();
  const CJavaVm same = Vm();
  const CJavaVm different = HandleOf(other);
  EXPECT_TRUE(one == same);
  EXPECT_FALSE(one != same);
  EXPECT_FALSE(one == different);
  EXPECT_TRUE(one != different);
}

TEST_F(JavaVmTest, CopiesShareTheVmWithoutMemoryAndWithoutJni) {
  const CJavaVm vm = Vm();
  const Allocations allocations;
  const CJavaVm copy(vm);
  EXPECT_TRUE(copy == vm);
  EXPECT_EQ(allocations.Made(), 0);
  EXPECT_THAT(jvm.Calls(), IsEmpty());
}

TEST_F(JavaVmTest, AssignmentTakesTheOtherVm) {
  FakeJvm other;
  other.AnswerAttachment();
  CJavaVm vm = Vm();
  const CJavaVm source = HandleOf(other);
  EXPECT_EQ(&(vm = source), &vm);
  EXPECT_TRUE(vm == source);
  EXPECT_EQ(vm.Attach(), other.Env());
}

TEST_F(JavaVmTest, AssignmentToItselfChangesNothing) {
  jvm.AnswerAttachment();
  CJavaVm vm = Vm();
  CJavaVm& same = vm;
  vm = same;
  EXPECT_EQ(vm.Attach(), jvm.Env());
}

// A runtime that tells when it goes.
class WatchedRuntimeImpl : public FakeRuntimeImpl {
 public:
  explicit WatchedRuntimeImpl(bool& alive) : m_alive(alive) { m_alive = true; }
  ~WatchedRuntimeImpl() noexcept(false) override { m_alive = false; }

 private:
  bool& m_alive;
};

class WatchedRuntime : public CJavaRuntime {
 public:
  explicit WatchedRuntime(bool& alive)
      : CJavaRuntime(mirel::base::CRef<CJavaRuntimeImpl>(new WatchedRuntimeImpl(alive))) {}
};

class JavaVmLifetimeTest : public JvmTest {
 protected:
  CJavaVm WatchedVm(bool& alive) { return FakeRuntimeImpl::Wrap(WatchedRuntime(alive), jvm.Vm()); }
};

TEST_F(JavaVmLifetimeTest, TheRuntimeLivesAsLongAsAHandleOfItsVm) {
  const Allocations allocations;
  bool alive = false;
  std::optional<CJavaVm> first(WatchedVm(alive));
  std::optional<CJavaVm> second(*first);
  EXPECT_TRUE(alive);
  first.reset();
  EXPECT_TRUE(alive);
  second.reset();
  EXPECT_FALSE(alive);
  EXPECT_EQ(allocations.Live(), 0u);
  EXPECT_THAT(jvm.Calls(), IsEmpty()) << "the VM is never ended";
}

TEST_F(JavaVmLifetimeTest, AssignmentDropsTheOwnVm) {
  bool alive = false;
  CJavaVm vm = WatchedVm(alive);
  vm = Vm();
  EXPECT_FALSE(alive);
}

// A runtime whose end fails.
class ThrowingRuntimeImpl : public FakeRuntimeImpl {
 public:
  ~ThrowingRuntimeImpl() noexcept(false) override { throw 42; }
};

class ThrowingRuntime : public CJavaRuntime {
 public:
  ThrowingRuntime() : CJavaRuntime(mirel::base::CRef<CJavaRuntimeImpl>(new ThrowingRuntimeImpl())) {}
};

TEST_F(JavaVmLifetimeTest, AForeignExceptionOfTheOwnVmsEndPassesAndTheAssignmentIsComplete) {
  FakeJvm other;
  const Allocations allocations;
  {
    CJavaVm vm = FakeRuntimeImpl::Wrap(ThrowingRuntime(), jvm.Vm());
    const CJavaVm source = HandleOf(other);
    EXPECT_THROW(vm = source, int);
    EXPECT_TRUE(vm == source);
  }
  EXPECT_EQ(allocations.Live(), 0u);
}

TEST_F(JavaVmLifetimeTest, RunningOutOfMemoryForAHandleKeepsNothing) {
  bool alive = false;
  const int failures = FailEachAllocation(
      [&] {
        const Failure failure = FailureOf([&] { WatchedVm(alive); });
        EXPECT_TRUE(failure.type == typeid(void) || failure.type == typeid(CMemoryException)) << failure;
      },
      [&](int, const Allocations& allocations) {
        EXPECT_FALSE(alive);
        EXPECT_EQ(allocations.Live(), 0u);
      });
  EXPECT_EQ(failures, 4) << "an object and its count for the runtime, and the same for the VM";
}

}  // namespace

}  // namespace tests
