// Vectors as arrays of Java: every type of element, in every place where values go.
#include <cstddef>
#include <limits>
#include <sstream>

#include "ThreadSanitizer.h"
#include "java/realvm/OneVm.h"

namespace tests {

struct Arrays {
  static constexpr char JavaName[] = "fixture/Arrays";
};
// A host's own number.
struct Weight {
  jlong grams;
  friend bool operator==(const Weight& a, const Weight& b) { return a.grams == b.grams; }
};
// A host's own type by way of an array.
struct Samples {
  std::vector<double> values;
};

}  // namespace tests

template <>
struct torvan::java::Convert<tests::Weight> : ConvertAs<jlong> {
  static jlong To(const tests::Weight& weight) {
    if (weight.grams < 0) throw std::domain_error("a weight below zero");
    return weight.grams;
  }
  static tests::Weight From(jlong grams) { return {grams}; }
};
template <>
struct torvan::java::Convert<tests::Samples> : ConvertAs<std::vector<double>> {
  static const std::vector<double>& To(const tests::Samples& samples) { return samples.values; }
  static tests::Samples From(std::vector<double> values) { return {std::move(values)}; }
};

namespace tests {
namespace {

using java::Array;
using java::Field;
using java::Global;
using java::Local;
using java::Method;
using java::Misuse;
using java::Object;
using java::Ref;
using java::StaticField;
using java::StaticMethod;

using Text = std::optional<std::string>;

class ArraysTest : public RealVmTest {};

constexpr const char* const Fixture = "fixture/Arrays";

template <typename V>
std::string SeenAs(const V& values) {
  static constexpr StaticMethod<std::string(V)> Seen{Fixture, "seen", "(Ljava/lang/Object;)Ljava/lang/String;"};
  return Seen(values);
}

// As an argument, a result, a field of both kinds and an argument of a constructor.
template <typename V>
void GoesEverywhere(const V& values, const std::string& field, const std::string& staticField) {
  static constexpr StaticMethod<V(V)> Same{Fixture, "same"};
  static constexpr java::Constructor<Arrays(V)> Make;
  const Method<Arrays, V()> get(field.c_str());
  const Field<Arrays, V> theField(field.c_str());
  const StaticField<V> theStaticField(Fixture, staticField.c_str());
  const java::Thread thread;
  EXPECT_TRUE(Same(values) == values) << field;  // some are too long to be printed
  EXPECT_TRUE(Same(thread, values) == values) << field;
  const Local<Arrays> made = Make(values);
  EXPECT_TRUE(get(made) == values) << field;
  const Local<Arrays> other = java::New<Arrays>();
  theField.Set(other, values);
  EXPECT_TRUE(theField.Get(other) == values) << field;
  theStaticField.Set(values);
  EXPECT_TRUE(theStaticField.Get() == values) << field;
}

template <typename T>
void AllSizes(const char* field, const char* staticField, const std::vector<T>& values) {
  GoesEverywhere(std::vector<T>(), field, staticField);
  GoesEverywhere(values, field, staticField);
  for (const std::size_t size : {1u, 1023u, 1024u, 1025u, 5000u}) {
    std::vector<T> many(size);
    for (std::size_t i = 0; i < size; ++i) many[i] = values[i % values.size()];
    GoesEverywhere(many, field, staticField);
  }
}

template <typename T>
const std::vector<T> Extremes{std::numeric_limits<T>::lowest(), T{0}, T{1}, std::numeric_limits<T>::max()};

TEST_F(ArraysTest, NumbersOfEveryType) {
  AllSizes<bool>("booleans", "staticBooleans", {true, false, true});
  AllSizes<std::uint8_t>("booleans", "staticBooleans", {1, 0});
  AllSizes<std::byte>("bytes", "staticBytes", {std::byte{0}, std::byte{0x7F}, std::byte{0xFF}});
  AllSizes<signed char>("bytes", "staticBytes", Extremes<signed char>);
  AllSizes<char16_t>("chars", "staticChars", {u'\0', u'x', u'\xD800', u'\xFFFF'});
  AllSizes<std::uint16_t>("chars", "staticChars", {0, 0xFFFF});
  AllSizes<short>("shorts", "staticShorts", Extremes<short>);
  AllSizes<int>("ints", "staticInts", Extremes<int>);
  AllSizes<jint>("ints", "staticInts", Extremes<jint>);
  AllSizes<long>(sizeof(long) == 8 ? "longs" : "ints", sizeof(long) == 8 ? "staticLongs" : "staticInts",
                 Extremes<long>);
  AllSizes<long long>("longs", "staticLongs", Extremes<long long>);
  AllSizes<float>("floats", "staticFloats", Extremes<float>);
  AllSizes<double>("doubles", "staticDoubles", Extremes<double>);
}

TEST_F(ArraysTest, TextsAndObjects) {
  AllSizes<std::string>("texts", "staticTexts", {"", "Z\xC3\xBCrich", std::string("a\0b", 3)});
  AllSizes<std::u16string>("texts", "staticTexts", {u"", u"\xD800"});
  AllSizes<Text>("texts", "staticTexts", {"x", std::nullopt, ""});
  AllSizes<std::optional<jint>>("integers", "staticIntegers", {1, std::nullopt, std::numeric_limits<jint>::min()});
  AllSizes<Weight>("longs", "staticLongs", {{0}, {5}});
}

TEST_F(ArraysTest, ArraysOfArrays) {
  using Matrix = std::vector<std::vector<double>>;
  GoesEverywhere(Matrix{}, "matrix", "staticMatrix");
  GoesEverywhere(Matrix{{}, {1.5, 2}, {-3}}, "matrix", "staticMatrix");
  GoesEverywhere(Matrix(300, std::vector<double>(1500, 0.5)), "matrix", "staticMatrix");
  GoesEverywhere(std::vector<std::optional<std::vector<double>>>{std::nullopt, std::vector<double>{1}}, "matrix",
                 "staticMatrix");
  GoesEverywhere(std::vector<std::vector<Text>>{{"a", std::nullopt}, {}}, "textMatrix", "staticTextMatrix");
}

TEST_F(ArraysTest, WhatJavaSees) {
  EXPECT_EQ(SeenAs(std::vector<bool>{true, false}), "[Z: [true, false]");
  EXPECT_EQ(SeenAs(std::vector<std::uint8_t>{2, 0}), "[Z: [true, false]");  // and not its lowest bit
  EXPECT_TRUE(java::CallStatic<bool>("java/util/Arrays", "equals", std::vector<std::uint8_t>{2, 0},
                                     std::vector<bool>{true, false}));
  EXPECT_EQ(SeenAs(std::vector<std::byte>{std::byte{1}, std::byte{0xFF}}), "[B: [1, -1]");
  EXPECT_EQ(SeenAs(std::vector<char16_t>{u'x', u'y'}), "[C: [x, y]");
  EXPECT_EQ(SeenAs(std::vector<short>{-1}), "[S: [-1]");
  EXPECT_EQ(SeenAs(std::vector<jint>{1, 2, 3}), "[I: [1, 2, 3]");
  EXPECT_EQ(SeenAs(std::vector<jlong>{std::numeric_limits<jlong>::min()}), "[J: [-9223372036854775808]");
  EXPECT_EQ(SeenAs(std::vector<Weight>{{7}}), "[J: [7]");
  EXPECT_EQ(SeenAs(std::vector<float>{0.5f}), "[F: [0.5]");
  EXPECT_EQ(SeenAs(std::vector<double>{}), "[D: []");
  EXPECT_EQ(SeenAs(std::vector<std::string>{"a", "b"}), "[Ljava.lang.String;: [a, b]");
  EXPECT_EQ(SeenAs(std::vector<Text>{"a", std::nullopt}), "[Ljava.lang.String;: [a, null]");
  EXPECT_EQ(SeenAs(std::vector<std::optional<jint>>{1, std::nullopt}), "[Ljava.lang.Integer;: [1, null]");
  EXPECT_EQ(SeenAs(std::vector<std::vector<double>>{{1}, {}}), "[[D: [[1.0], []]");
  EXPECT_EQ(SeenAs(std::vector<std::vector<std::string>>{{"a"}}), "[[Ljava.lang.String;: [[a]]");
  EXPECT_EQ(SeenAs(std::optional<std::vector<jint>>()), "null");
  EXPECT_EQ(SeenAs(std::optional(std::vector<jint>{4})), "[I: [4]");
}

TEST_F(ArraysTest, ReferencesAsElements) {
  static constexpr StaticMethod<std::vector<Local<Arrays>>(const std::vector<Local<Arrays>>&)> Same{Fixture, "same"};
  static constexpr StaticMethod<std::vector<Global<Arrays>>(std::vector<Ref<Arrays>>)> SameRefs{Fixture, "same"};
  static constexpr StaticMethod<std::vector<Local<Object>>(std::vector<Local<Object>>)> SameObjects{Fixture, "same"};
  std::vector<Local<Arrays>> elements;
  elements.push_back(java::New<Arrays>());
  elements.push_back(nullptr);
  elements.push_back(java::New<Arrays>());
  const std::vector<Local<Arrays>> back = Same(elements);
  ASSERT_EQ(back.size(), 3u);
  EXPECT_TRUE(java::Same(back[0], elements[0]));
  EXPECT_FALSE(back[1]);
  EXPECT_TRUE(java::Same(back[2], elements[2]));
  const std::vector<Global<Arrays>> globals = SameRefs(std::vector<Ref<Arrays>>{elements[2], nullptr});
  EXPECT_TRUE(java::Same(globals[0], elements[2]));
  EXPECT_FALSE(globals[1]);
  EXPECT_EQ(SameObjects(elements).size(), 3u);  // an array of a class is one of Objects
  EXPECT_EQ(SeenAs(elements), "[Lfixture.Arrays;: [Arrays, null, Arrays]");
}

// More references than a VM has room for by default, which one that checks calls would report.
TEST_F(ArraysTest, ThousandsOfReferencesAsElements) {
  static constexpr StaticMethod<std::vector<Local<Arrays>>(Ref<Array<Arrays>>)> Same{Fixture, "same"};
  const Local<Array<Arrays>> array = java::NewArray<Arrays>(2000);
  java::Elements<Arrays> elements(array);
  const Local<Arrays> element = java::New<Arrays>();
  for (std::size_t i = 0; i < elements.size(); ++i) elements.Set(i, element);
  const std::vector<Local<Arrays>> all = Same(array);
  ASSERT_EQ(all.size(), 2000u);
  EXPECT_TRUE(java::Same(all[1999], element));
}

TEST_F(ArraysTest, NullIsAnOptionalVector) {
  using Ints = std::optional<std::vector<jint>>;
  static constexpr StaticMethod<Ints(Ints)> Same{Fixture, "same"};
  static constexpr StaticMethod<std::optional<std::vector<std::string>>()> None{Fixture, "none"};
  EXPECT_EQ(Same(std::vector<jint>{1, 2}), (std::vector<jint>{1, 2}));
  EXPECT_EQ(Same(std::vector<jint>()), std::vector<jint>());
  EXPECT_EQ(Same(std::nullopt), std::nullopt);
  EXPECT_EQ(Same(nullptr), std::nullopt);
  EXPECT_EQ(None(), std::nullopt);
  const Local<Arrays> arrays = java::New<Arrays>();
  EXPECT_EQ((Field<Arrays, Ints>{"ints"}.Get(arrays)), std::nullopt);
}

TEST_F(ArraysTest, ANullThatTheTypeHasNotNamesTheMemberAndTheElement) {
  static constexpr StaticMethod<std::vector<std::string>()> None{Fixture, "none"};
  static constexpr StaticMethod<std::vector<std::string>()> WithNull{Fixture, "withNull"};
  static constexpr StaticMethod<std::vector<std::vector<double>>()> WithNullRow{Fixture, "withNullRow"};
  static constexpr StaticMethod<std::optional<std::vector<std::vector<std::string>>>()> WithNullInRow{Fixture,
                                                                                                      "withNullInRow"};
  static constexpr Field<Arrays, std::vector<std::string>> Texts{"texts"};
  const std::string end = " is null, which its C++ type cannot be: declare the element as std::optional";
  EXPECT_EQ(WhatOf<Misuse>([] { None(); }),
            "fixture.Arrays.none() returned null, which its C++ type cannot be: declare it as std::optional");
  EXPECT_EQ(WhatOf<Misuse>([] { WithNull(); }), "element [1] of what was returned by fixture.Arrays.withNull()" + end);
  EXPECT_EQ(WhatOf<Misuse>([] { WithNullRow(); }),
            "element [1] of what was returned by fixture.Arrays.withNullRow()" + end);
  EXPECT_EQ(WhatOf<Misuse>([] { WithNullInRow(); }),
            "element [1][1] of what was returned by fixture.Arrays.withNullInRow()" + end);
  const Local<Arrays> arrays = java::New<Arrays>();
  Field<Arrays, std::vector<Text>>{"texts"}.Set(arrays, std::vector<Text>{std::nullopt});
  EXPECT_EQ(WhatOf<Misuse>([&] { Texts.Get(arrays); }), "element [0] of the value of fixture.Arrays.texts" + end);
  EXPECT_EQ(WhatOf<Misuse>([] { java::CallStatic<std::vector<std::string>>(Fixture, "withNull"); }),
            "element [1] of a Java array" + end);
}

TEST_F(ArraysTest, AnElementThatCannotGoIsRefused) {
  static constexpr StaticMethod<std::vector<std::string>(std::vector<std::string>)> Same{Fixture, "same"};
  EXPECT_EQ(WhatOf<Misuse>([] {
              Same(std::vector<std::string>{"a", "b\xFF"});
            }),
            "invalid UTF-8 at byte 1 in argument 1 of fixture.Arrays.same(java.lang.String[])");
  EXPECT_EQ(WhatOf<std::domain_error>([] { SeenAs(std::vector<Weight>{{1}, {-1}}); }), "a weight below zero");
}

TEST_F(ArraysTest, AHostsOwnTypeByWayOfAnArray) {
  static constexpr StaticMethod<Samples(Samples)> Same{Fixture, "same"};
  static constexpr StaticMethod<std::vector<Samples>(std::vector<Samples>)> SameMany{Fixture, "same"};
  EXPECT_EQ(Same(Samples{{1, 2}}).values, (std::vector<double>{1, 2}));
  EXPECT_EQ(SameMany(std::vector<Samples>{{{1}}, {{}}}).at(0).values, std::vector<double>{1});
}

TEST_F(ArraysTest, WhereJavaDeclaresAnotherClassTheArrayIsTested) {
  static constexpr StaticMethod<std::vector<jint>(Ref<Object>)> Ints{Fixture, "same",
                                                                     "(Ljava/lang/Object;)Ljava/lang/Object;"};
  EXPECT_EQ(Ints(java::NewArray(std::vector<jint>{1, 2})), (std::vector<jint>{1, 2}));
  EXPECT_EQ(WhatOf<Misuse>([] { Ints("text"); }),
            "a java.lang.String comes from fixture.Arrays.same(java.lang.Object), whose C++ type needs a [I");
  static constexpr StaticMethod<jlong(std::vector<std::uint8_t>)> Sum{Fixture, "sum", "([B)J"};
  EXPECT_EQ(WhatOf<Misuse>([] { Sum(std::vector<std::uint8_t>{1}); }),
            "a [Z is given as argument 1 of fixture.Arrays.sum(byte[]), which needs a [B");
}

TEST_F(ArraysTest, CallsWithoutADeclaration) {
  EXPECT_EQ(java::CallStatic<jint>(Fixture, "size", std::vector<jint>(3)), 3);
  EXPECT_EQ(java::CallStatic<std::vector<jint>>(Fixture, "same", std::vector<jint>{5}), std::vector<jint>{5});
  EXPECT_EQ(java::CallStatic<jint>(Fixture, "longest", std::vector<std::vector<jint>>{{1}, {1, 2}}), 2);
  EXPECT_EQ(java::CallStatic<std::string>("java/lang/String", "join", ",", std::vector<std::string>{"a", "b"}), "a,b");
  const Local<Arrays> made = java::New<Arrays>(std::vector<std::vector<double>>{{1}});
  EXPECT_EQ(java::Call<std::vector<std::vector<double>>>(made, "matrix"), (std::vector<std::vector<double>>{{1}}));
}

TEST_F(ArraysTest, AHundredMillionBytes) {
  SKIP_AMOUNT_WITH_THREAD_SANITIZER();
  static constexpr StaticMethod<jlong(const std::vector<std::byte>&)> Sum{Fixture, "sum"};
  static constexpr StaticMethod<std::vector<std::byte>(Ref<Array<jbyte>>)> Same{Fixture, "same"};
  constexpr std::size_t size = 100'000'000;
  std::vector<std::byte> bytes(size);
  jlong sum = 0;
  for (std::size_t i = 0; i < size; ++i) {
    bytes[i] = static_cast<std::byte>(i * 31 >> 3);
    sum += static_cast<jbyte>(bytes[i]);
  }
  EXPECT_EQ(Sum(bytes), sum);
  EXPECT_TRUE(Same(java::NewArray(bytes)) == bytes);
}

}  // namespace
}  // namespace tests
