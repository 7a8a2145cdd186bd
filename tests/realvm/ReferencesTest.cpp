// How long handles keep what they refer to.
#include <algorithm>
#include <functional>
#include <optional>

#include "realvm/RealVmTest.h"

namespace tests {
namespace {

using torvan::jni::CDynamicJavaRuntime;
using torvan::jni::CJavaClass;
using torvan::jni::CJavaObject;
using torvan::jni::CJavaString;
using torvan::jni::CJavaVm;
using Vms = mirel::util::CVector<CJavaVm>;

class ReferencesTest : public RealVmTest {
 protected:
  ReferencesTest() { watch.CallStaticVoidMethod("forgetAll", "()V"); }
  ~ReferencesTest() noexcept override {}

  jint Watched() { return watch.CallStaticIntMethod("watchedCount", "()I"); }
  // The number of watched objects that garbage collection leaves; it is repeated while they are more than these.
  jint Alive(jint expected) { return watch.CallStaticIntMethod("alive", "(I)I", expected); }
  void Watch(const CJavaObject& object) {
    watch.CallStaticVoidMethod("watch", "(Ljava/lang/Object;)V", static_cast<jobject>(object));
  }
  CJavaObject Fresh() { return watch.CallStaticObjectMethod("fresh", "()Ljava/lang/Object;"); }

  // Runs an operation and deletes the local references that it leaves in this thread.
  template <typename Operation>
  auto InFrame(Operation operation) {
    env->PushLocalFrame(4096);
    struct Pop {
      JNIEnv* env;
      ~Pop() { env->PopLocalFrame(nullptr); }
    } pop{env};
    return operation();
  }

  const CJavaClass watch = vm.FindClass("fixture/Watch");
};

TEST_F(ReferencesTest, AnObjectLivesAsLongAsAHandleOfIt) {
  std::optional<CJavaObject> object(InFrame([&] { return Fresh(); }));
  std::optional<CJavaObject> copy(object);
  const CJavaObject other = InFrame([&] { return Fresh(); });
  EXPECT_EQ(Watched(), 2);
  EXPECT_EQ(Alive(2), 2);
  object.reset();
  EXPECT_EQ(Alive(2), 2);
  copy = other;
  EXPECT_EQ(Alive(1), 1);
}

TEST_F(ReferencesTest, NoWayOfMakingHandlesLeaksAReference) {
  constexpr int times = 200;
  const struct {
    const char* name;
    jint objects;  // made each time
    std::function<void()> make;
  } rows[] = {
      {"result of a method", 1, [&] { Fresh(); }},
      {"constructor", 2, [&] { vm.NewObject("fixture/Watch", "()V"); }},
      {"constructor of a class handle", 2, [&] { watch.NewObject("()V"); }},
      {"no constructor", 1, [&] { Watch(watch.AllocObject()); }},
      {"field", 2, [&] { watch.NewObject("()V").GetObjectField("inner", "Ljava/lang/Object;"); }},
      {"static field", 1,
       [&] {
         const CJavaObject nothing = watch.AllocObject().GetObjectField("inner", "Ljava/lang/Object;");
         watch.SetStaticObjectField("last", "Ljava/lang/Object;", Fresh());
         watch.GetStaticObjectField("last", "Ljava/lang/Object;");
         watch.SetStaticObjectField("last", "Ljava/lang/Object;", nothing);
       }},
      {"string", 1, [&] { Watch(vm.NewString(RX_TEXT("text"))); }},
      {"assigned text", 3,
       [&] {
         CJavaString string = vm.NewString(RX_TEXT("first"));
         Watch(string);
         string = RX_TEXT("second");
         Watch(string);
         string = RX_TEXT("third");
         Watch(string);
       }},
      {"copies and assignments", 2,
       [&] {
         CJavaObject first = Fresh();
         const CJavaObject second = Fresh();
         CJavaString third = first;
         first = second;
         first = *&first;
         third = CJavaString(first);
       }},
  };
  for (const auto& row : rows) {
    watch.CallStaticVoidMethod("forgetAll", "()V");
    for (int i = 0; i < times; ++i) InFrame([&] { return row.make(); });
    EXPECT_EQ(Watched(), row.objects * times) << row.name;
    EXPECT_EQ(Alive(0), 0) << row.name;
  }
}

// The assigned string is kept although its handle works with the local reference.
TEST_F(ReferencesTest, AnAssignedTextIsKeptByItsHandle) {
  CJavaString string = InFrame([&] { return vm.NewString(RX_TEXT("first")); });
  string = RX_TEXT("second");
  Watch(string);
  env->DeleteLocalRef(string);
  EXPECT_EQ(Alive(1), 1);
  string = RX_TEXT("");
  EXPECT_EQ(Alive(0), 0);
}

TEST_F(ReferencesTest, HandlesAreDroppedInEveryOrder) {
  std::vector<int> order = {0, 1, 2, 3, 4};
  do {
    InFrame([&] {
      std::optional<CDynamicJavaRuntime> runtime(Runtime());
      std::optional<Vms> vms(std::in_place, 0u, 1u);
      EXPECT_EQ(runtime->GetCreatedJavaVms(*vms), 1u);
      std::optional<CJavaClass> javaClass((*vms)[0].FindClass("fixture/Watch"));
      std::optional<CJavaObject> object(javaClass->NewObject("()V"));
      std::optional<CJavaString> string((*vms)[0].NewString(RX_TEXT("text")));
      for (const int next : order) {
        if (next == 0) runtime.reset();
        if (next == 1) vms.reset();
        if (next == 2) javaClass.reset();
        if (next == 3) object.reset();
        if (next == 4) string.reset();
        if (runtime) {
          EXPECT_EQ(runtime->GetJniVersion(), JNI_VERSION_1_6);
        }
        if (vms) {
          EXPECT_TRUE((*vms)[0] == vm);
        }
        if (javaClass) {
          EXPECT_GT(javaClass->CallStaticIntMethod("watchedCount", "()I"), 0);
        }
        if (object) {
          EXPECT_TRUE(object->IsInstanceOf("fixture/Watch"));
        }
        if (string) {
          EXPECT_EQ(Utf8(*string), "text");
        }
      }
    });
  } while (std::next_permutation(order.begin(), order.end()));
  EXPECT_EQ(Watched(), 2 * 120);
  EXPECT_EQ(Alive(0), 0);
}

TEST_F(ReferencesTest, CreatedVmsAreAppendedAndEqual) {
  const CDynamicJavaRuntime runtime = Runtime();
  Vms vms(0, 1);
  EXPECT_EQ(runtime.GetCreatedJavaVms(vms), 1u);
  EXPECT_EQ(runtime.GetCreatedJavaVms(vms), 1u);
  ASSERT_EQ(vms.GetSize(), 2u);
  EXPECT_TRUE(vms[0] == vms[1]);
  EXPECT_FALSE(vms[0] != vm);
  EXPECT_EQ(vms[1].Attach(), env);
}

}  // namespace
}  // namespace tests
