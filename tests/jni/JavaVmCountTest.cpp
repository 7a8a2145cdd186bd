// Which operations copy the handle of a VM. Its count is a plain integer: where it does not change, threads may share
// it.
#include <gtest/gtest.h>
#include <torvan/jni/JavaString.h>

#include <algorithm>
#include <functional>
#include <utility>

#include "jni/AccessorMembers.h"
#include "jni/HandleTest.h"
#include "jni/JavaVmImpl.h"

namespace {

using torvan::jni::CJavaVm;
using torvan::jni::CJavaVmImpl;
using Reference = mirel::base::CRef<CJavaVmImpl>;
using Block = mirel::base::CRefCountedPtr<CJavaVmImpl>*;

// An explicit instantiation may name a private member. The function that it defines returns that member.
Reference CJavaVm::*MemberOf(const CJavaVm&);
Block Reference::*MemberOf(const Reference&);

template <typename Class, typename Type, Type Class::*Member>
struct Open {
  friend Type Class::*MemberOf(const Class&) { return Member; }
};

template struct Open<CJavaVm, Reference, &CJavaVm::m_impl>;
template struct Open<Reference, Block, &Reference::m_block>;

// How many handles share the VM of this one.
unsigned int CountOf(const CJavaVm& vm) {
  const Reference& reference = vm.*MemberOf(vm);
  return (reference.*MemberOf(reference))->GetCount();
}

}  // namespace

namespace tests {
namespace {

class JavaVmCountTest : public HandleTest {
 protected:
  JavaVmCountTest() {
    jvm.OnEachCall([this] {
      m_most = std::max(m_most, CountOf(vm));
      ++m_calls;
    });
  }

  // How many handles more than before live during some call of an operation. Afterwards there are as many as before.
  unsigned int MostDuring(const std::function<void()>& operation) {
    const unsigned int before = m_most = CountOf(vm);
    m_calls = 0;
    operation();
    EXPECT_EQ(CountOf(vm), before);
    EXPECT_GT(m_calls, 0) << "nothing was seen";
    return m_most - before;
  }

 private:
  unsigned int m_most = 0;
  int m_calls = 0;
};

TEST_F(JavaVmCountTest, AMemberThatReturnsNoHandleCopiesNone) {
  const Object object(vm, jvm.NewObject());
  const torvan::jni::CJavaClass javaClass = vm.FindClass("C");
  const jobject local = jvm.NewObject();
  const Target target{jvm, object, javaClass, Object(vm, local), Object(vm, nullptr), local};
  for (const Member& member : AllMembers()) {
    if (member.given[0] == "global:3") continue;  // takes a handle, which the table copies itself: see below
    SCOPED_TRACE(testing::Message() << member);
    member.script(target, 0);
    const unsigned int most = MostDuring([&] { member.use(target, "member", 0); });
    EXPECT_EQ(most > 0, member.givesObject);
  }
}

TEST_F(JavaVmCountTest, ComparisonsTestsTextsAndHandlesThatArePassedCopyNone) {
  jvm.Return<&Jni::IsSameObject>(JNI_TRUE);
  jvm.Return<&Jni::IsInstanceOf>(JNI_TRUE);
  jvm.On<&Jni::SetObjectField>([](jobject, jfieldID, jobject) {});
  jvm.On<&Jni::SetStaticObjectField>([](jclass, jfieldID, jobject) {});
  const Object object(vm, jvm.NewObject());
  const Object other(vm, jvm.NewObject());
  const torvan::jni::CJavaClass javaClass = vm.FindClass("C");
  const torvan::jni::CJavaString text = vm.NewString(RX_TEXT("text"));
  const std::pair<const char*, std::function<void()>> rows[] = {
      {"Attach", [&] { vm.Attach(); }},
      {"Detach", [&] { vm.Detach(); }},
      {"==", [&] { EXPECT_TRUE(object == other); }},
      {"!=", [&] { EXPECT_FALSE(object != other); }},
      {"IsInstanceOf, narrow", [&] { EXPECT_TRUE(object.IsInstanceOf("C")); }},
      {"IsInstanceOf, wide", [&] { EXPECT_TRUE(object.IsInstanceOf(RX_TEXT("C"))); }},
      {"IsInstanceOf, class", [&] { EXPECT_TRUE(object.IsInstanceOf(javaClass)); }},
      {"SetObjectField, narrow", [&] { object.SetObjectField("f", "LC;", other); }},
      {"SetObjectField, wide", [&] { object.SetObjectField(RX_TEXT("f"), RX_TEXT("LC;"), other); }},
      {"SetStaticObjectField, narrow", [&] { javaClass.SetStaticObjectField("f", "LC;", other); }},
      {"SetStaticObjectField, wide", [&] { javaClass.SetStaticObjectField(RX_TEXT("f"), RX_TEXT("LC;"), other); }},
      {"a string's text", [&] { EXPECT_EQ(mirel::base::CUnicodeString(text).GetLength(), 4u); }},
  };
  for (const auto& [name, operation] : rows) EXPECT_EQ(MostDuring(operation), 0u) << name;
}

TEST_F(JavaVmCountTest, WhatReturnsAHandleIsSeenToCopyOne) {
  const torvan::jni::CJavaClass javaClass = vm.FindClass("C");
  jvm.On<&Jni::AllocObject>([this](jclass) { return jvm.NewObject(); });
  EXPECT_GT(MostDuring([&] { javaClass.AllocObject(); }), 0u);
  EXPECT_GT(MostDuring([&] { vm.FindClass("C"); }), 0u);
}

}  // namespace
}  // namespace tests
