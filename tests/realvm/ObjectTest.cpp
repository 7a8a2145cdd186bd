// Identity, type and binding of Java objects; names beyond ASCII; classes that every runtime has.
#include "fakes/Failure.h"
#include "realvm/RealVmTest.h"

namespace tests {
namespace {

using mirel::base::CNull;
using mirel::base::CNullReferenceException;
using torvan::jni::CJavaClass;
using torvan::jni::CJavaObject;
using torvan::jni::CJavaString;
using torvan::jni::CJavaVmException;

class ObjectTest : public RealVmTest {
 protected:
  ~ObjectTest() noexcept override {}

  CJavaObject Nothing() { return vm.NewString(nullptr); }

  const CJavaObject child = vm.NewObject("fixture/Kinds$Child", "()V");
};

// All three forms of the question return the same.
TEST_F(ObjectTest, IsInstanceOfItsClassItsParentsAndItsInterfaces) {
  const struct {
    const char* className;
    bool expected;
  } rows[] = {
      {"fixture/Kinds$Child", true},      {"fixture/Kinds$Parent", true}, {"fixture/Kinds$Named", true},
      {"java/lang/Object", true},         {"java/lang/String", false},    {"fixture/Kinds$Counter", false},
      {"[Lfixture/Kinds$Parent;", false},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(child.IsInstanceOf(row.className), row.expected) << row.className;
    EXPECT_EQ(child.IsInstanceOf(Widen(row.className).c_str()), row.expected) << row.className;
    EXPECT_EQ(child.IsInstanceOf(vm.FindClass(row.className)), row.expected) << row.className;
  }
  EXPECT_FALSE(vm.NewObject("fixture/Kinds$Parent", "()V").IsInstanceOf("fixture/Kinds$Child"));
}

TEST_F(ObjectTest, AnUnknownClassIsReportedAndStaysPending) {
  const auto notFound = Throws<CJavaVmException>("jni/JavaObject", AnyLine, "The specified class was not found.");
  EXPECT_EQ(FailureOf([&] { child.IsInstanceOf("no/Such"); }), notFound);
  EXPECT_EQ(TakePending(env), "java.lang.NoClassDefFoundError");
  EXPECT_EQ(FailureOf([&] { child.IsInstanceOf(RX_TEXT("no/Such")); }), notFound);
  EXPECT_EQ(TakePending(env), "java.lang.NoClassDefFoundError");
}

// A null object is of no class, and a class that does not exist is not even looked up.
TEST_F(ObjectTest, ANullObjectIsOfNoClass) {
  const CJavaObject nothing = Nothing();
  ASSERT_TRUE(nothing == CNull());
  EXPECT_FALSE(nothing.IsInstanceOf("java/lang/Object"));
  EXPECT_FALSE(nothing.IsInstanceOf(RX_TEXT("no/Such")));
  EXPECT_FALSE(nothing.IsInstanceOf(vm.FindClass("java/lang/Object")));
}

// A class handle is null only when it is assigned a null object's reference.
TEST_F(ObjectTest, ANullClassMakesAndKnowsNoObjects) {
  CJavaClass noClass = vm.FindClass("java/lang/Object");
  static_cast<CJavaObject&>(noClass) = Nothing();
  EXPECT_EQ(FailureOf([&] { child.IsInstanceOf(noClass); }),
            Throws<CNullReferenceException>("jni/JavaObject", AnyLine, nullptr));
  EXPECT_EQ(FailureOf([&] { noClass.AllocObject(); }),
            Throws<CNullReferenceException>("jni/JavaClass", AnyLine, nullptr));
  EXPECT_EQ(FailureOf([&] { noClass.NewObject("()V"); }),
            Throws<CNullReferenceException>("jni/JavaClass", AnyLine, nullptr));
}

TEST_F(ObjectTest, ANullObjectHasNoMembers) {
  const auto isNull = Throws<CNullReferenceException>("jni/JavaObject", AnyLine, nullptr);
  EXPECT_EQ(FailureOf([&] { Nothing().GetIntField("count", "I"); }), isNull);
  EXPECT_EQ(FailureOf([&] { Nothing().CallIntMethod(RX_TEXT("number"), RX_TEXT("()I")); }), isNull);
}

TEST_F(ObjectTest, HandlesOfOneObjectAreEqual) {
  const CJavaClass watch = vm.FindClass("fixture/Watch");
  watch.SetStaticObjectField("last", "Ljava/lang/Object;", child);
  const CJavaObject again = watch.GetStaticObjectField("last", "Ljava/lang/Object;");
  watch.SetStaticObjectField("last", "Ljava/lang/Object;", Nothing());
  const CJavaObject other = vm.NewObject("fixture/Kinds$Child", "()V");

  EXPECT_NE(static_cast<jobject>(again), static_cast<jobject>(child));
  EXPECT_TRUE(again == child);
  EXPECT_FALSE(again != child);
  EXPECT_FALSE(other == child);
  EXPECT_TRUE(other != child);
  EXPECT_FALSE(Nothing() == child);
  EXPECT_TRUE(Nothing() == Nothing());
}

TEST_F(ObjectTest, ANonvirtualCallOnAnOverrideCallsTheOverride) {
  const CJavaObject parent = vm.NewObject("fixture/Kinds$Parent", "()V");
  EXPECT_EQ(parent.CallNonvirtualIntMethod("number", "()I"), 1);
  EXPECT_EQ(child.CallNonvirtualIntMethod("number", "()I"), 2);
  EXPECT_EQ(child.CallNonvirtualIntMethod(RX_TEXT("number"), RX_TEXT("()I")), 2);
  EXPECT_EQ(child.CallIntMethod("number", "()I"), 2);
  EXPECT_EQ(child.CallNonvirtualIntMethod("inherited", "()I"), 10);
  EXPECT_EQ(Utf8(CJavaString(child.CallNonvirtualObjectMethod("viaParent", "()Ljava/lang/String;"))), "child");
}

TEST_F(ObjectTest, NamesBeyondAsciiAreFound) {
  const CJavaClass javaClass = vm.FindClass(RX_TEXT("fixture/Kinds$Gr\u00F6\u00DFe"));
  EXPECT_EQ(javaClass.GetStaticIntField(RX_TEXT("\u6570"), RX_TEXT("I")), 6);
  EXPECT_EQ(javaClass.GetStaticIntField("\xE6\x95\xB0", "I"), 6);
  const CJavaObject object = javaClass.NewObject(RX_TEXT("()V"));
  EXPECT_EQ(object.GetIntField(RX_TEXT("l\u00E4nge"), RX_TEXT("I")), 5);
  EXPECT_EQ(object.CallIntMethod(RX_TEXT("verdopple_f\u00FCr"), RX_TEXT("(I)I"), 21), 42);
}

TEST_F(ObjectTest, ConstantsOfTheRuntimesOwnClassesAreRead) {
  EXPECT_EQ(vm.FindClass("java/lang/Integer").GetStaticIntField("MAX_VALUE", "I"), 2147483647);
  EXPECT_EQ(vm.FindClass("java/lang/Long").GetStaticLongField("MIN_VALUE", "J"), -9223372036854775807 - 1);
  EXPECT_EQ(vm.FindClass("java/lang/Byte").GetStaticByteField("MIN_VALUE", "B"), -128);
  EXPECT_EQ(vm.FindClass("java/lang/Short").GetStaticShortField("MAX_VALUE", "S"), 32767);
  EXPECT_EQ(vm.FindClass("java/lang/Character").GetStaticCharField("MAX_VALUE", "C"), 0xFFFF);
  EXPECT_EQ(vm.FindClass("java/lang/Float").GetStaticFloatField("MAX_VALUE", "F"), 3.40282346638528859812e+38F);
  EXPECT_EQ(vm.FindClass(RX_TEXT("java/lang/Math")).CallStaticDoubleMethod("sqrt", "(D)D", 2.25), 1.5);
  const CJavaObject truth = vm.FindClass("java/lang/Boolean").GetStaticObjectField("TRUE", "Ljava/lang/Boolean;");
  EXPECT_EQ(truth.CallBooleanMethod("booleanValue", "()Z"), JNI_TRUE);
}

TEST_F(ObjectTest, AClassIsAnObjectItself) {
  const CJavaObject javaClass = vm.FindClass("[[I");
  EXPECT_TRUE(javaClass.IsInstanceOf("java/lang/Class"));
  EXPECT_EQ(Utf8(CJavaString(javaClass.CallObjectMethod("getName", "()Ljava/lang/String;"))), "[[I");
}

}  // namespace
}  // namespace tests
