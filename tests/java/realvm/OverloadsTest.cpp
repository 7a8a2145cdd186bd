// One callable of several members.
#include "java/realvm/MembersTags.h"

namespace tests {
namespace {

using java::Constructor;
using java::Field;
using java::Local;
using java::Object;
using java::Overloads;
using java::Ref;
using java::StaticMethod;

struct Builder {
  static constexpr char JavaName[] = "java/lang/StringBuilder";
};

class OverloadsTest : public RealVmTest {};

template <typename... A>
using Over = StaticMethod<std::string(A...)>;
constexpr const char* Type = "fixture/Members";

constexpr Overloads All{Over<bool>{Type, "over"},
                        Over<char16_t>{Type, "over"},
                        Over<jint>{Type, "over"},
                        Over<jlong>{Type, "over"},
                        Over<double>{Type, "over"},
                        Over<std::string_view>{Type, "over"},
                        Over<Ref<Object>>{Type, "over"},
                        Over<std::optional<jint>, jint>{Type, "over"},
                        Over<Ref<Object>, Ref<Object>>{Type, "over"}};

TEST_F(OverloadsTest, JavasOwnChoice) {
  EXPECT_EQ(All(true), "boolean");
  EXPECT_EQ(All(u'x'), "char");
  EXPECT_EQ(All(jbyte{1}), "int");
  EXPECT_EQ(All(jshort{1}), "int");
  EXPECT_EQ(All(1), "int");
  EXPECT_EQ(All(std::int64_t{1}), "long");
  EXPECT_EQ(All(1.5f), "double");
  EXPECT_EQ(All(1.5), "double");
  EXPECT_EQ(All("text"), "String");
  EXPECT_EQ(All(u"text"), "String");
  EXPECT_EQ(All(std::string("text")), "String");
  EXPECT_EQ(All(java::NewString("text")), "String");
  EXPECT_EQ(All(nullptr), "String");
  EXPECT_EQ(All(NewInteger(1)), "Object");
  EXPECT_EQ(All(java::Thread(), NewInteger(1)), "Object");
  EXPECT_EQ(All(1, 2), "Integer, int");
  EXPECT_EQ(All("a", NewInteger(1)), "Object, Object");
}

TEST_F(OverloadsTest, ANumberBecomesAnObjectOnlyWhereNothingTakesItAsItIs) {
  static constexpr Overloads Both{Over<std::optional<jint>, jint>{Type, "over"}, Over<Ref<Object>>{Type, "over"}};
  EXPECT_EQ(Both(1, 2), "Integer, int");
  static constexpr Overloads LongFirst{StaticMethod<std::string(std::optional<jlong>)>{
                                           "fixture/Values", "seen", "(Ljava/lang/Object;)Ljava/lang/String;"},
                                       StaticMethod<std::string(jlong)>{"fixture/Values", "seen"}};
  EXPECT_EQ(LongFirst(jlong{5}), "long 5");
  EXPECT_EQ(LongFirst(std::optional<jlong>(5)), "java.lang.Long 5");
}

// Java's order of numbers, also where a call does not widen them because digits may be lost.
TEST_F(OverloadsTest, WholeNumbersGoBeforeTheOthers) {
  constexpr const char* values = "fixture/Values";
  static constexpr Overloads LongOrFloat{Over<float>{values, "seen"}, Over<jlong>{values, "seen"}};
  static constexpr Overloads LongOrDouble{Over<double>{values, "seen"}, Over<jlong>{values, "seen"}};
  static constexpr Overloads IntOrFloat{Over<float>{values, "seen"}, Over<jint>{values, "seen"}};
  EXPECT_EQ(LongOrFloat(jshort{5}), "long 5");
  EXPECT_EQ(LongOrDouble(5), "long 5");
  EXPECT_EQ(IntOrFloat(jbyte{5}), "int 5");
}

TEST_F(OverloadsTest, ConstructorsAndMethodsOfObjects) {
  static constexpr Overloads<Constructor<Derived()>, Constructor<Derived(jint)>, Constructor<Derived(jlong)>,
                             Constructor<Derived(std::string_view)>>
      Make;
  static constexpr Field<Derived, std::string> How{"how"};
  const java::Thread thread;
  EXPECT_EQ(How.Get(Make()), "nothing");
  EXPECT_EQ(How.Get(Make(thread)), "nothing");
  EXPECT_EQ(How.Get(Make(1)), "int 1");
  EXPECT_EQ(How.Get(Make(jlong{1})), "long 1");
  EXPECT_EQ(How.Get(Make(thread, "x")), "x");

  using Result = Local<Builder>;
  static constexpr Overloads<java::Method<Builder, Result(jint)>, java::Method<Builder, Result(double)>,
                             java::Method<Builder, Result(char16_t)>, java::Method<Builder, Result(std::string_view)>,
                             java::Method<Builder, Result(Ref<Object>)>>
      Append{"append"};
  const Local<Builder> builder = java::New<Builder>();
  Append(builder, 1);
  Append(thread, builder, 2.5);
  Append(builder, u'x');
  Append(builder, "text");
  Append(builder, NewInteger(7));
  EXPECT_EQ(java::Call<std::string>(builder, "toString"), "12.5xtext7");
}

}  // namespace
}  // namespace tests
