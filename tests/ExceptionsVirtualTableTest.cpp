// The slots of the exceptions' virtual operations: a host calls them by number.
#include <torvan/JavaException.h>
#include <torvan/JavaRuntimeException.h>
#include <torvan/JavaVmException.h>
#include <torvan/JavaVmLauncherException.h>

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>
#include <vector>

namespace tests {
namespace {

using mirel::base::CClass;
using mirel::base::CException;
using mirel::base::CObject;
using torvan::jni::CJavaException;

template <typename Exception>
Exception Make() {
  if constexpr (std::is_same_v<Exception, CJavaException>) {
    return Exception({}, {}, {});
  } else {
    return Exception(nullptr, 0, nullptr, nullptr);
  }
}

template <typename Exception>
struct Derived : Exception {
  Derived() : Exception(Make<Exception>()) {}
};
template <typename Exception>
struct WithGetClass : Derived<Exception> {
  const CClass* GetClass() const override { return nullptr; }
};
template <typename Exception>
struct WithGetHashCode : Derived<Exception> {
  int GetHashCode() const override { return 1; }
};
template <typename Exception>
struct WithEquals : Derived<Exception> {
  bool Equals(const CObject*) const override { return true; }
};
template <typename Exception>
struct WithClone : Derived<Exception> {
  CObject* Clone() const override { return new Derived<Exception>; }
};
template <typename Exception>
struct WithPrint : Derived<Exception> {
  void Print(mirel::io::CPrintStream&) const override {}
};

// A destructor takes one slot for Microsoft's compilers and two for the others.
#if defined(_MSC_VER)
constexpr int DestructorSlots = 1;
#else
constexpr int DestructorSlots = 2;
#endif

// The slots after the destructor, counted from 2, in which two objects have different functions.
std::vector<int> DifferingSlots(const CException& left, const CException& right) {
  const void* const* tables[2];
  std::memcpy(&tables[0], static_cast<const void*>(&left), sizeof(tables[0]));
  std::memcpy(&tables[1], static_cast<const void*>(&right), sizeof(tables[1]));
  std::vector<int> slots;
  for (int slot = 2; slot <= 6; ++slot) {
    const int index = slot - 2 + DestructorSlots;
    if (tables[0][index] != tables[1][index]) slots.push_back(slot);
  }
  return slots;
}

template <typename Exception>
class ExceptionsVirtualTableTest : public ::testing::Test {};

using Exceptions =
    ::testing::Types<CException, torvan::jni::CJniException, torvan::jni::CJavaRuntimeException,
                     torvan::jni::CJavaVmException, CJavaException, torvan::jvmlauncher::CJavaVmLauncherException>;
TYPED_TEST_SUITE(ExceptionsVirtualTableTest, Exceptions, );  // clang wants an argument for the "..." of the macro

TYPED_TEST(ExceptionsVirtualTableTest, OperationsHaveTheirSlots) {
  const Derived<TypeParam> base;
  EXPECT_EQ(DifferingSlots(base, WithGetClass<TypeParam>()), std::vector{2});
  EXPECT_EQ(DifferingSlots(base, WithGetHashCode<TypeParam>()), std::vector{3});
  EXPECT_EQ(DifferingSlots(base, WithEquals<TypeParam>()), std::vector{4});
  EXPECT_EQ(DifferingSlots(base, WithClone<TypeParam>()), std::vector{5});
  EXPECT_EQ(DifferingSlots(base, WithPrint<TypeParam>()), std::vector{6});
}

// The type of a member's address names the class that declares it last.
TYPED_TEST(ExceptionsVirtualTableTest, AnExceptionOverridesItsClassAndOnlyTheJavaOneItsPrinting) {
  using Printing = std::conditional_t<std::is_same_v<TypeParam, CJavaException>, CJavaException, CException>;
  static_assert(std::is_same_v<decltype(&TypeParam::GetClass), const CClass* (TypeParam::*)() const>);
  static_assert(std::is_same_v<decltype(&TypeParam::GetHashCode), int (CObject::*)() const>);
  static_assert(std::is_same_v<decltype(&TypeParam::Equals), bool (CObject::*)(const CObject*) const>);
  static_assert(std::is_same_v<decltype(&TypeParam::Clone), CObject* (CObject::*)() const>);
  static_assert(std::is_same_v<decltype(&TypeParam::Print), void (Printing::*)(mirel::io::CPrintStream&) const>);
}

}  // namespace
}  // namespace tests
