// Declared members of all kinds.
#include <atomic>
#include <cstdlib>
#include <optional>
#include <vector>

#include "java/realvm/AtOnce.h"
#include "java/realvm/MembersTags.h"

namespace tests {
namespace {

using java::Constructor;
using java::Field;
using java::Local;
using java::Method;
using java::Misuse;
using java::Object;
using java::Ref;
using java::StaticField;
using java::StaticMethod;
using java::SuperMethod;

struct Strings {
  static constexpr char JavaName[] = "[Ljava/lang/String;";
};
struct Abstract {
  static constexpr char JavaName[] = "fixture/Members$Abstract";
};

class MemberTest : public RealVmTest {};

constexpr Constructor<Derived()> NewDerived;
constexpr Constructor<Derived(std::string_view)> NewDerivedOf;
constexpr Method<Greeter, std::string(std::string_view)> Greet{"greet"};
constexpr Method<Greeter, std::string(std::string_view)> GreetTwice{"greetTwice"};
constexpr Method<Derived, jint()> Shared{"shared"};
constexpr Method<Base, jint()> BaseShared{"shared"};
constexpr Field<Derived, std::string> How{"how"};
constexpr StaticMethod<jint(jint, jint)> Max{"java/lang/Math", "max"};
constexpr StaticField<jint> Calls{"fixture/Members", "calls"};
constexpr StaticMethod<void()> Called{"fixture/Members", "called"};

TEST_F(MemberTest, ConstructorsMakeObjects) {
  EXPECT_EQ(How.Get(NewDerived()), "nothing");
  EXPECT_EQ(How.Get(NewDerivedOf("text")), "text");
  static constexpr Constructor<Derived(jint)> OfInt;
  static constexpr Constructor<Derived(jlong)> OfLong;
  static constexpr Constructor<Derived(std::string_view, Ref<Object>)> OfBoth;  // private, which JNI does not mind
  const java::Thread thread;
  EXPECT_EQ(How.Get(OfInt(thread, 5)), "int 5");
  EXPECT_EQ(How.Get(OfLong(5)), "long 5");
  EXPECT_EQ(How.Get(OfBoth("text", NewInteger(7))), "text 7");
}

TEST_F(MemberTest, MethodsOfInterfacesAndInheritedOnes) {
  const Local<Derived> derived = NewDerived();
  EXPECT_EQ(Greet(derived, "you"), "derived you");
  EXPECT_EQ(GreetTwice(derived, "you"), "derived you, derived you");
  EXPECT_EQ(BaseShared(derived), 20);  // virtual
  static constexpr Method<Base, jint()> Hidden{"hidden"};
  EXPECT_EQ(Hidden(derived), 11);
  static constexpr Method<Derived, jint()> HashCode{"hashCode"};
  EXPECT_EQ(HashCode(derived), java::CallStatic<jint>("java/lang/System", "identityHashCode", derived));
}

TEST_F(MemberTest, SuperMethodsAreThoseOfTheClassNamed) {
  static constexpr SuperMethod<Base, jint()> BaseOwn{"shared"};
  static constexpr SuperMethod<Base, std::string(std::string_view)> BaseGreet{"greet"};
  static constexpr SuperMethod<Object, std::string()> ObjectText{"toString"};
  const Local<Derived> derived = NewDerived();
  EXPECT_EQ(BaseOwn(derived), 10);
  EXPECT_EQ(Shared(derived), 20);
  EXPECT_EQ(BaseGreet(derived, "you"), "base you");
  EXPECT_EQ(ObjectText(derived).substr(0, 23), "fixture.Members$Derived");
}

TEST_F(MemberTest, AnyReferenceAndAThreadGoFirst) {
  const Local<Derived> derived = NewDerived();
  const java::Global<Derived> global(derived);
  const java::Thread thread;
  EXPECT_EQ(Shared(derived), 20);
  EXPECT_EQ(Shared(global), 20);
  EXPECT_EQ(Shared(thread, global), 20);
  EXPECT_EQ(Shared(Ref<Derived>(global)), 20);
  EXPECT_EQ(Shared(java::Handle(derived)), 20);
  EXPECT_EQ(Shared(thread, derived.Get()), 20);
  EXPECT_EQ(Max(thread, 3, 4), 4);
}

TEST_F(MemberTest, ResultsOfAllTypes) {
  EXPECT_EQ((StaticMethod<jlong()>{"fixture/Members", "count"}()), 5);
  EXPECT_EQ((StaticMethod<float()>{"fixture/Members", "half"}()), 0.5f);
  Calls.Set(0);
  Called();
  Called(java::Thread());
  EXPECT_EQ(Calls.Get(), 2);
  EXPECT_EQ((StaticMethod<std::string()>{"fixture/Members", "secret"}()), "told");
}

TEST_F(MemberTest, AVarargsMethodTakesItsArray) {
  static constexpr StaticMethod<std::string(std::string_view, Ref<Strings>)> Joined{"fixture/Members", "joined"};
  JNIEnv* const env = java::detail::Env();
  const auto type = java::FindClass("java/lang/String");
  const auto parts =
      java::Adopt<Strings>(env->NewObjectArray(2, static_cast<jclass>(type.Get()), java::NewString("x").Get()));
  EXPECT_EQ(Joined("-", parts), "x-x");
}

TEST_F(MemberTest, ADescriptorIsGivenWhereJavaDeclaresAnotherClass) {
  static constexpr Method<ArrayList, bool(Ref<Derived>)> Add{"add", "(Ljava/lang/Object;)Z"};
  static constexpr Method<ArrayList, Local<Derived>(jint)> Get{"get", "(I)Ljava/lang/Object;"};
  static constexpr StaticMethod<std::string(std::string_view)> Chars{"fixture/Members", "chars",
                                                                     "(Ljava/lang/CharSequence;)Ljava/lang/String;"};
  static constexpr StaticMethod<std::string(Ref<ArrayList>)> Listed{"fixture/Members", "listed",
                                                                    "(Ljava/util/List;)Ljava/lang/String;"};
  const Local<ArrayList> list = java::New<ArrayList>();
  EXPECT_TRUE(Add(list, NewDerivedOf("in the list")));
  EXPECT_EQ(How.Get(Get(list, 0)), "in the list");
  EXPECT_EQ(Chars("text"), "chars text");
  EXPECT_EQ(Listed(list), "list of 1");
}

// JNI would take it, and the VM would crash sooner or later.
TEST_F(MemberTest, WhatTheCompilerCannotTestIsTestedAtTheCall) {
  static constexpr Method<ArrayList, bool(Ref<Object>)> Add{"add"};
  static constexpr Method<ArrayList, Local<Derived>(jint)> Get{"get", "(I)Ljava/lang/Object;"};
  static constexpr Method<ArrayList, std::string(jint)> GetText{"get", "(I)Ljava/lang/Object;"};
  static constexpr StaticMethod<std::string(Ref<Object>)> Listed{"fixture/Members", "listed",
                                                                 "(Ljava/util/List;)Ljava/lang/String;"};
  static constexpr Field<Derived, Local<Object>> Text{"how", "Ljava/lang/String;"};
  const Local<ArrayList> list = java::New<ArrayList>();
  Add(list, NewInteger(5));
  Add(list, nullptr);
  EXPECT_EQ(WhatOf<Misuse>([&] { Get(list, 0); }),
            "a java.lang.Integer comes from java.util.ArrayList.get(int), whose C++ type needs a "
            "fixture.Members$Derived");
  EXPECT_EQ(WhatOf<Misuse>([&] { GetText(list, 0); }),
            "a java.lang.Integer comes from java.util.ArrayList.get(int), whose C++ type needs a java.lang.String");
  EXPECT_FALSE(Get(list, 1));
  EXPECT_EQ(Listed(list), "list of 2");
  EXPECT_EQ(WhatOf<Misuse>([&] { Listed("text"); }),
            "a java.lang.String is given as argument 1 of fixture.Members.listed(java.util.List), which needs a "
            "java.util.List");
  EXPECT_EQ(WhatOf<Misuse>([&] { Text.Set(NewDerived(), list); }),
            "a java.util.ArrayList is given as the value of fixture.Members$Derived.how, which needs a "
            "java.lang.String");
  EXPECT_EQ(WhatOf<Misuse>([&] { Shared(list.Get()); }),
            "a java.util.ArrayList is given as the object of fixture.Members$Derived.shared(), which needs a "
            "fixture.Members$Derived");
  const std::string wrongOwner =
      "a java.util.ArrayList is given as the object of fixture.Members$Derived.how, which needs a "
      "fixture.Members$Derived";
  EXPECT_EQ(WhatOf<Misuse>([&] { How.Get(list.Get()); }), wrongOwner);
  EXPECT_EQ(WhatOf<Misuse>([&] { How.Set(list.Get(), "text"); }), wrongOwner);
  static constexpr Method<Derived, jint(Ref<Derived>)> CompareTo{"compareTo"};
  const Local<Derived> derived = NewDerived();
  EXPECT_EQ(CompareTo(derived, derived.Get()), 0);
  EXPECT_EQ(WhatOf<Misuse>([&] { CompareTo(derived, list.Get()); }),
            "A java.util.ArrayList is given where a fixture.Members$Derived is needed");
  const auto bound = Listed.In(java::FindClass("fixture/Members"));
  EXPECT_EQ(bound(list), "list of 2");
  EXPECT_EQ(WhatOf<Misuse>([&] { bound("text"); }),
            "a java.lang.String is given as argument 1 of fixture.Members.listed(java.util.List), which needs a "
            "java.util.List");
}

TEST_F(MemberTest, ANullObjectNamesTheMember) {
  const Local<Derived> none;
  EXPECT_EQ(WhatOf<Misuse>([&] { Greet(none, "you"); }),
            "null is given as the object of fixture.Members$Greeter.greet(java.lang.String)");
  EXPECT_EQ(WhatOf<Misuse>([&] { Shared(java::Thread(), java::Global<Derived>()); }),
            "null is given as the object of fixture.Members$Derived.shared()");
  EXPECT_EQ(WhatOf<Misuse>([&] { How.Get(none); }), "null is given as the object of fixture.Members$Derived.how");
  EXPECT_EQ(WhatOf<Misuse>([&] { How.Set(none, "x"); }), "null is given as the object of fixture.Members$Derived.how");
  EXPECT_EQ(WhatOf<Misuse>([&] { java::Call<jint>(none, "shared", 5, "x"); }),
            "null is given as the object of fixture.Members$Derived.shared(int, java.lang.String)");
  EXPECT_EQ(WhatOf<Misuse>([&] { java::Call<jint>(Local<Object>(), "shared", none); }),
            "null is given as the object of shared(fixture.Members$Derived)");
  EXPECT_EQ(WhatOf<Misuse>([] { java::CallStatic<jint>(Ref<java::Class>(nullptr), "shared", true); }),
            "null is given as the class of shared(boolean)");
}

TEST_F(MemberTest, TextThatIsNotUtf8NamesTheMember) {
  static constexpr StaticMethod<std::string(std::string_view, Ref<Strings>)> joined{"fixture/Members", "joined"};
  static constexpr Constructor<Derived(std::string_view, Ref<Object>)> makeOfBoth;
  static constexpr StaticMethod<std::optional<std::string>(std::optional<std::string>)> same{"fixture/Values", "same"};
  const auto derived = java::New<Derived>();
  const std::string wrong = "\xC3(";
  const std::string at = "invalid UTF-8 at byte 0 in ";
  EXPECT_EQ(WhatOf<Misuse>([&] { joined(wrong, nullptr); }),
            at + "argument 1 of fixture.Members.joined(java.lang.String, java.lang.String[])");
  EXPECT_EQ(WhatOf<Misuse>([&] {
              java::CallStatic<void>("fixture/Members", "joined", "x", std::vector<std::string>{"x", wrong});
            }),
            at + "argument 2 of fixture.Members.joined(java.lang.String, java.lang.String[])");
  EXPECT_EQ(WhatOf<Misuse>([&] { makeOfBoth("x", wrong); }),
            at + "argument 2 of fixture.Members$Derived(java.lang.String, java.lang.Object)");
  EXPECT_EQ(WhatOf<Misuse>([&] { How.Set(derived, wrong); }), at + "the value of fixture.Members$Derived.how");
  EXPECT_EQ(WhatOf<Misuse>([&] { same(wrong); }), at + "argument 1 of fixture.Values.same(java.lang.String)");
  EXPECT_EQ(WhatOf<Misuse>([&] { java::CallStatic<void>("fixture/Members", "over", wrong); }),
            at + "argument 1 of fixture.Members.over(java.lang.String)");
  EXPECT_EQ(WhatOf<Misuse>([&] { java::New<Derived>("x", wrong); }),
            at + "argument 2 of fixture.Members$Derived(java.lang.String, java.lang.String)");
}

TEST_F(MemberTest, WhatJavaThrowsIsAnError) {
  static constexpr StaticMethod<void(std::string_view)> Fails{"fixture/Members", "fails"};
  static constexpr Constructor<Failing()> NewFailing;
  static constexpr Constructor<Abstract()> NewAbstract;
  static constexpr StaticField<jint> Bad{"fixture/Members$BadStart", "value"};
  EXPECT_EQ(ErrorOf([] { Fails("because"); }), "java.lang.Exception: because");
  EXPECT_EQ(ErrorOf([] { NewFailing(); }), "java.lang.IllegalStateException: not made");
  EXPECT_EQ(ErrorOf([] { NewAbstract(); }), "java.lang.InstantiationException: fixture.Members$Abstract");
  EXPECT_EQ(ErrorOf([] { Bad.Get(); }),
            "java.lang.ExceptionInInitializerError: java.lang.IllegalArgumentException: bad start");
  EXPECT_EQ(Max(3, 4), 4);
}

TEST_F(MemberTest, ACallWithAnExceptionPendingThrowsItAndDoesNotStart) {
  Calls.Set(0);
  JNIEnv* const env = java::detail::Env();
  const auto type = java::FindClass("java/lang/IllegalStateException");
  env->ThrowNew(static_cast<jclass>(type.Get()), "left over");
  EXPECT_EQ(ErrorOf([] { Called(); }), "java.lang.IllegalStateException: left over");
  EXPECT_EQ(Calls.Get(), 0);
}

TEST_F(MemberTest, AStaticFieldHoldsAnObject) {
  static constexpr StaticField<Local<Object>> Any{"fixture/Values", "staticObject"};
  static constexpr StaticField<java::Global<Derived>> Own{"fixture/Values", "staticObject", "Ljava/lang/Object;"};
  const Local<Derived> derived = NewDerived();
  Any.Set(derived);
  EXPECT_TRUE(java::Same(Any.Get(), derived));
  EXPECT_EQ(How.Get(Own.Get()), "nothing");
  Any.Set("text");
  EXPECT_EQ(java::ToText(java::Cast<java::String>(Any.Get())), "text");
  EXPECT_EQ(WhatOf<Misuse>([] { Own.Get(); }),
            "a java.lang.String comes from fixture.Values.staticObject, whose C++ type needs a "
            "fixture.Members$Derived");
  Any.Set(nullptr);
  EXPECT_FALSE(Any.Get());
}

// With a Thread, the host vouches that there is none.
TEST_F(MemberTest, WithAThreadTheMemberIsUsedAndWhatWasPendingIsThrownByACall) {
  const char* const option = std::getenv("TORVAN_TEST_VM_OPTION");
  if (option != nullptr && *option != '\0') GTEST_SKIP() << "the VM's own checks report such a call";
  Called();
  Calls.Set(0);
  const java::Thread thread;
  thread.Env()->ThrowNew(java::detail::ClassOf<java::Throwable>(thread.Env()), "left over");
  EXPECT_EQ(Calls.Get(thread), 0);
  EXPECT_EQ(ErrorOf([&] { Called(thread); }), "java.lang.Throwable: left over");
  EXPECT_EQ(Calls.Get(), 1);
}

TEST_F(MemberTest, AFieldIsNeitherReadNorWrittenWithAnExceptionPending) {
  static constexpr Field<Derived, jint> Made{"made"};
  static constexpr StaticField<std::optional<jint>> Boxed{"fixture/Members", "boxedField"};
  const Local<Derived> derived = NewDerived();
  Calls.Set(5);
  ExpectWhatIsPendingFirst([] { Calls.Set(6); });
  EXPECT_EQ(Calls.Get(), 5);
  ExpectWhatIsPendingFirst([&] { How.Set(derived, "changed"); });
  EXPECT_EQ(How.Get(derived), "nothing");
  ExpectWhatIsPendingFirst([] { Calls.Get(); });
  ExpectWhatIsPendingFirst([&] { Made.Get(derived); });  // its first use
  ExpectWhatIsPendingFirst([] { Boxed.Get(); });
  EXPECT_EQ(Boxed.Get(), 7);
}

TEST_F(MemberTest, AMemberIsNotBoundWithAnExceptionPending) {
  const Local<java::Class> members = java::FindClass("fixture/Members");
  ExpectWhatIsPendingFirst([&] { Called.In(members); });
  ExpectWhatIsPendingFirst([&] { Calls.In(members); });
  static constexpr StaticMethod<void()> Missing{"fixture/Members", "missing"};
  ExpectWhatIsPendingFirst([&] { Missing.In(members); });
}

// Each has the last two for itself, whose classes and types no other test asks for: what is kept for all is added to.
TEST_F(MemberTest, EightThreadsUseAMemberFirst) {
  static constexpr StaticMethod<jint(jint, jint)> Add{"java/lang/Math", "addExact"};
  static constexpr Method<Derived, jint()> Own{"shared"};
  static constexpr Field<Derived, jint> Made{"made"};
  static constexpr StaticField<jint> Largest{"java/lang/Integer", "MAX_VALUE"};
  static constexpr Constructor<Derived(jint)> Make;
  static constexpr Method<Derived, jint()> Hash{"hashCode"};
  std::atomic<int> wrong{0};
  InEightThreadsAtOnce([&] {
    const Local<Derived> derived = Make(5);
    if (Add(3, 4) != 7 || Own(derived) != 20 || Made.Get(derived) < 1 || Largest.Get() != 0x7FFFFFFF) ++wrong;
    const StaticMethod<jint(jint)> abs{"java/lang/StrictMath", "abs"};
    const StaticMethod<jint(Ref<Derived>)> hash{"java/util/Objects", "hashCode", "(Ljava/lang/Object;)I"};
    if (abs(-3) != 3 || hash(derived) != Hash(derived)) ++wrong;
  });
  EXPECT_EQ(wrong, 0);
}

// Looking up takes many times as long as a call.
TEST_F(MemberTest, MembersAndClassesAreLookedUpOnce) {
  JNIEnv* const env = java::detail::Env();
  static const JNINativeInterface_* const real = env->functions;
  static int lookUps = 0;
  JNINativeInterface_ table = *real;
  table.GetMethodID = [](JNIEnv* e, jclass type, const char* name, const char* descriptor) {
    ++lookUps;
    return real->GetMethodID(e, type, name, descriptor);
  };
  table.GetFieldID = [](JNIEnv* e, jclass type, const char* name, const char* descriptor) {
    ++lookUps;
    return real->GetFieldID(e, type, name, descriptor);
  };
  table.NewString = [](JNIEnv* e, const jchar* units, jsize size) {  // the name of a class
    ++lookUps;
    return real->NewString(e, units, size);
  };
  const Method<Derived, jint()> own{"shared"};
  const Field<Derived, jint> made{"made"};
  const Local<Derived> derived = NewDerived();
  const auto lookUpsOf = [&](const auto& use) {
    lookUps = 0;
    env->functions = &table;
    use();
    env->functions = real;
    return lookUps;
  };
  const auto use = [&] {
    own(derived);
    made.Get(derived);
    java::IsInstance<Abstract>(derived);
  };
  EXPECT_GE(lookUpsOf(use), 2);  // and the class, unless it has been asked for before
  EXPECT_EQ(lookUpsOf(use), 0);
}

TEST_F(MemberTest, MembersAreCopiedAsDeclarations) {
  const Method<Derived, jint()> local{"shared"};
  const auto copy = local;
  const Local<Derived> derived = NewDerived();
  EXPECT_EQ(local(derived), 20);
  EXPECT_EQ(copy(derived), 20);
  const std::vector<Method<Derived, jint()>> several(3, local);
  EXPECT_EQ(several[2](derived), 20);
}

}  // namespace
}  // namespace tests
