// References to objects of a real VM.
#include <exception>
#include <functional>
#include <future>
#include <optional>
#include <thread>
#include <vector>

#include "ThreadSanitizer.h"
#include "java/realvm/CountedReferences.h"
#include "java/realvm/OneVm.h"
#include "java/realvm/Resident.h"

namespace tests {
namespace {

using java::Cast;
using java::Global;
using java::IsInstance;
using java::Local;
using java::Misuse;
using java::Object;
using java::Ref;
using java::Same;
using java::Weak;

class RefTest : public RealVmTest {};

// Whether a call on the object works and returns what it should.
std::string NameOf(const Ref<Named>& named) {
  const auto name = java::Adopt<java::String>(CallObject(named.Get(), "name", "()Ljava/lang/String;"));
  return java::detail::ReadUtf8(java::detail::Env(), static_cast<jstring>(name.Get()));
}

TEST_F(RefTest, ALocalIsMovedAndLeavesNull) {
  Local<Child> first = New<Child>();
  jobject const raw = first.Get();
  Local<Child> second = std::move(first);
  EXPECT_FALSE(first);
  EXPECT_EQ(second.Get(), raw);
  Local<Child> third = New<Child>();
  third = std::move(second);
  EXPECT_FALSE(second);
  EXPECT_EQ(third.Get(), raw);
  third.Reset();
  EXPECT_FALSE(third);
  static_assert(!std::is_copy_constructible_v<Local<Child>> && std::is_nothrow_move_constructible_v<Local<Child>>);
}

TEST_F(RefTest, AReferenceIsCastUpWithoutATest) {
  Local<Child> child = New<Child>();
  jobject const raw = child.Get();
  const Global<Child> global(child);
  EXPECT_EQ(NameOf(child), "child");
  EXPECT_EQ(NameOf(global), "child");
  const Local<Parent> parent = std::move(child);
  EXPECT_EQ(parent.Get(), raw);
  const Global<Named> named = global;
  EXPECT_EQ(named.Get(), global.Get());
  const Global<Object> object = named;
  EXPECT_TRUE(Same(object, parent));
}

TEST_F(RefTest, AReferenceIsCastDownWithATest) {
  const Global<Object> object(New<Child>());
  EXPECT_EQ(NameOf(Cast<Child>(object)), "child");
  EXPECT_EQ(Cast<Child>(object).Get(), object.Get()) << "a global is shared";
  Local<Object> local(object);
  jobject const raw = local.Get();
  const Local<Parent> parent = Cast<Parent>(std::move(local));
  EXPECT_EQ(parent.Get(), raw);
  EXPECT_FALSE(local);
  EXPECT_FALSE(Cast<Child>(Local<Object>()));
  EXPECT_FALSE(Cast<Child>(Global<Object>()));
  EXPECT_FALSE(Cast<Child>(Ref<Object>(nullptr)));
}

TEST_F(RefTest, AWrongCastNamesBothClassesAndKeepsTheReference) {
  Local<Object> integer = NewInteger(7);
  const std::string text = "A java.lang.Integer is given where a fixture.Kinds$Named is needed";
  EXPECT_EQ(WhatOf<Misuse>([&] { Cast<Named>(std::move(integer)); }), text);
  EXPECT_TRUE(integer);
  EXPECT_EQ(WhatOf<Misuse>([&] { Cast<Named>(Ref<Object>(integer)); }), text);
  EXPECT_EQ(WhatOf<Misuse>([&] { Cast<Named>(Global<Object>(integer)); }), text);
  EXPECT_EQ(WhatOf<Misuse>([&] { NameOf(integer.Get()); }), text) << "a raw reference is tested";
  EXPECT_EQ(WhatOf<Misuse>([&] { java::Adopt<Named>(integer.Release()); }), text);
}

TEST_F(RefTest, KnowsInstancesAndSameness) {
  const Local<Parent> parent = New<Parent>();
  EXPECT_TRUE(IsInstance<Named>(parent));
  EXPECT_FALSE(IsInstance<Child>(parent));
  EXPECT_FALSE(IsInstance<Object>(nullptr));
  EXPECT_TRUE(Same(parent, Global<Parent>(parent)));
  EXPECT_FALSE(Same(parent, New<Parent>()));
  EXPECT_FALSE(Same(parent, nullptr));
  EXPECT_FALSE(Same(nullptr, parent));
  EXPECT_TRUE(Same(nullptr, Local<Child>()));
}

TEST_F(RefTest, EachKindIsMadeOfEachOther) {
  const Local<Child> local = New<Child>();
  const Global<Child> global(local);
  EXPECT_EQ(NameOf(Local<Child>(global)), "child");
  EXPECT_EQ(NameOf(Global<Named>(Ref<Child>(local))), "child");
  EXPECT_EQ(NameOf(Weak<Child>(global).Lock()), "child");
  EXPECT_EQ(NameOf(Weak<Named>(local).Lock()), "child");
  EXPECT_NE(Local<Child>(Ref<Child>(local)).Get(), local.Get());
  EXPECT_FALSE(Local<Child>(Global<Child>()));
  EXPECT_FALSE(Global<Child>(Local<Child>()));
  EXPECT_FALSE(Global<Child>(nullptr));
  EXPECT_FALSE(Weak<Child>(Global<Child>()).Lock());
  EXPECT_FALSE(Weak<Child>().Lock());
}

TEST_F(RefTest, HandlesOfTheFixedInterfaceGoBothWays) {
  const Local<Child> child = New<Child>();
  const torvan::jni::CJavaObject handle = java::Handle(child);
  EXPECT_EQ(handle.CallIntMethod("number", "()I"), 2);
  EXPECT_EQ(NameOf(handle), "child");
  EXPECT_EQ(NameOf(Local<Child>(handle)), "child");
  EXPECT_TRUE(IsInstance<Child>(Global<Object>(handle)));
  EXPECT_EQ(WhatOf<Misuse>([&] { Local<Integer>{handle}; }),
            "A fixture.Kinds$Child is given where a java.lang.Integer is needed");
  EXPECT_TRUE(java::Handle(nullptr) == mirel::base::CNull());
  const torvan::jni::CJavaString text(handle);  // the fixed interface takes any object for a string
  EXPECT_EQ(WhatOf<Misuse>([&] { Local<java::String>{text}; }),
            "A fixture.Kinds$Child is given where a java.lang.String is needed");
}

TEST_F(RefTest, ClassAndStringHandlesOfTheFixedInterfaceAreReferences) {
  static constexpr java::Method<java::Class, std::string()> GetName{"getName"};
  const torvan::jni::CJavaVm& vm = TheVm().Handle();
  const torvan::jni::CJavaClass type = vm.FindClass("fixture/Kinds$Child");
  const Ref<java::Class> ofClass = type;
  const Ref<Object> ofObject = type;
  EXPECT_TRUE(Same(ofClass, ofObject));
  EXPECT_EQ(GetName(type), "fixture.Kinds$Child");
  EXPECT_EQ(GetName(Local<java::Class>(type)), "fixture.Kinds$Child");
  EXPECT_EQ(GetName(Cast<java::Class>(ofObject)), "fixture.Kinds$Child");

  const torvan::jni::CJavaString text = vm.NewString(RX_TEXT("text"));
  EXPECT_EQ(java::ToText(text), "text");
  EXPECT_EQ(java::ToText(Local<java::String>(text)), "text");
  EXPECT_FALSE(Local<java::String>(vm.NewString(nullptr)));
}

TEST_F(RefTest, AWeakReferenceLetsItsObjectGo) {
  Weak<Object> weak;
  {
    const Local<Child> child = New<Child>();
    weak = Weak<Object>(child);
    EXPECT_TRUE(weak.Lock());
  }
  const Weak<Object> copy = weak;
  for (int i = 0; i < 100 && copy.Lock(); ++i) CallStaticInt("fixture/Watch", "alive", "(I)I", 0);
  EXPECT_FALSE(copy.Lock());
  EXPECT_FALSE(weak.Lock());
}

TEST_F(RefTest, WhatIsPendingIsThrownFirst) {
  Local<Child> child = New<Child>();
  const Global<Child> global(child);
  const Weak<Child> weak(child);
  const Local<java::String> text = java::NewString("text");
  const torvan::jni::CJavaObject handle = java::Handle(child);
  ExpectWhatIsPendingFirst([&] { Local<Child>{global}; });
  ExpectWhatIsPendingFirst([&] { Local<Child>{handle}; });
  ExpectWhatIsPendingFirst([&] { Global<Child>{child}; });
  ExpectWhatIsPendingFirst([&] { Weak<Child>{child}; });
  ExpectWhatIsPendingFirst([&] { weak.Lock(); });
  ExpectWhatIsPendingFirst([&] { IsInstance<Parent>(child); });
  ExpectWhatIsPendingFirst([&] { Cast<Parent>(Ref<Child>(child)); });
  ExpectWhatIsPendingFirst([&] { Cast<Parent>(global); });
  ExpectWhatIsPendingFirst([&] { Cast<Parent>(std::move(child)); });
  EXPECT_TRUE(child);
  ExpectWhatIsPendingFirst([] { java::NewString("text"); });
  ExpectWhatIsPendingFirst([] { java::NewString(u"text"); });
  ExpectWhatIsPendingFirst([&] { java::ToText(text); });
  ExpectWhatIsPendingFirst([&] { java::ToUnits(text); });
}

TEST_F(RefTest, WhatIsPendingStaysSoWhereReferencesAreComparedAndDropped) {
  Local<Child> child = New<Child>();
  Global<Child> global(child);
  Weak<Child> weak(child);
  JNIEnv* const env = java::detail::Env();
  env->ThrowNew(java::detail::ClassOf<java::Throwable>(env), "left by raw JNI");
  EXPECT_TRUE(Same(child, global));
  const Global<Child> copy = global;
  const java::Thread thread;
  child.Reset();
  global.Reset();
  weak.Reset();
  EXPECT_EQ(env->ExceptionCheck(), JNI_TRUE);
  env->ExceptionClear();
  EXPECT_EQ(NameOf(copy), "child");
}

TEST_F(RefTest, LocalsThatStrayAreDroppedQuietly) {
  auto stray = std::make_unique<Local<Child>>();
  std::thread([&] {
    *stray = New<Child>();
    EXPECT_TRUE(*stray);
  }).join();
  stray.reset();  // its thread has ended
  Local<Child> own = New<Child>();
  std::thread([moved = std::move(own)]() mutable { moved.Reset(); }).join();
  std::thread([] {
    std::optional<java::Thread> thread(std::in_place, "short");
    Local<Child> local = New<Child>();
    thread.reset();
  }).join();
}

// The thread gets the same environment again, and the references in the places of the earlier ones.
TEST_F(RefTest, WhatIsOfAnEarlierAttachmentLeavesTheNextOneAlone) {
  std::thread([] {
    std::optional<java::Thread> thread(std::in_place, "first");
    Local<Child> stray = New<Child>();
    std::optional<java::ContextClassLoader> loader(java::ClassLoader::Platform());
    std::optional<java::LocalFrame> frame(std::in_place);
    thread.reset();
    thread.emplace("second");
    std::vector<Local<Child>> live;
    for (int i = 0; i < 16; ++i) live.push_back(New<Child>());
    stray.Reset();
    frame.reset();
    loader.reset();
    for (const Local<Child>& local : live) {
      EXPECT_EQ(java::detail::Env()->GetObjectRefType(local.Get()), JNILocalRefType);
    }
    EXPECT_EQ(CallStaticInt("fixture/Vms", "hasContextLoader", "()I"), 1);
  }).join();
}

TEST_F(RefTest, AThreadThatIsNotAttachedCopiesAndDropsAndStaysUnattached) {
  Global<Child> global(New<Child>());
  std::thread([moved = std::move(global)]() mutable {
    const Global<Child> copy = moved;
    moved.Reset();
    EXPECT_EQ(java::detail::EnvIfAttached(), nullptr);
  }).join();
  EXPECT_FALSE(global);
}

struct Annotated : std::runtime_error {
  using std::runtime_error::runtime_error;
  Global<Child> child{New<Child>()};
};

TEST_F(RefTest, GoWhereverValuesGo) {
  const Global<Child> global(New<Child>());
  const std::function<std::string()> function = [global] { return NameOf(global); };
  EXPECT_EQ(function(), "child");
  EXPECT_EQ(std::async(std::launch::async, function).get(), "child");
  std::vector<Global<Child>> many(100, global);
  many.erase(many.begin(), many.begin() + 50);
  EXPECT_EQ(NameOf(many.back()), "child");
  std::vector<Local<Child>> locals;
  for (int i = 0; i < 16; ++i) locals.push_back(New<Child>());
  EXPECT_EQ(NameOf(locals.front()), "child");
  try {
    throw Annotated("with a reference");
  } catch (const Annotated& caught) {
    EXPECT_EQ(NameOf(caught.child), "child");
  }
}

TEST_F(RefTest, AMillionRoundsLeaveNothing) {
  SKIP_AMOUNT_WITH_THREAD_SANITIZER();
  const Local<Child> child = New<Child>();
  const Global<Child> global(child);
  const CountedReferences counted(java::detail::Env());
  ExpectGrowthToEnd(1024, [&] {
    for (int i = 0; i < 1000000; ++i) {
      const Local<Child> local(global);
      const Global<Named> named(local);
      const Weak<Child> weak(local);
    }
  });
  EXPECT_EQ(counted.Locals(), 0);
  EXPECT_EQ(counted.Globals(), 0);
  EXPECT_EQ(counted.Weaks(), 0);
}

TEST_F(RefTest, AFrameEndsWhatTheFixedInterfaceLeaves) {
  const torvan::jni::CJavaObject handle = java::Handle(New<Child>());
  JNIEnv* const env = java::detail::Env();
  jobject left = nullptr;
  {
    const java::LocalFrame frame;
    left = env->NewLocalRef(handle);
    EXPECT_EQ(env->GetObjectRefType(left), JNILocalRefType);
  }
  EXPECT_EQ(WhatOf<Misuse>([] { const java::LocalFrame frame(-1); }), "A frame of -1 local references cannot be made");
}

static_assert(std::is_nothrow_copy_constructible_v<Global<>> && std::is_nothrow_destructible_v<Global<>>);
static_assert(std::is_nothrow_copy_constructible_v<Weak<>> && std::is_nothrow_destructible_v<Local<>>);

}  // namespace
}  // namespace tests
