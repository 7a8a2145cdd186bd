// Java objects whose methods are C++ functions: types, defaults, and which method a function is for.
#include <functional>
#include <memory>
#include <string>

#include "java/realvm/CallbackTags.h"
#include "java/realvm/OneVm.h"

namespace tests {

// Types of the host's own: by way of a number, and of text.
struct Meters {
  double value;
};
struct Word {
  std::string text;
};

}  // namespace tests

template <>
struct torvan::java::Convert<tests::Meters> : ConvertAs<double> {
  static double To(const tests::Meters& meters) { return meters.value; }
  static tests::Meters From(double value) { return {value}; }
};
template <>
struct torvan::java::Convert<tests::Word> : ConvertAs<std::string> {
  static std::string To(const tests::Word& word) { return word.text; }
  static tests::Word From(const std::string& text) { return {text}; }
};

namespace tests {
namespace {

using java::Global;
using java::Implement;
using java::Local;
using java::Misuse;
using java::Object;
using java::Ref;
using java::StaticMethod;
using java::String;

class ImplementTest : public RealVmTest {};

constexpr const char* Type = "fixture/Callbacks";
constexpr StaticMethod<std::string(Ref<Every>)> CallEvery{Type, "every"};
constexpr StaticMethod<std::string(Ref<Every>)> CallMany{Type, "many"};
constexpr StaticMethod<std::string(Ref<Shape>)> FailedDefault{Type, "failedDefault"};
constexpr StaticMethod<std::string(Ref<Shout>, Ref<NamedSupplier>)> Generic{Type, "generic"};
constexpr StaticMethod<std::string(Ref<Function>, Ref<Object>)> ThrownByFunction{Type, "thrownByFunction"};
constexpr StaticMethod<std::string(Ref<Object>, Ref<Object>)> OfObject{Type, "ofObject"};
constexpr StaticMethod<Local<Object>(Ref<Comparator>, Ref<Objects>)> Sorted{
    Type, "sorted", "(Ljava/util/Comparator;[Ljava/lang/Object;)Ljava/util/List;"};
constexpr java::Method<Object, std::string()> ToString{"toString"};

Local<Objects> ArrayOf(std::initializer_list<Ref<Object>> elements) {
  JNIEnv* const env = java::detail::Env();
  const auto array =
      env->NewObjectArray(static_cast<jsize>(elements.size()), java::detail::ClassOf<Object>(env), nullptr);
  jsize next = 0;
  for (const Ref<Object>& element : elements) env->SetObjectArrayElement(array, next++, element.Get());
  return java::Adopt<Objects>(array);
}

TEST_F(ImplementTest, EveryTypeArrivesAndLeaves) {
  const Local<Every> every = Implement<Every>()
                                 .On("ofBoolean", [](bool value) { return !value; })
                                 .On("ofByte", [](jbyte value) { return static_cast<jbyte>(value - 1); })
                                 .On("ofChar", [](char16_t value) { return static_cast<char16_t>(value + 1); })
                                 .On("ofShort", [](jshort value) { return static_cast<jshort>(value - 1); })
                                 .On("ofInt", [](jint value) { return value; })
                                 .On("ofLong", [](jlong value) { return value; })
                                 .On("ofFloat", [](float value) { return value; })
                                 .On("ofDouble", [](double value) { return value; })
                                 .On("ofText", [](const std::optional<std::string>& value) { return value; })
                                 .On("ofObject", [](Ref<Object> value) { return Global<Object>(value); })
                                 .On("ofBoxed",
                                     [](std::optional<jint> value) {
                                       return value.has_value() ? std::optional<jint>(*value + 1) : std::nullopt;
                                     })
                                 .New();
  EXPECT_EQ(CallEvery(every),
            "false -8 \xE2\x82\xAD -301 -2147483648 9223372036854775807 -0.0 4.9E-324 Z\xC3\xBCrich null x 42 null");
}

TEST_F(ImplementTest, ABooleanIsTrueWhateverItsBitsAre) {
  const Local<Every> every =
      Implement<Every>().On("ofBoolean", [](jboolean value) { return static_cast<jboolean>(value + 1); }).New();
  EXPECT_TRUE(java::Call<bool>(every, "ofBoolean", true));  // 2, and not its lowest bit
  EXPECT_TRUE(java::Call<bool>(every, "ofBoolean", false));
}

TEST_F(ImplementTest, MixedManyAndNoArguments) {
  int nothings = 0;
  const auto implementation =
      Implement<Every>()
          .On("nothing", [&] { ++nothings; })
          .On("mixed",
              [](jint number, std::string_view text, double half, Ref<Object> object, jlong large) {
                return std::to_string(number) + std::string(text) + std::to_string(half).substr(0, 3) +
                       ToString(object) + std::to_string(large);
              })
          .On("sum", [](jlong a, jint b, jshort c, jbyte d, char16_t e) { return a + b + c + d + e; })
          .On("made", [](jint number) { return NewInteger(number); })
          .On("all",
              [](Ref<Object> a, Ref<Object> b, Ref<Object> c, Ref<Object> d, Ref<Object> e, Ref<Object> f,
                 Ref<Object> g, Ref<Object> h, Ref<Object> i, Ref<Object> j, Ref<Object> k, Ref<Object> l,
                 Ref<Object> m, Ref<Object> n, Ref<Object> o, Ref<Object> p, Ref<Object> q, Ref<Object> r,
                 Ref<Object> s, Ref<Object> t, jlong u, double v) {
                std::string text;
                for (const auto& each : {a, b, c, d, e, f, g, h, i, j, k, l, m, n, o, p, q, r, s, t})
                  text += ToString(each);
                return text + std::to_string(u) + std::to_string(v).substr(0, 3);
              })
          .On("count", [](Ref<Objects> values) {
            return java::detail::Env()->GetArrayLength(static_cast<jarray>(values.Get()));
          });
  EXPECT_EQ(CallMany(implementation), "5five0.5[1, 2]1099511627776 1099511627905 3 3 tsrqponmlkjihgfedcba50.5");
  EXPECT_EQ(nothings, 1);
}

TEST_F(ImplementTest, ResultsOfEveryKindOfText) {
  const auto with = [](auto function) { return Applied(Implement<Function>().On("apply", function).New(), nullptr); };
  EXPECT_EQ(with([](Ref<Object>) { return "literal"; }), "literal");
  EXPECT_EQ(with([](Ref<Object>) { return std::u16string(u"units"); }), "units");
  EXPECT_EQ(with([](Ref<Object>) { return std::string_view("view"); }), "view");
  EXPECT_EQ(with([](Ref<Object>) { return NewText("local"); }), "local");
  EXPECT_EQ(Applied([](Ref<Object> value) { return value; }, "the same"), "the same");
  EXPECT_EQ(Applied([](Local<String> value) { return value; }, "the same"), "the same");
  EXPECT_EQ(Applied([](std::u16string_view value) { return std::u16string(value) + u"!"; }, "text"), "text!");
  EXPECT_EQ(Applied([](std::string_view value) { return value.substr(1); }, "text"), "ext");
}

// Returns what a function makes of a vector, which Java passes to it as an array and takes from it.
template <typename V, typename F>
V AppliedTo(const V& values, const F& function) {
  constexpr StaticMethod<V(Ref<Function>, Ref<Object>)> applied{
      Type, "applied", "(Ljava/util/function/Function;Ljava/lang/Object;)Ljava/lang/Object;"};
  return applied(function, java::NewArray(values));
}

TEST_F(ImplementTest, VectorsArriveAndLeave) {
  using Ints = std::vector<jint>;
  EXPECT_EQ(AppliedTo(Ints{1, 2},
                      [](Ints values) {
                        values.push_back(3);
                        return values;
                      }),
            (Ints{1, 2, 3}));
  EXPECT_EQ(AppliedTo(Ints(5000, 7), [](const Ints& values) { return values; }), Ints(5000, 7));
  using Texts = std::vector<std::string>;
  EXPECT_EQ(AppliedTo(Texts{"a", "Z\xC3\xBCrich"},
                      [](const Texts& values) {
                        return Texts{values[1], values[0], ""};
                      }),
            (Texts{"Z\xC3\xBCrich", "a", ""}));
  using Matrix = std::vector<std::vector<double>>;
  EXPECT_EQ(AppliedTo(Matrix{{1, 2}, {}},
                      [](Matrix values) {
                        values[1] = {0.5};
                        return values;
                      }),
            (Matrix{{1, 2}, {0.5}}));
  using Perhaps = std::vector<std::optional<std::string>>;
  EXPECT_EQ(AppliedTo(Perhaps{std::nullopt, "b"},
                      [](const Perhaps& values) {
                        return Perhaps{values[1], values[0]};
                      }),
            (Perhaps{"b", std::nullopt}));
  EXPECT_EQ(ThrownByFunction([](const Ints& values) { return values; }, java::NewArray(Texts{"a"})),
            "java.lang.ClassCastException: argument 1 of public abstract java.lang.Object "
            "java.util.function.Function.apply(java.lang.Object) is a [Ljava.lang.String;, and the C++ function takes "
            "a [I");
}

TEST_F(ImplementTest, AnElementThatIsNullIsNamed) {
  const auto texts = java::NewArray(std::vector<std::optional<std::string>>{std::nullopt});
  EXPECT_EQ(ThrownByFunction([](const std::vector<std::string>& values) { return values; }, texts),
            "java.lang.RuntimeException: element [0] of argument 1 of "
            "java.util.function.Function.apply(java.lang.Object) is null, which its C++ type cannot be: take it as "
            "std::optional");
  const auto rows = java::NewArray(std::vector<std::optional<std::vector<jint>>>{std::vector<jint>{1}, std::nullopt});
  EXPECT_EQ(ThrownByFunction([](const std::vector<std::vector<jint>>& values) { return values; }, rows),
            "java.lang.RuntimeException: element [1] of argument 1 of "
            "java.util.function.Function.apply(java.lang.Object) is null, which its C++ type cannot be: take it as "
            "std::optional");
}

TEST_F(ImplementTest, TypesOfTheHostsOwnArriveAndLeave) {
  const auto longer = [](Meters by) { return Meters{by.value + 0.5}; };
  EXPECT_EQ(java::Call<double>(Implement<Every>().On("ofDouble", longer).New(), "ofDouble", 2.0), 2.5);
  EXPECT_EQ(Applied([](const Word& word) { return Word{word.text + "!"}; }, "word"), "word!");
  EXPECT_EQ(AppliedTo(std::vector<Word>{{"a"}, {"b"}},
                      [](const std::vector<Word>& words) {
                        return std::vector<Word>{words[1], words[0]};
                      })
                .at(0)
                .text,
            "b");
  EXPECT_EQ(ThrownByFunction([](const Word& word) { return word; }, nullptr),
            "java.lang.RuntimeException: argument 1 of java.util.function.Function.apply(java.lang.Object) is null, "
            "which its C++ type cannot be: take it as std::optional");
}

TEST_F(ImplementTest, AFunctionGoesWhereAFunctionalInterfaceIsWanted) {
  const Local<Objects> texts = ArrayOf({NewText("b"), NewText("c"), NewText("a")});
  EXPECT_EQ(ToString(Sorted([](std::string_view a, std::string_view b) { return a.compare(b); }, texts)), "[c, b, a]");
  const std::function<jint(std::string, std::string)> function = [](const std::string& a, const std::string& b) {
    return a.compare(b);
  };
  EXPECT_EQ(ToString(Sorted(function, texts)), "[c, b, a]");
  jint (*const pointer)(Ref<Object>, Ref<Object>) = [](Ref<Object> a, Ref<Object> b) -> jint {
    return ToString(a) < ToString(b) ? -1 : 1;
  };
  EXPECT_EQ(ToString(Sorted(pointer, texts)), "[c, b, a]");
  EXPECT_EQ(Nest([](jint x) { return 2 * x; }, 21), 42);
  EXPECT_EQ(Nest(Implement<IntOperator>().On("applyAsInt",
                                             [owned = std::make_unique<int>(40)](jint x) { return *owned + x; }),
                 2),
            42);
}

TEST_F(ImplementTest, NumbersAsObjectsOfGenericInterfaces) {
  EXPECT_EQ(ToString(Sorted([](jint a, jint b) { return a < b ? -1 : a > b; },
                            ArrayOf({NewInteger(2), NewInteger(3), NewInteger(1)}))),
            "[3, 2, 1]");
  constexpr StaticMethod<std::optional<double>(Ref<Function>, std::optional<double>)> ApplyDouble{
      Type, "applied", "(Ljava/util/function/Function;Ljava/lang/Object;)Ljava/lang/Object;"};
  EXPECT_EQ(ApplyDouble([](double x) { return x / 2; }, 5.0), 2.5);
  EXPECT_EQ(ThrownByFunction([](double x) { return x; }, NewInteger(1)),
            BeforeJava9()
                ? "java.lang.ClassCastException: java.lang.Integer cannot be cast to java.lang.Double"
                : "java.lang.ClassCastException: class java.lang.Integer cannot be cast to class java.lang.Double "
                  "(java.lang.Integer and java.lang.Double are in module java.base of loader 'bootstrap')");
  EXPECT_EQ(ThrownByFunction([](double x) { return x; }, nullptr),
            "java.lang.NullPointerException: argument 1 of public abstract java.lang.Object "
            "java.util.function.Function.apply(java.lang.Object) is null");
  EXPECT_EQ(ThrownByFunction([](std::string x) { return x; }, NewInteger(1)),
            "java.lang.ClassCastException: argument 1 of public abstract java.lang.Object "
            "java.util.function.Function.apply(java.lang.Object) is a java.lang.Integer, and the C++ function takes a "
            "java.lang.String");
  EXPECT_EQ(ThrownByFunction([](std::string x) { return x; }, nullptr),
            "java.lang.RuntimeException: argument 1 of java.util.function.Function.apply(java.lang.Object) is null, "
            "which its C++ type cannot be: take it as std::optional");
}

TEST_F(ImplementTest, AnArgumentThatIsNullIsNamedAlsoWhereNothingIsReturned) {
  const Local<Consumer> consumer = Implement<Consumer>().On("accept", [](const std::string&) {}).New();
  java::Call<void>(consumer, "accept", "text");
  EXPECT_EQ(WhatOf<java::Error>([&] { java::Call<void>(consumer, "accept", nullptr); }),
            "java.lang.RuntimeException: argument 1 of java.util.function.Consumer.accept(java.lang.Object) is null, "
            "which its C++ type cannot be: take it as std::optional");
}

TEST_F(ImplementTest, MethodsThatAGenericInterfaceAndItsOverridingOneHave) {
  EXPECT_EQ(Generic([](std::string_view value) { return std::string(value) + "!"; }, [] { return "name"; }),
            "a!b!namename");
  const Local<Shout> shout = Implement<Shout>().On("apply", [](std::string value) { return value; }).New();
  const char* const newer =
      "java.lang.ClassCastException: class java.lang.Integer cannot be cast to class java.lang.String";
  const char* const older = "java.lang.ClassCastException: java.lang.Integer cannot be cast to java.lang.String";
  EXPECT_THAT(ThrownByFunction(java::Cast<Function>(shout), NewInteger(1)),
              testing::StartsWith(BeforeJava9() ? older : newer));
}

struct Both {
  static constexpr char JavaName[] = "fixture/Callbacks$Both";
  using Super = Function;
};

struct BothOtherwise {
  static constexpr char JavaName[] = "fixture/Callbacks$BothOtherwise";
  using Super = Function;
};

TEST_F(ImplementTest, MethodsThatTwoInterfacesHaveAndNoBridge) {
  constexpr StaticMethod<std::string(Ref<Both>, Ref<Object>)> applied{
      Type, "applied", "(Ljava/util/function/Function;Ljava/lang/Object;)Ljava/lang/Object;"};
  EXPECT_EQ(applied([](std::string value) { return value + "!"; }, "a"), "a!");
  constexpr StaticMethod<std::string(Ref<BothOtherwise>, Ref<Object>)> otherwise{
      Type, "applied", "(Ljava/util/function/Function;Ljava/lang/Object;)Ljava/lang/Object;"};
  EXPECT_EQ(otherwise([](Ref<Object> value) { return ToString(value) + "!"; }, "a"), "a!");
  const Local<Both> both =
      Implement<Both>()
          .On(
              "apply", [](std::string_view) { return "called"; }, "(Ljava/lang/String;)Ljava/lang/String;")
          .New();
  EXPECT_EQ(Applied(both, "a"), "called");
  EXPECT_EQ(java::Call<std::string>(both, "apply", "a"), "called");
  EXPECT_EQ(ThrownByFunction(both, NewInteger(1)),
            "java.lang.ClassCastException: Cannot cast java.lang.Integer to java.lang.String");
}

struct PutBoth {
  static constexpr char JavaName[] = "fixture/Callbacks$PutBoth";
};

struct PutRaw {
  static constexpr char JavaName[] = "fixture/Callbacks$PutRaw";
};

TEST_F(ImplementTest, AmongSeveralTheOneOfTheGenericInterfacesTypesIsCalled) {
  constexpr StaticMethod<std::string(Ref<Object>, jint, Ref<Object>)> put{
      Type, "put", "(Lfixture/Callbacks$Put;ILjava/lang/Object;)Ljava/lang/String;"};
  const auto text = [](jint place, const std::optional<std::string>& value) {
    return "text " + std::to_string(place) + " " + value.value_or("null");
  };
  const auto number = [](jint place, std::optional<jint> value) {
    return "number " + std::to_string(place) + " " + (value ? std::to_string(*value) : "null");
  };
  const Local<PutBoth> both = Implement<PutBoth>().On("put", text).On("put", number).New();
  EXPECT_EQ(put(both, 1, NewInteger(5)), "number 1 5");
  EXPECT_EQ(put(both, 1, nullptr), "number 1 null");
  EXPECT_EQ(put(both, 1, "text"), "java.lang.ClassCastException: Cannot cast java.lang.String to java.lang.Integer");
  EXPECT_EQ(java::Call<std::string>(both, "put", 2, "text"), "text 2 text");
  // Without the types of the generic interface there may be one only.
  EXPECT_EQ(put(Implement<PutRaw>().On("put", text, "(ILjava/lang/String;)Ljava/lang/String;").New(), 3, "text"),
            "text 3 text");
  EXPECT_EQ(put(Implement<PutBoth>().On("put", text).New(), 3, "text"), "text 3 text");
}

struct NumberedBoth {
  static constexpr char JavaName[] = "fixture/Callbacks$NumberedBoth";
};

TEST_F(ImplementTest, ArraysAndListsOfTypeVariables) {
  constexpr StaticMethod<std::string(Ref<Object>, Ref<Object>)> numbered{
      Type, "numbered", "(Lfixture/Callbacks$Numbered;[Ljava/lang/Number;)Ljava/lang/String;"};
  const auto both = Implement<NumberedBoth>()
                        .On(
                            "of", [](Ref<Object>, Ref<Object>) { return "Integer"; },
                            "([Ljava/lang/Integer;Ljava/util/List;)Ljava/lang/String;")
                        .On(
                            "of", [](Ref<Object>, Ref<Object>) { return "Long"; },
                            "([Ljava/lang/Long;Ljava/util/List;)Ljava/lang/String;")
                        .New();
  EXPECT_EQ(numbered(both, nullptr), "Long");
}

TEST_F(ImplementTest, MethodsOfTheNamesThatEveryObjectHas) {
  constexpr StaticMethod<std::string(Ref<Object>)> all{"fixture/Callbacks$Overloading", "all",
                                                       "(Lfixture/Callbacks$Overloading;)Ljava/lang/String;"};
  const auto overloading = Implement("fixture/Callbacks$Overloading")
                               .On("toString", [](jint radix) { return std::to_string(radix); })
                               .On("toString", [] { return "own"; })
                               .On("equals", [](std::string_view, bool ignoresCase) { return ignoresCase; })
                               .On("hashCode", [](jint seed) { return seed; });
  EXPECT_EQ(all(overloading.New()), "16 true 7 own true true");
  auto others = overloading;
  others.On("equals", [](Ref<Object>) { return false; }).On("hashCode", [] { return 1; });
  EXPECT_EQ(all(others.New()), "16 true 7 own false false");
}

TEST_F(ImplementTest, DefaultsRunUnlessAFunctionIsGiven) {
  const auto area = [] { return 4.0; };
  const auto shape = Implement<Shape>()
                         .On("area", area)
                         .On("over", [](jint) { return "int"; })
                         .On("over", [](jlong) { return "long"; })
                         .On("over", [](std::string) { return "text"; });
  EXPECT_EQ(CallShape(shape.New()), "square of 4.0 -40 true int long text");
  EXPECT_EQ(FailedDefault(shape.New()), "java.io.IOException: the default fails");
  auto other = shape;
  other.On("describe", [](std::string name) { return name + "?"; });
  EXPECT_EQ(CallShape(other.New()), "square? -40 true int long text");
  EXPECT_EQ(CallShape(shape.New()), "square of 4.0 -40 true int long text");
}

TEST_F(ImplementTest, WhatADefaultThrowsGoesBeforeItsResult) {
  const Local<Shape> shape =
      Implement<Shape>().On("area", []() -> double { throw std::runtime_error("no area"); }).New();
  EXPECT_EQ(WhatOf<java::Error>([&] { java::Call<jlong>(shape, "scaled", 10, 0.5, true); }),
            "java.lang.RuntimeException: no area");
}

// The looser one is found first.
TEST_F(ImplementTest, TheMethodOfTheSameTypesIsChosen) {
  constexpr StaticMethod<std::string(Ref<Object>)> overBoth{Type, "overBoth",
                                                            "(Lfixture/Callbacks$Wider;)Ljava/lang/String;"};
  EXPECT_EQ(overBoth(Implement("fixture/Callbacks$Wider")
                         .On("over", [](std::string_view) { return "text"; })
                         .On("over", [](Ref<Object>) { return "object"; })
                         .New()),
            "text object");
}

template <typename Implementation>
std::string WhatOfNew(const Implementation& implementation) {
  return WhatOf<Misuse>([&] { implementation.New(); });
}

TEST_F(ImplementTest, PrivateMethodsAreNoneOfIts) {
  SKIP_BEFORE_JAVA_9("interfaces have no private methods");
  EXPECT_EQ(WhatOfNew(Implement("fixture/Layers$Secret").On("value", [] { return 6; })),
            "fixture.Layers$Secret has no method for the C++ function int value(), and objects of it have none of that "
            "name");
}

TEST_F(ImplementTest, AMethodWithoutAFunctionSaysSo) {
  EXPECT_EQ(ThrownByCheck(Implement<Shape>().New()),
            "java.lang.UnsupportedOperationException: no C++ function is given for public abstract void "
            "fixture.Callbacks$Shape.check() throws java.io.IOException");
}

TEST_F(ImplementTest, EqualsHashCodeAndToString) {
  const Local<Runnable> one = Implement<Runnable>().On("run", [] {}).New();
  const Local<Runnable> other = Implement<Runnable>().On("run", [] {}).New();
  EXPECT_THAT(OfObject(one, other), testing::StartsWith("true false false true java.lang.Runnable in C++@"));
  const auto own = Implement<Comparator>()
                       .On("toString", [] { return "own"; })
                       .On("equals", [](Ref<Object> that) { return !that; })
                       .On("hashCode", [] { return 7; });
  EXPECT_EQ(OfObject(own, other), "false false true true own");
}

TEST_F(ImplementTest, InterfacesByNameAndByClass) {
  const Local<Object> named = Implement("java.lang.Runnable").On("run", [] { throw std::runtime_error("run"); }).New();
  EXPECT_EQ(Thrown(java::Cast<Runnable>(named)), "java.lang.RuntimeException: run");
  const Local<Object> classed =
      Implement(java::FindClass("java/lang/Runnable")).On("run", [] { throw std::runtime_error("run"); }).New();
  EXPECT_EQ(Thrown(java::Cast<Runnable>(classed)), "java.lang.RuntimeException: run");
  EXPECT_EQ(Thrown(Implement<Runnable>(java::FindClass("java/lang/Runnable")).On("run", [] {})), "nothing");
}

TEST_F(ImplementTest, InterfacesThatAreNotPublic) {
  constexpr StaticMethod<Local<java::Class>()> HiddenClass{Type, "hiddenClass"};
  constexpr StaticMethod<jint(Ref<Object>)> Hidden{Type, "hidden"};
  EXPECT_EQ(Hidden(Implement(HiddenClass()).On("value", [] { return 5; })), 5);
  EXPECT_EQ(Hidden(Implement("fixture/Callbacks$Hidden").On("value", [] { return 6; })), 6);
}

TEST_F(ImplementTest, WhatDoesNotFitIsSaid) {
  EXPECT_EQ(WhatOfNew(Implement("fixture/Callbacks$Abstract").On("value", [] { return 5; })),
            "fixture.Callbacks$Abstract is a class: C++ functions implement interfaces only");
  EXPECT_EQ(WhatOfNew(Implement<Comparator>().On("compare", [](jint) { return 5; })),
            "java.util.Comparator has no method for the C++ function int compare(int); it has int "
            "compare(java.lang.Object, java.lang.Object)");
  EXPECT_EQ(WhatOfNew(Implement<Comparator>().On("comparing", [](Ref<Function>) { return 5; })),
            "java.util.Comparator has no method for the C++ function int comparing(java.util.function.Function), and "
            "objects of it have none of that name");
  EXPECT_EQ(WhatOfNew(Implement<Runnable>().On("run", [] { return 5; })),
            "java.lang.Runnable has no method for the C++ function int run(); it has void run()");
  EXPECT_EQ(WhatOfNew(Implement<Function>().On("apply", [](Ref<Object>) {})),
            "java.util.function.Function has no method for the C++ function void apply(java.lang.Object); it has "
            "java.lang.Object apply(java.lang.Object)");
  EXPECT_EQ(WhatOfNew(Implement<Every>().On("ofText", [](Local<Integer>) { return "text"; })),
            "fixture.Callbacks$Every has no method for the C++ function java.lang.String ofText(java.lang.Integer); it "
            "has java.lang.String ofText(java.lang.String)");
  EXPECT_EQ(WhatOfNew(Implement<Runnable>().On("run", [] {}).On("run", [] {})),
            "two functions are given for java.lang.Runnable.run()");
  EXPECT_EQ(WhatOfNew(Implement(java::Local<java::Class>())), "null is given as the interface to implement");
  EXPECT_EQ(WhatOfNew(Implement<Every>(java::FindClass("java/lang/Runnable"))),
            "java.lang.Runnable cannot be implemented: the tag names fixture.Callbacks$Every, and a java.lang.Runnable "
            "is none");
  EXPECT_EQ(WhatOf<java::Error>([] { Implement("no.such.Interface").New(); }).substr(0, 53),
            "java.lang.ClassNotFoundException: no.such.Interface (");
}

TEST_F(ImplementTest, OneOfSeveralMethodsIsChosenByTypesOrDescriptor) {
  const auto submit = [](Ref<Object>) { return Local<Object>(); };
  const char* const executor = "java/util/concurrent/ExecutorService";
  EXPECT_EQ(WhatOfNew(Implement(executor).On("submit", submit)),
            "the C++ function java.lang.Object submit(java.lang.Object) may be for several methods of "
            "java.util.concurrent.ExecutorService: java.util.concurrent.Future submit(java.lang.Runnable), "
            "java.util.concurrent.Future submit(java.util.concurrent.Callable); say which by its descriptor");
  const Local<Object> service =
      Implement(executor).On("submit", submit, "(Ljava/lang/Runnable;)Ljava/util/concurrent/Future;").New();
  EXPECT_FALSE(java::Call<Local<Object>>(service, "submit", Implement<Runnable>().On("run", [] {})));
  EXPECT_EQ(WhatOfNew(Implement(executor).On("submit", submit, "(I)V")),
            "java.util.concurrent.ExecutorService has no method for the C++ function void submit(int); it has "
            "java.util.concurrent.Future submit(java.lang.Runnable), java.util.concurrent.Future "
            "submit(java.lang.Runnable, java.lang.Object), java.util.concurrent.Future "
            "submit(java.util.concurrent.Callable)");
  for (const char* const wrong : {"I", "(I", "(I)", "(I)VV", "(Q)V", "()Lx"}) {
    EXPECT_EQ(WhatOfNew(Implement(executor).On("submit", submit, wrong)),
              "\"" + std::string(wrong) + "\" is not the descriptor of a method");
  }
}

TEST_F(ImplementTest, FunctionsThatNoInterfaceTakes) {
  EXPECT_EQ(WhatOf<Misuse>([] { CallShape([] { return 4.0; }); }),
            "fixture.Callbacks$Shape is no functional interface: it has double area(), java.lang.String over(int), "
            "java.lang.String over(java.lang.String), java.lang.String over(long), void check(); give each function "
            "with Implement<T>().On(name, function)");
  EXPECT_EQ(WhatOf<Misuse>([] { Nest([](jlong x) { return x; }, 1); }),
            "java.util.function.IntUnaryOperator has no method for the C++ function long (long); it has int "
            "applyAsInt(int)");
  EXPECT_EQ(WhatOf<Misuse>([] { Nest(std::function<jint(jint)>(), 1); }),
            "an empty function is given for java/util/function/IntUnaryOperator");
  EXPECT_EQ(WhatOf<Misuse>([] { Implement<Runnable>().On("run", static_cast<void (*)()>(nullptr)); }),
            "an empty function is given for run");
}

}  // namespace
}  // namespace tests
