// Every type in every family, with narrow and wide names, against a VM that knows the true values.
#include <cstring>

#include "realvm/JavaTypes.h"
#include "realvm/RealVmTest.h"

namespace tests {
namespace {

template <typename JavaType, typename NameUnit>
struct Case {
  using Type = JavaType;
  using Unit = NameUnit;
};

// A cell of the type. Java, called through JNI alone, sets and checks its contents.
template <typename Case>
class MembersTest : public RealVmTest {
 protected:
  using Type = typename Case::Type;
  using Unit = typename Case::Unit;
  using Name = std::basic_string<Unit>;
  ~MembersTest() noexcept override {}

  static constexpr bool isObject = std::is_same_v<Type, Object>;

  void JavaTakes(const char* method, jint sample) {
    env->CallVoidMethod(cell, JavaMethod(method, "(I)V"), sample);
    ASSERT_EQ(TakePending(env), "");
  }

  bool JavaFinds(const char* method, jint sample) {
    const bool found = env->CallBooleanMethod(cell, JavaMethod(method, "(I)Z"), sample) == JNI_TRUE;
    EXPECT_EQ(TakePending(env), "");
    return found;
  }

  jint SampleCount() {
    const jint count = env->CallIntMethod(cell, JavaMethod("sampleCount", "()I"));
    EXPECT_EQ(TakePending(env), "");
    if (!isObject) {
      EXPECT_EQ(static_cast<std::size_t>(count), samples<Type>.size());
    }
    return count;
  }

  jobject JavaSample(jint sample) {
    jobject object = env->CallObjectMethod(cell, JavaMethod("sample", "(I)Ljava/lang/Object;"), sample);
    EXPECT_EQ(TakePending(env), "");
    return object;
  }

  // A sample as setters take it.
  auto Sample(jint sample) {
    if constexpr (isObject) {
      return cell.CallObjectMethod("sample", "(I)Ljava/lang/Object;", sample);
    } else {
      return samples<Type>[static_cast<std::size_t>(sample)];
    }
  }

  // A sample as callers take it.
  auto Argument(jint sample) {
    if constexpr (isObject) {
      return JavaSample(sample);
    } else {
      return Sample(sample);
    }
  }

  // Values are compared as bytes, so that NaN equals itself and -0 is not 0.
  void ExpectSample(const typename Type::Host& actual, jint sample) {
    if constexpr (isObject) {
      EXPECT_TRUE(env->IsSameObject(actual, JavaSample(sample))) << "sample " << sample;
    } else {
      const auto expected = Sample(sample);
      EXPECT_EQ(std::memcmp(&actual, &expected, sizeof(expected)), 0)
          << "sample " << sample << ": " << actual << " instead of " << expected;
    }
  }

  const CJavaClass javaClass = vm.FindClass(Type::cell);
  const CJavaObject cell = javaClass.NewObject("()V");
  const Name value = Spell<Unit>("value");
  const Name shared = Spell<Unit>("shared");
  const Name exchange = Spell<Unit>("exchange");
  const Name exchangeShared = Spell<Unit>("exchangeShared");
  const Name signature = Spell<Unit>(Type::signature);
  const Name exchangeSignature = Spell<Unit>("(") + signature + Spell<Unit>(")") + signature;

 private:
  jmethodID JavaMethod(const char* name, const char* javaSignature) {
    return env->GetMethodID(javaClass, name, javaSignature);
  }
};

// A static double is read in another way; it has its own tests below.
template <typename Case>
class MembersStaticGetterTest : public MembersTest<Case> {};
template <typename Case>
class MembersStaticDoubleGetterTest : public MembersTest<Case> {};

struct CaseName {
  template <typename Case>
  static std::string GetName(int) {
    return std::string(Case::Type::name) + (std::is_same_v<typename Case::Unit, char> ? "Narrow" : "Wide");
  }
};

using Wide = RX::UniChar;
// clang-format off
using AllButDouble = testing::Types<
    Case<Object, char>, Case<Boolean, char>, Case<Byte, char>, Case<Char, char>,
    Case<Short, char>,  Case<Int, char>,     Case<Long, char>, Case<Float, char>,
    Case<Object, Wide>, Case<Boolean, Wide>, Case<Byte, Wide>, Case<Char, Wide>,
    Case<Short, Wide>,  Case<Int, Wide>,     Case<Long, Wide>, Case<Float, Wide>>;
using All = testing::Types<
    Case<Object, char>, Case<Boolean, char>, Case<Byte, char>, Case<Char, char>,
    Case<Short, char>,  Case<Int, char>,     Case<Long, char>, Case<Float, char>, Case<Double, char>,
    Case<Object, Wide>, Case<Boolean, Wide>, Case<Byte, Wide>, Case<Char, Wide>,
    Case<Short, Wide>,  Case<Int, Wide>,     Case<Long, Wide>, Case<Float, Wide>, Case<Double, Wide>>;
// clang-format on
using Doubles = testing::Types<Case<Double, char>, Case<Double, Wide>>;
TYPED_TEST_SUITE(MembersTest, All, CaseName);
TYPED_TEST_SUITE(MembersStaticGetterTest, AllButDouble, CaseName);
TYPED_TEST_SUITE(MembersStaticDoubleGetterTest, Doubles, CaseName);

TYPED_TEST(MembersTest, AFieldIsReadAsJavaWroteIt) {
  for (jint i = 0; i < this->SampleCount(); ++i) {
    this->JavaTakes("take", i);
    this->ExpectSample(TypeParam::Type::Get(this->cell, this->value.c_str(), this->signature.c_str()), i);
  }
}

TYPED_TEST(MembersTest, AFieldIsWrittenAsJavaReadsIt) {
  for (jint i = 0; i < this->SampleCount(); ++i) {
    this->JavaTakes("take", (i + 1) % this->SampleCount());
    TypeParam::Type::Set(this->cell, this->value.c_str(), this->signature.c_str(), this->Sample(i));
    EXPECT_TRUE(this->JavaFinds("holds", i)) << "sample " << i;
  }
}

TYPED_TEST(MembersTest, AMethodTakesAndReturnsValues) {
  for (jint i = 0; i < this->SampleCount(); ++i) {
    const jint last = (i + 1) % this->SampleCount();
    this->JavaTakes("take", last);
    this->ExpectSample(
        TypeParam::Type::Call(this->cell, this->exchange.c_str(), this->exchangeSignature.c_str(), this->Argument(i)),
        last);
    EXPECT_TRUE(this->JavaFinds("holds", i)) << "sample " << i;
  }
}

TYPED_TEST(MembersTest, AMethodCalledNonvirtuallyTakesAndReturnsValues) {
  for (jint i = 0; i < this->SampleCount(); ++i) {
    const jint last = (i + 1) % this->SampleCount();
    this->JavaTakes("take", last);
    this->ExpectSample(TypeParam::Type::CallNonvirtual(this->cell, this->exchange.c_str(),
                                                       this->exchangeSignature.c_str(), this->Argument(i)),
                       last);
    EXPECT_TRUE(this->JavaFinds("holds", i)) << "sample " << i;
  }
}

TYPED_TEST(MembersTest, AStaticFieldIsWrittenAsJavaReadsIt) {
  for (jint i = 0; i < this->SampleCount(); ++i) {
    this->JavaTakes("takeShared", (i + 1) % this->SampleCount());
    TypeParam::Type::SetStatic(this->javaClass, this->shared.c_str(), this->signature.c_str(), this->Sample(i));
    EXPECT_TRUE(this->JavaFinds("sharedHolds", i)) << "sample " << i;
  }
}

TYPED_TEST(MembersTest, AStaticMethodTakesAndReturnsValues) {
  for (jint i = 0; i < this->SampleCount(); ++i) {
    const jint last = (i + 1) % this->SampleCount();
    this->JavaTakes("takeShared", last);
    this->ExpectSample(TypeParam::Type::CallStatic(this->javaClass, this->exchangeShared.c_str(),
                                                   this->exchangeSignature.c_str(), this->Argument(i)),
                       last);
    EXPECT_TRUE(this->JavaFinds("sharedHolds", i)) << "sample " << i;
  }
}

TYPED_TEST(MembersStaticGetterTest, AStaticFieldIsReadAsJavaWroteIt) {
  for (jint i = 0; i < this->SampleCount(); ++i) {
    this->JavaTakes("takeShared", i);
    this->ExpectSample(TypeParam::Type::GetStatic(this->javaClass, this->shared.c_str(), this->signature.c_str()), i);
  }
}

// What the VM returns for the field read as a char: the low 16 of its 64 bits.
TYPED_TEST(MembersStaticDoubleGetterTest, AStaticFieldIsReadAsAChar) {
  const jdouble lowBits[] = {0.0, 0x999A, 0.0, 0.0, 0xFFFF, 1.0};
  ASSERT_EQ(std::size(lowBits), samples<Double>.size());
  for (jint i = 0; i < this->SampleCount(); ++i) {
    this->JavaTakes("takeShared", i);
    EXPECT_EQ(Double::GetStatic(this->javaClass, this->shared.c_str(), this->signature.c_str()), lowBits[i])
        << "sample " << i;
  }
}

TYPED_TEST(MembersStaticDoubleGetterTest, PiIsRead) {
  const CJavaClass math = this->vm.FindClass("java/lang/Math");
  const auto pi = Spell<typename TypeParam::Unit>("PI");
  EXPECT_EQ(math.GetStaticDoubleField(pi.c_str(), this->signature.c_str()), 0x2D18);
}

class MembersVoidTest : public RealVmTest {
 protected:
  ~MembersVoidTest() noexcept override {}

  const CJavaClass counter = vm.FindClass("fixture/Kinds$Counter");
  const CJavaObject object = counter.NewObject("()V");
};

TEST_F(MembersVoidTest, AMethodIsCalled) {
  object.CallVoidMethod("add", "(I)V", 3);
  object.CallVoidMethod(RX_TEXT("add"), RX_TEXT("(I)V"), 40);
  EXPECT_EQ(object.GetIntField("count", "I"), 43);
}

TEST_F(MembersVoidTest, AMethodIsCalledNonvirtually) {
  object.CallNonvirtualVoidMethod("add", "(I)V", 3);
  object.CallNonvirtualVoidMethod(RX_TEXT("add"), RX_TEXT("(I)V"), 40);
  EXPECT_EQ(object.GetIntField("count", "I"), 43);
}

TEST_F(MembersVoidTest, AStaticMethodIsCalled) {
  counter.SetStaticIntField("shared", "I", 100);
  counter.CallStaticVoidMethod("addShared", "(I)V", 3);
  counter.CallStaticVoidMethod(RX_TEXT("addShared"), RX_TEXT("(I)V"), 40);
  EXPECT_EQ(counter.GetStaticIntField("shared", "I"), 143);
}

}  // namespace
}  // namespace tests
