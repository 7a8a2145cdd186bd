// How many references each operation makes and deletes.
#include <torvan/java/Cast.h>
#include <torvan/java/Failure.h>
#include <torvan/java/Implement.h>
#include <torvan/java/LocalFrame.h>
#include <torvan/java/Weak.h>

#include <new>
#include <stdexcept>
#include <string>
#include <thread>

#include "java/CountedVm.h"

namespace tests {
namespace {

using namespace torvan::java;
using namespace torvan::java::detail;

class RefCountsTest : public CountedVmTest {
 protected:
  Local<> Made() { return Own<Object>(jvm.Env(), NewLocal()); }
  // Drops something on a thread that is not attached.
  template <typename T>
  static void DropElsewhere(T&& dropped) {
    std::thread([moved = std::forward<T>(dropped)]() mutable {
      isAttached = false;
      moved.Reset();
    }).join();
  }
};

TEST_F(RefCountsTest, ALocalIsDeletedOnce) {
  {
    Local<> first = Made();
    Local<> second = std::move(first);
    Local<> third = Made();
    third = std::move(second);
    EXPECT_EQ(locals, 1);
    third = Made();
    EXPECT_EQ(locals, 1);
    third.Reset();
    EXPECT_EQ(locals, 0);
  }
  EXPECT_EQ(Calls("DeleteLocalRef"), 3u);
}

TEST_F(RefCountsTest, ALocalThatIsMovedToItselfStays) {
  Local<> local = Made();
  Local<>& same = local;
  local = std::move(same);
  EXPECT_TRUE(local);
  EXPECT_EQ(locals, 1);
}

TEST_F(RefCountsTest, WhatIsMovedToAnotherTagIsNullAndDeletedOnce) {
  {
    Local<String> text = Own<String>(jvm.Env(), NewLocal());
    const Local<> object = std::move(text);
    EXPECT_FALSE(text);
    Global<String> globalText = GlobalOf<String>(jvm.Env(), object.Get());
    const Global<> global = std::move(globalText);
    EXPECT_FALSE(globalText);
    EXPECT_EQ(jvm.LiveGlobals(), 1u);
    EXPECT_EQ(locals, 1);
  }
  EXPECT_EQ(Calls("DeleteLocalRef"), 1u);
  EXPECT_EQ(Calls("DeleteGlobalRef"), 1u);
}

TEST_F(RefCountsTest, AReleasedLocalIsTheCallers) {
  Local<> local = Made();
  EXPECT_NE(local.Release(), nullptr);
  local.Reset();
  EXPECT_EQ(locals, 1);
  locals = 0;
}

TEST_F(RefCountsTest, ALocalOfAThreadThatLeftIsNotTouched) {
  Local<> local = Made();
  isAttached = false;
  local.Reset();
  isAttached = true;
  EXPECT_EQ(locals, 1);
  EXPECT_FALSE(local);
  locals = 0;
}

TEST_F(RefCountsTest, ALocalOfAnotherEnvironmentIsNotTouched) {
  Local<> local = Made();
  static JNIEnv other = *jvm.Env();
  jvm.On<&Invocation::GetEnv>([](void** env, jint) {
    *env = &other;
    return JNI_OK;
  });
  local.Reset();
  EXPECT_EQ(locals, 1);
  locals = 0;
}

TEST_F(RefCountsTest, CopiesOfAGlobalShareOneReference) {
  {
    const Global<> first(Made());
    EXPECT_EQ(locals, 0);
    Global<> second = first;
    Global<> third(second);
    second = third;
    third = std::move(second);
    EXPECT_EQ(jvm.LiveGlobals(), 1u);
    third.Reset();
    EXPECT_FALSE(third);
    EXPECT_TRUE(first);
  }
  EXPECT_EQ(Calls("NewGlobalRef"), 1u);
  EXPECT_EQ(Calls("DeleteGlobalRef"), 1u);
}

TEST_F(RefCountsTest, NullReferencesAskForNothing) {
  const Global<> global(nullptr);
  const Global<> copy = global;
  const Global<> made = GlobalOf<Object>(jvm.Env(), nullptr);
  const Weak<> weak(global);
  EXPECT_FALSE(weak.Lock());
  const Local<> local(copy);
  EXPECT_TRUE(torvan::java::Same(global, local));
  EXPECT_FALSE(Ref<String>(static_cast<jobject>(nullptr)));
  EXPECT_FALSE(Cast<String>(Local<>()));
  EXPECT_FALSE(Cast<String>(global));
  EXPECT_FALSE(IsInstance<String>(global));
  EXPECT_THAT(jvm.Calls(), testing::IsEmpty());
}

TEST_F(RefCountsTest, WeakReferencesAreShared) {
  {
    const Weak<> first(Made());
    Weak<> second = first;
    EXPECT_EQ(jvm.LiveWeaks(), 1u);
    EXPECT_TRUE(second.Lock());
    second.Reset();
    EXPECT_FALSE(second.Lock());
    EXPECT_EQ(jvm.LiveWeaks(), 1u);
  }
  EXPECT_EQ(jvm.LiveWeaks(), 0u);
}

TEST_F(RefCountsTest, AVmThatRefusesAReferenceLeavesNothing) {
  const Local<> local = Made();
  jvm.AnswerNull("NewGlobalRef(local:1)");
  EXPECT_THROW(Global<>{local}, std::bad_alloc);
  jvm.AnswerNull("NewWeakGlobalRef(local:1)");
  EXPECT_THROW(Weak<>{local}, std::bad_alloc);
  jvm.AnswerNull("NewLocalRef(local:1)");
  EXPECT_THROW(Local<>{Ref<Object>(local)}, std::bad_alloc);
  EXPECT_EQ(jvm.LiveGlobals(), 0u);
  EXPECT_EQ(locals, 1);
}

TEST_F(RefCountsTest, WhatAnUnattachedThreadDropsIsDeletedByTheNextThatMakesOne) {
  Global<> global(Made());
  Weak<> weak(global);
  Global<> kept = global;
  DropElsewhere(std::move(global));
  EXPECT_EQ(jvm.LiveGlobals(), 1u) << "it is not the last";
  DropElsewhere(std::move(kept));
  DropElsewhere(std::move(weak));
  EXPECT_EQ(jvm.LiveGlobals(), 1u);
  EXPECT_EQ(jvm.LiveWeaks(), 1u);
  const Global<> next(Made());
  EXPECT_EQ(jvm.LiveGlobals(), 1u);
  EXPECT_EQ(jvm.LiveWeaks(), 0u);
}

TEST_F(RefCountsTest, WhatAnUnattachedThreadDropsIsDeletedByTheNextThatIsAttached) {
  jvm.On<&Invocation::AttachCurrentThreadAsDaemon>([this](void** env, void*) {
    *env = jvm.Env();
    isAttached = true;
    return JNI_OK;
  });
  jvm.Return<&Invocation::DetachCurrentThread>(JNI_OK);
  DropElsewhere(Global<>(Made()));
  EXPECT_EQ(jvm.LiveGlobals(), 1u);
  std::thread([] {
    isAttached = false;
    torvan::java::detail::Env();
  }).join();
  EXPECT_EQ(jvm.LiveGlobals(), 0u);
}

TEST_F(RefCountsTest, AFrameIsPoppedWhereItWasPushed) {
  jvm.Return<&Jni::PushLocalFrame>(JNI_OK);
  jvm.On<&Jni::PopLocalFrame>([](jobject result) { return result; });
  {
    const LocalFrame frame(16);
    EXPECT_EQ(Calls("PushLocalFrame(16)"), 1u);
    EXPECT_EQ(Calls("PopLocalFrame"), 0u);
  }
  EXPECT_EQ(Calls("PopLocalFrame(null)"), 1u);
  {
    const LocalFrame stray;
    isAttached = false;
  }
  isAttached = true;
  {
    const LocalFrame late;
    UseVm(nullptr);
  }
  EXPECT_EQ(Calls("PopLocalFrame"), 1u);
}

TEST_F(RefCountsTest, AnArgumentOfACallbackIsDeletedOnlyWhereTheFunctionOwnsIt) {
  const auto callWith = [this](auto function) {
    using F = decltype(function);
    const auto callback = CallbackMaker<typename SignatureOf<F>::Type, F>::Make(function, "name");
    callback->Call(jvm.Env(), {BitsOf(NewLocal()), 0, 0}, "name");
  };
  callWith([](Ref<Object> object) { EXPECT_TRUE(object); });
  EXPECT_EQ(locals, 1);
  callWith([](const Local<>& object) { EXPECT_TRUE(object); });
  EXPECT_EQ(locals, 1);
  locals = 0;
}

TEST_F(RefCountsTest, WhatUnwindingDropsIsDeleted) {
  try {
    const Global<> global(Made());
    const Local<> local = Made();
    throw std::runtime_error("on its way");
  } catch (const std::runtime_error&) {
    EXPECT_EQ(jvm.LiveGlobals(), 0u);
    EXPECT_EQ(locals, 0);
  }
}

TEST_F(RefCountsTest, AfterTheEndOfTheVmNothingIsAskedOfIt) {
  jobject raw = nullptr;
  {
    Global<> global(Made());
    const Global<> copy = global;
    const Weak<> weak(copy);
    Local<> local = Made();
    raw = global.Get();
    jvm.TakeCalls();
    UseVm(nullptr);
    EXPECT_THROW(weak.Lock(), torvan::java::Misuse);
    EXPECT_THROW(Local<>{global}, torvan::java::Misuse);
    EXPECT_THROW(Global<>{local}, torvan::java::Misuse);
    DropElsewhere(std::move(global));
  }
  EXPECT_THAT(jvm.Calls(), testing::IsEmpty());
  locals = 0;  // they went with the VM
  jvm.Env()->DeleteWeakGlobalRef(static_cast<jweak>(raw));
  jvm.Env()->DeleteGlobalRef(raw);
}

}  // namespace
}  // namespace tests
