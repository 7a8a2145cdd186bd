// Members that are missing or are something else, and classes of other loaders.
#include <cstdlib>

#include "java/realvm/JavaFiles.h"
#include "java/realvm/MembersTags.h"

namespace tests {
namespace {

using java::ClassLoader;
using java::Constructor;
using java::Field;
using java::Local;
using java::Method;
using java::Misuse;
using java::StaticField;
using java::StaticMethod;

class MemberMissingTest : public RealVmTest {};

TEST_F(MemberMissingTest, WhatTheClassHasInsteadIsListed) {
  const Local<Derived> derived = java::New<Derived>();
  EXPECT_EQ(AddedBy([&] { Method<Derived, jint(jint)>{"shared"}(derived, 1); }),
            "(fixture.Members$Derived has no int shared(int); it has int shared())");
  EXPECT_EQ(AddedBy([&] { Method<Derived, jlong()>{"shared"}(derived); }),
            "(fixture.Members$Derived has no long shared(); it has int shared())");
  EXPECT_EQ(AddedBy([&] { Method<Derived, jint()>{"schared"}(derived); }),
            "(fixture.Members$Derived has no int schared(), and nothing else of that name)");
  EXPECT_EQ(AddedBy([&] { Method<Derived, std::string(jint)>{"greetTwice"}(derived, 1); }),
            "(fixture.Members$Derived has no java.lang.String greetTwice(int); it has java.lang.String "
            "greetTwice(java.lang.String))");
  EXPECT_EQ(AddedBy([] {
              StaticMethod<jint(jint, std::string_view)>{"java/lang/Math", "max"}(1, "2");
            }),
            "(java.lang.Math has no static int max(int, java.lang.String); it has static double max(double, double), "
            "static float max(float, float), static int max(int, int), static long max(long, long))");
  EXPECT_EQ(AddedBy([] { Constructor<Derived(bool)>{}(true); }),
            "(fixture.Members$Derived has no fixture.Members$Derived(boolean); it has fixture.Members$Derived(), "
            "fixture.Members$Derived(int), fixture.Members$Derived(java.lang.String), "
            "fixture.Members$Derived(java.lang.String, java.lang.Object), fixture.Members$Derived(long))");
  EXPECT_EQ(AddedBy([&] { Field<Derived, jint>{"how"}.Get(derived); }),
            "(fixture.Members$Derived has no int how; it has java.lang.String how)");
  EXPECT_EQ(AddedBy([] {
              StaticField<jint>{"fixture/Members", "cals"}.Get();
            }),
            "(fixture.Members has no static int cals, and nothing else of that name)");
}

TEST_F(MemberMissingTest, WhatTheJavaCompilerMadeIsNotListed) {
  const Local<Derived> derived = java::New<Derived>();
  EXPECT_EQ(AddedBy([&] { Method<Derived, jint(jint)>{"compareTo"}(derived, 1); }),
            "(fixture.Members$Derived has no int compareTo(int); it has int compareTo(fixture.Members$Derived))");
  EXPECT_EQ(java::Call<jint>(derived, "compareTo", java::Ref<java::Object>(derived)), 0);
}

TEST_F(MemberMissingTest, StaticAndNotIsTold) {
  const Local<Members> members = java::New<Members>();
  EXPECT_EQ(AddedBy([&] { Method<Members, jlong()>{"count"}(members); }),
            "(static long count() of fixture.Members is static: declare it as StaticMethod)");
  EXPECT_EQ(AddedBy([] {
              StaticMethod<jint(jint)>{"fixture/Members", "twice"}(1);
            }),
            "(int twice(int) of fixture.Members is not static: declare it as Method)");
  EXPECT_EQ(AddedBy([&] { Field<Members, jint>{"calls"}.Get(members); }),
            "(static int calls of fixture.Members is static: declare it as StaticField)");
  EXPECT_EQ(AddedBy([] {
              StaticField<jint>{"fixture/Members$Derived", "made"}.Get();
            }),
            "(int made of fixture.Members$Derived is not static: declare it as Field)");
}

TEST_F(MemberMissingTest, AClassThatIsNotThereNamesTheClassPath) {
  const std::string path = java::CallStatic<std::string>("java/lang/System", "getProperty", "java.class.path");
  const std::string expected = "java.lang.ClassNotFoundException: fixture.NoSuch (not on the class path " + path +
                               "; bind members of another loader's class with In, and make arrays of it with "
                               "NewArray(vector, class))";
  EXPECT_EQ(ErrorOf([] { java::FindClass("fixture/NoSuch"); }), expected);
  EXPECT_EQ(ErrorOf([] { java::FindClass("fixture.NoSuch"); }), expected);
  const auto neededBy = [&](const char* member) { return expected + " (needed by fixture.NoSuch" + member + ")"; };
  EXPECT_EQ(ErrorOf([] { StaticMethod<void(jint)>{"fixture/NoSuch", "none"}(5); }), neededBy(".none(int)"));
  EXPECT_EQ(ErrorOf([] { StaticField<jint>{"fixture/NoSuch", "number"}.Get(); }), neededBy(".number"));
  EXPECT_EQ(ErrorOf([] { Constructor<NoSuch(bool)>{}(true); }), neededBy("(boolean)"));
  EXPECT_EQ(ErrorOf([] { java::CallStatic<void>("fixture/NoSuch", "none", 5, "x"); }),
            neededBy(".none(int, java.lang.String)"));
  EXPECT_EQ(ErrorOf([] { java::New<NoSuch>(5); }), neededBy("(int)"));
}

TEST_F(MemberMissingTest, ALookUpThatFailedIsMadeAgain) {
  const StaticMethod<void()> none{"fixture/Members", "none"};
  EXPECT_NE(ErrorOf([&] { none(); }), "nothing");
  EXPECT_NE(ErrorOf([&] { none(); }), "nothing");
}

struct Plugin {
  static constexpr char JavaName[] = "fixture/Plugin";
};

TEST_F(MemberMissingTest, MembersOfAnotherLoadersClass) {
  SKIP_UNLESS_JAVA_KNOWS(TORVAN_TEST_OTHER_CLASSES);
  const ClassLoader loader = ClassLoader::OfJars({TORVAN_TEST_OTHER_CLASSES});
  const Local<java::Class> type = loader.FindClass("fixture.Plugin");
  static constexpr Constructor<Plugin(jint)> Make;
  static constexpr Method<Plugin, jint()> Number{"number"};
  static constexpr StaticMethod<std::string()> Where{"fixture/Plugin", "where"};
  static constexpr Field<Plugin, jint> TheNumber{"number"};
  const auto make = Make.In(type);
  const auto number = Number.In(type);
  const auto copy = number;
  const Local<Plugin> plugin = make(7);
  EXPECT_EQ(number(plugin), 7);
  EXPECT_EQ(copy(java::Thread(), plugin), 7);
  EXPECT_EQ(Where.In(type)(), "elsewhere");
  TheNumber.In(type).Set(plugin, 8);
  EXPECT_EQ(TheNumber.In(type).Get(plugin), 8);
  EXPECT_EQ(java::Call<jint>(plugin, "number"), 8);
  EXPECT_TRUE(java::Same(ClassLoader::Of(plugin).Loader(), loader.Loader()));
  EXPECT_TRUE(java::Same(ClassLoader::Of(type).Loader(), loader.Loader()));
  EXPECT_NE(ErrorOf([&] { Number(plugin); }).find("fixture.Plugin (not on the class path "), std::string::npos);
  EXPECT_EQ(AddedBy([&] { Method<Plugin, jint(jint)>{"number"}.In(type); }),
            "(fixture.Plugin has no int number(int); it has int number())");
  EXPECT_NE(ErrorOf([&] { loader.FindClass("fixture/NoSuch"); }).find("java.net.URLClassLoader"), std::string::npos);
}

// Two loaders, two classes of one name: an object of one is none of the other, whatever its tag says.
TEST_F(MemberMissingTest, AnObjectOfAnotherLoadersClassIsRefused) {
  SKIP_UNLESS_JAVA_KNOWS(TORVAN_TEST_OTHER_CLASSES);
  const Local<java::Class> first = ClassLoader::OfJars({TORVAN_TEST_OTHER_CLASSES}).FindClass("fixture/Plugin");
  const Local<java::Class> second = ClassLoader::OfJars({TORVAN_TEST_OTHER_CLASSES}).FindClass("fixture/Plugin");
  const auto number = Method<Plugin, jint()>{"number"}.In(first);
  const auto sum = Method<Plugin, jint(java::Ref<Plugin>)>{"plus"}.In(first);
  const Local<Plugin> own = Constructor<Plugin(jint)>{}.In(first)(1);
  const Local<Plugin> other = Constructor<Plugin(jint)>{}.In(second)(2);
  EXPECT_EQ(number(own), 1);
  EXPECT_EQ(sum(own, own), 2);
  EXPECT_EQ(WhatOf<Misuse>([&] { number(other); }),
            "a fixture.Plugin is given as the object of fixture.Plugin.number(), which needs a fixture.Plugin "
            "of another class loader");
  EXPECT_EQ(WhatOf<Misuse>([&] { sum(own, other); }),
            "a fixture.Plugin is given as argument 1 of fixture.Plugin.plus(fixture.Plugin), which needs a "
            "fixture.Plugin of another class loader");
}

// The class path has the class, and a loader that does not ask it has another one.
TEST_F(MemberMissingTest, AnObjectOfAnotherLoadersClassIsRefusedByMembersOfTheClassPath) {
  SKIP_UNLESS_JAVA_KNOWS(TORVAN_TEST_OTHER_CLASSES);
  static constexpr Method<Derived, jint()> Shared{"shared"};
  const Local<Derived> own = java::New<Derived>();
  EXPECT_EQ(Shared(own), 20);
  const ClassLoader loader = ClassLoader::OfJars({TORVAN_TEST_CLASSES}, ClassLoader::Platform());
  const Local<java::Class> other = loader.FindClass("fixture.Members$Derived");
  const Local<Derived> stranger = Constructor<Derived()>{}.In(other)();
  EXPECT_EQ(Shared.In(other)(stranger), 20);
  EXPECT_EQ(WhatOf<Misuse>([&] { Shared(stranger); }),
            "a fixture.Members$Derived is given as the object of fixture.Members$Derived.shared(), which needs a "
            "fixture.Members$Derived of another class loader");
  EXPECT_EQ(Shared(own), 20);
  static constexpr Field<Derived, std::string> How{"how"};
  const std::string wrongOwner =
      "a fixture.Members$Derived is given as the object of fixture.Members$Derived.how, which needs a "
      "fixture.Members$Derived of another class loader";
  EXPECT_EQ(WhatOf<Misuse>([&] { How.Get(stranger); }), wrongOwner);
  EXPECT_EQ(WhatOf<Misuse>([&] { How.Set(stranger, "text"); }), wrongOwner);
  EXPECT_EQ(How.Get(own), "nothing");
}

TEST_F(MemberMissingTest, WrongUseOfLoaders) {
  EXPECT_EQ(WhatOf<Misuse>([] { ClassLoader::OfJars({"no/such.jar"}); }),
            "there is no no/such.jar to load classes from");
  EXPECT_EQ(WhatOf<Misuse>([] { ClassLoader::Of(nullptr); }), "null has no class loader");
  EXPECT_EQ(WhatOf<Misuse>([] { ClassLoader::Of(java::NewString("x")); }),
            "the class is the VM's own, which no class loader has");
  EXPECT_EQ(WhatOf<Misuse>([] {
              StaticMethod<jint(jint)>{"a/B", "c"}.In(nullptr);
            }),
            "null is given as the class that a.B.c(int) is bound to");
  EXPECT_EQ(WhatOf<Misuse>([] { Constructor<java::String()>().In(java::FindClass("java/lang/Object")); }),
            "java.lang.String() cannot make objects of this class: the tag names java.lang.String, and a "
            "java.lang.Object is none");
  EXPECT_EQ(java::Call<std::string>(ClassLoader::System().FindClass("fixture/Members"), "getName"), "fixture.Members");
}

}  // namespace
}  // namespace tests
