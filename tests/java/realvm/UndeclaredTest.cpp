// Calls without a declaration.
#include "java/realvm/MembersTags.h"

namespace tests {
namespace {

using java::Call;
using java::CallStatic;
using java::Local;
using java::Misuse;
using java::New;
using java::Object;

class UndeclaredTest : public RealVmTest {};

constexpr const char* MembersType = "fixture/Members";

TEST_F(UndeclaredTest, TheArgumentsTypesChooseTheMethod) {
  EXPECT_EQ(CallStatic<std::string>(MembersType, "over", 1), "int");
  EXPECT_EQ(CallStatic<std::string>(MembersType, "over", jlong{1}), "long");
  EXPECT_EQ(CallStatic<std::string>(MembersType, "over", true), "boolean");
  EXPECT_EQ(CallStatic<std::string>(MembersType, "over", u'x'), "char");
  EXPECT_EQ(CallStatic<std::string>(MembersType, "over", "text"), "String");
  EXPECT_EQ(CallStatic<jint>("java.lang.Math", "max", 3, 4), 4);
  EXPECT_EQ(CallStatic<jint>(java::Thread(), "java/lang/Math", "max", 3, 4), 4);
  EXPECT_EQ(CallStatic<jint>(java::FindClass("java.lang.Math"), "max", 3, 4), 4);
  EXPECT_EQ(CallStatic<std::string>(MembersType, "secret"), "told");
}

// The class of the list has no loader that would know the host's.
TEST_F(UndeclaredTest, WhatAListHasMayBeOfAClassOfTheHosts) {
  const Local<ArrayList> list = New<ArrayList>();
  Call<void>(list, "add", New<Derived>("text"));
  Call<void>(list, "add", "text");
  EXPECT_TRUE(Call<Local<Derived>>(list, "get", 0));
  EXPECT_THAT(WhatOf<Misuse>([&] { Call<Local<Derived>>(list, "get", 1); }),
              testing::StartsWith("A java.lang.String is given where a fixture.Members$Derived"));
}

TEST_F(UndeclaredTest, ElseTheOnlyOneThatTakesThem) {
  const Local<ArrayList> list = New<ArrayList>(16);
  EXPECT_TRUE(Call<bool>(list, "add", "text"));
  Call<void>(list, "add", 0, NewInteger(5));
  Call<void>(java::Thread(), list, "add", 0, nullptr);
  EXPECT_EQ(Call<jint>(list, "size"), 3);
  EXPECT_EQ(Call<std::string>(list, "toString"), "[null, 5, text]");
  EXPECT_EQ(Call<std::string>(list, "get", 2), "text");
  EXPECT_FALSE(Call<Local<>>(list, "get", 0));
  EXPECT_EQ(CallStatic<std::string>(MembersType, "boxed", 7), "Integer 7");
  EXPECT_EQ(CallStatic<std::string>(MembersType, "boxed", jshort{7}), "Short 7");
  EXPECT_EQ(CallStatic<std::string>(MembersType, "boxed", 0.5), "Double 0.5");
  EXPECT_EQ(CallStatic<std::string>(MembersType, "listed", list), "list of 3");
  EXPECT_EQ(CallStatic<std::string>(MembersType, "listed", list.Get()), "list of 3");
  EXPECT_EQ(CallStatic<std::string>(MembersType, "chars", "text"), "chars text");
  EXPECT_EQ(Call<jint>(New<Members>(), "twice", jshort{21}), 42);
  EXPECT_EQ(CallStatic<std::string>("fixture/Values", "seen", jbyte{-1}), "byte -1");
  EXPECT_EQ(CallStatic<double>("java/lang/Math", "sqrt", 16), 4.0);
  EXPECT_EQ(CallStatic<double>("java/lang/Math", "sqrt", 0.25f), 0.5);
}

TEST_F(UndeclaredTest, TheResultIsConvertedOrDropped) {
  CallStatic<void>(MembersType, "count");
  CallStatic<void>(MembersType, "nothing");
  CallStatic<void>("java/lang/String", "valueOf", 5);
  EXPECT_EQ(CallStatic<double>(MembersType, "half"), 0.5);
  EXPECT_EQ(CallStatic<std::optional<std::string>>("java.lang.System", "getProperty", "no.such.property"),
            std::nullopt);
  EXPECT_EQ(CallStatic<std::string>(MembersType, "asObject", "text"), "text");
  EXPECT_EQ(WhatOf<Misuse>([] { CallStatic<jint>(MembersType, "count"); }),
            "fixture.Members.count() returns long, and int is asked for");
  EXPECT_EQ(WhatOf<Misuse>([] { CallStatic<std::string>(MembersType, "count"); }),
            "fixture.Members.count() returns long, and java.lang.String is asked for");
  EXPECT_EQ(WhatOf<Misuse>([] { CallStatic<jint>(MembersType, "nothing"); }),
            "fixture.Members.nothing() returns void, and int is asked for");
  EXPECT_EQ(WhatOf<Misuse>([] { CallStatic<std::string>(MembersType, "asObject", NewInteger(5)); }),
            "A java.lang.Integer is given where a java.lang.String is needed");
}

TEST_F(UndeclaredTest, NewTakesTheConstructorThatFits) {
  const java::Field<Derived, std::string> how{"how"};
  EXPECT_EQ(how.Get(New<Derived>()), "nothing");
  EXPECT_EQ(how.Get(New<Derived>(5)), "int 5");
  EXPECT_EQ(how.Get(New<Derived>(java::Thread(), jlong{5})), "long 5");
  EXPECT_EQ(how.Get(New<Derived>("text")), "text");
  EXPECT_EQ(how.Get(New<Derived>("text", NewInteger(5))), "text 5");
}

TEST_F(UndeclaredTest, WhatIsPendingIsThrownFirst) {
  New<Derived>();
  ExpectWhatIsPendingFirst([] { Call<void>(Local<Derived>(), "shared"); });
  ExpectWhatIsPendingFirst([] { CallStatic<void>(java::Ref<java::Class>(nullptr), "called"); });
  ExpectWhatIsPendingFirst([] { New<Derived>("not \xFF UTF-8"); });
}

TEST_F(UndeclaredTest, SeveralThatFitAreListed) {
  EXPECT_EQ(WhatOf<Misuse>([] { CallStatic<std::string>(MembersType, "two", 1, 2); }),
            "several members take the arguments of fixture.Members.two(int, int): static java.lang.String two(int, "
            "long), static java.lang.String two(long, int)");
  EXPECT_EQ(CallStatic<std::string>(MembersType, "two", 1, jlong{2}), "int, long");
}

TEST_F(UndeclaredTest, NoneSaysWhatThereIs) {
  EXPECT_EQ(AddedBy([] { CallStatic<std::string>(MembersType, "two", "a"); }),
            "(fixture.Members has no static java.lang.String two(java.lang.String); it has static java.lang.String "
            "two(int, long), static java.lang.String two(long, int))");
  EXPECT_EQ(AddedBy([] { CallStatic<jint>(MembersType, "twice", 1); }),
            "(int twice(int) of fixture.Members is not static: declare it as Method)");
}

}  // namespace
}  // namespace tests
