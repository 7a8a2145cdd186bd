// Every type of the conversion table, against a class that returns what it gets.
#include <cstring>
#include <limits>
#include <sstream>
#include <type_traits>

#include "ThreadSanitizer.h"
#include "java/realvm/OneVm.h"

namespace tests {

struct Values {
  static constexpr char JavaName[] = "fixture/Values";
};
struct Duration {
  static constexpr char JavaName[] = "java/time/Duration";
};

// Types of the host's own: by way of a number, of text, of an object, and of text that may be null.
struct Cents {
  jlong value;
};
struct Name {
  std::string first, last;
};
struct Seconds {
  jlong value;
};
struct Nickname {
  std::string text;
};

}  // namespace tests

template <>
struct torvan::java::Convert<tests::Cents> : ConvertAs<jlong> {
  static jlong To(const tests::Cents& cents) { return cents.value; }
  static tests::Cents From(jlong value) { return {value}; }
};
template <>
struct torvan::java::Convert<tests::Name> : ConvertAs<std::string> {
  static std::string To(const tests::Name& name) { return name.first + " " + name.last; }
  static tests::Name From(const std::string& text) {
    const std::size_t space = text.find(' ');
    return {text.substr(0, space), text.substr(space + 1)};
  }
};
template <>
struct torvan::java::Convert<tests::Seconds> : ConvertAs<Local<tests::Duration>> {
  static Local<tests::Duration> To(const tests::Seconds& seconds) {
    return CallStatic<Local<tests::Duration>>("java.time.Duration", "ofSeconds", seconds.value);
  }
  static tests::Seconds From(const Local<tests::Duration>& duration) { return {Call<jlong>(duration, "getSeconds")}; }
};
template <>
struct torvan::java::Convert<tests::Nickname> : ConvertAs<std::optional<std::string>> {
  static std::optional<std::string> To(const tests::Nickname& name) {
    return name.text.empty() ? std::nullopt : std::optional<std::string>(name.text);
  }
  static tests::Nickname From(const std::optional<std::string>& text) { return {text.value_or("")}; }
};

namespace tests {
namespace {

using java::Global;
using java::Local;
using java::Misuse;
using java::Object;
using java::Ref;
using java::StaticMethod;

using namespace std::string_literals;

class ConvertTest : public RealVmTest {};

// What a value is in Java, and what it is after it has been there.
template <typename T>
std::string SeenAs(T value) {
  static constexpr StaticMethod<std::string(T)> Seen{"fixture/Values", "seen"};
  return Seen(value);
}
template <typename T>
T Back(T value) {
  static constexpr StaticMethod<T(T)> Same{"fixture/Values", "same"};
  const java::Thread thread;
  const T back = Same(value);
  EXPECT_EQ(std::memcmp(&back, &value, sizeof value), 0);
  return Same(thread, value);
}

template <typename T>
void GoesBothWays(const char* java, std::initializer_list<T> values) {
  for (const T value : values) {
    EXPECT_EQ(Back(value), value);
    EXPECT_EQ(SeenAs(value), java + (" " + std::to_string(value)));
  }
}

template <typename T>
constexpr std::initializer_list<T> Extremes{std::numeric_limits<T>::min(), T{-1}, T{0}, T{1},
                                            std::numeric_limits<T>::max()};

TEST_F(ConvertTest, IntegersGoByWidthAndSign) {
  GoesBothWays<signed char>("byte", Extremes<signed char>);
  GoesBothWays<short>("short", Extremes<short>);
  GoesBothWays<int>("int", Extremes<int>);
  GoesBothWays<long>(sizeof(long) == 8 ? "long" : "int", Extremes<long>);
  GoesBothWays<long long>("long", Extremes<long long>);
  GoesBothWays<jint>("int", Extremes<jint>);
  GoesBothWays<jlong>("long", Extremes<jlong>);
  GoesBothWays<std::int64_t>("long", Extremes<std::int64_t>);
  GoesBothWays<std::uint16_t>("char", {0, 1, 0xD800, 0xFFFF});
  for (const char16_t unit : {u'\0', u'x', u'\xD800', u'\xFFFF'}) {
    EXPECT_EQ(Back(unit), unit);
    EXPECT_EQ(SeenAs(unit), "char " + std::to_string(unit));
  }
}

TEST_F(ConvertTest, AByteIsItsBits) {
  static constexpr StaticMethod<jlong(jlong)> SameLong{"fixture/Values", "same"};
  for (const int bits : {0, 1, 0x7F, 0x80, 0xFF}) {
    const auto byte = static_cast<std::byte>(bits);
    EXPECT_EQ(Back(byte), byte);
    EXPECT_EQ(SeenAs(byte), "byte " + std::to_string(bits < 0x80 ? bits : bits - 0x100));
  }
  EXPECT_EQ(SameLong(std::byte{0xFF}), -1);  // what Java makes of it
}

TEST_F(ConvertTest, BooleansAreOneBitOfAByte) {
  for (const bool value : {false, true}) {
    EXPECT_EQ(Back(value), value);
    EXPECT_EQ(Back<std::uint8_t>(value), value);
    EXPECT_EQ(SeenAs(value), value ? "boolean true" : "boolean false");
  }
  EXPECT_EQ(SeenAs<std::uint8_t>(2), "boolean true");  // and not its lowest bit
  static constexpr java::Field<Values, std::uint8_t> ofObject{"booleanField"};
  static constexpr java::StaticField<std::uint8_t> ofClass{"fixture/Values", "staticBoolean"};
  const Local<Values> values = java::New<Values>();
  ofObject.Set(values, std::uint8_t{2});
  EXPECT_EQ(ofObject.Get(values), 1);
  ofClass.Set(std::uint8_t{2});
  EXPECT_EQ(ofClass.Get(), 1);
}

template <typename F, typename Bits>
F FromBits(Bits bits) {
  F value;
  static_assert(sizeof value == sizeof bits);
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

TEST_F(ConvertTest, EveryBitOfAFloatArrives) {
  for (const std::uint32_t bits : {0u, 0x80000000u, 1u, 0x7F7FFFFFu, 0x7F800000u, 0xFF800000u, 0x7FC00000u, 0x7FC12345u,
                                   0xFFFFFFFFu, 0x7F800001u, 0xFFBFFFFFu}) {  // the last two signal
    std::ostringstream hex;
    hex << "float " << std::hex << bits;
    const float value = FromBits<float>(bits);
    EXPECT_EQ(SeenAs(value), hex.str());
    Back(value);  // compares the bits
  }
  for (const std::uint64_t bits :
       {std::uint64_t{0}, std::uint64_t{1}, std::uint64_t{0x7FEFFFFFFFFFFFFF}, std::uint64_t{0x8000000000000000},
        std::uint64_t{0x7FF8000000000000}, std::uint64_t{0x7FF8123456789ABC}, std::uint64_t{0xFFFFFFFFFFFFFFFF},
        std::uint64_t{0xFFF0000000000001}, std::uint64_t{0x7FF7FFFFFFFFFFFF}}) {
    std::ostringstream hex;
    hex << "double " << std::hex << bits;
    const double value = FromBits<double>(bits);
    EXPECT_EQ(SeenAs(value), hex.str());
    Back(value);
  }
}

TEST_F(ConvertTest, NumbersWidenWhereNothingIsLost) {
  static constexpr StaticMethod<jlong(jlong)> SameLong{"fixture/Values", "same"};
  static constexpr StaticMethod<double(double)> SameDouble{"fixture/Values", "same"};
  static constexpr StaticMethod<float(float)> SameFloat{"fixture/Values", "same"};
  EXPECT_EQ(SameLong(-1), -1);
  EXPECT_EQ(SameLong(short{-7}), -7);
  EXPECT_EQ(SameDouble(std::numeric_limits<int>::min()), -2147483648.0);
  EXPECT_EQ(SameDouble(0.5f), 0.5);
  EXPECT_EQ(SameFloat(short{-3}), -3.0f);
  static constexpr StaticMethod<jshort(jshort)> SameShort{"fixture/Values", "same"};
  EXPECT_EQ(SameShort(jbyte{-7}), -7);
  EXPECT_EQ(SameLong(jbyte{-7}), -7);
  EXPECT_EQ(SameFloat(jbyte{-3}), -3.0f);
  EXPECT_EQ(SameDouble(jbyte{-3}), -3.0);
  EXPECT_EQ(SameDouble(jshort{-3}), -3.0);
}

constexpr StaticMethod<std::string(std::string_view)> SameText{"fixture/Values", "same"};
constexpr StaticMethod<std::u16string(std::u16string_view)> SameUnits{"fixture/Values", "same"};
constexpr StaticMethod<std::string(std::string_view)> UnitsOf{"fixture/Values", "units"};

TEST_F(ConvertTest, TextGoesBothWays) {
  for (const std::string& text :
       {""s, "x"s, "\0"s, "a\0b"s, "Z\xC3\xBCrich"s, "\xE4\xB8\xAD\xE6\x96\x87"s, "\xF0\x9F\x98\x80"s,
        std::string(5000, 'x'), std::string(1023, 'x') + "\xF0\x9F\x98\x80" + std::string(2000, 'y'), "ends in \0"s}) {
    EXPECT_EQ(SameText(text), text);
    EXPECT_EQ(SameText(text.c_str()), text.c_str());
  }
  EXPECT_EQ(UnitsOf("a\0b"s), "61 0 62");
  EXPECT_EQ(UnitsOf("\xF0\x9F\x98\x80"), "d83d de00");
  EXPECT_EQ(UnitsOf(u"\xDC00\xD800z"), "dc00 d800 7a");
  EXPECT_EQ(UnitsOf(u""), "");
}

TEST_F(ConvertTest, UnitsAreNotChecked) {
  for (const std::u16string& units : {u""s, u"\0"s, u"a\0b"s, u"\xD83D\xDE00"s, u"\xD800"s, u"\xDC00\xD800"s}) {
    EXPECT_EQ(SameUnits(units), units);
  }
  static constexpr StaticMethod<std::string(std::u16string_view)> SameAsUtf8{"fixture/Values", "same"};
  EXPECT_EQ(SameAsUtf8(u"\xDC00x\xD800"), "\xEF\xBF\xBDx\xEF\xBF\xBD");
}

std::int64_t HashOf(const std::u16string& units) {
  std::uint64_t hash = 7;
  for (const char16_t unit : units) hash = hash * 31 + unit;
  return static_cast<std::int64_t>(hash);
}

TEST_F(ConvertTest, LongTexts) {
  SKIP_AMOUNT_WITH_THREAD_SANITIZER();
  static constexpr StaticMethod<std::u16string(jint, bool)> Made{"fixture/Values", "made"};
  static constexpr StaticMethod<std::string(jint, bool)> MadeUtf8{"fixture/Values", "made"};
  static constexpr StaticMethod<jlong(std::u16string_view)> Hash{"fixture/Values", "hash"};
  static constexpr StaticMethod<jlong(std::string_view)> HashUtf8{"fixture/Values", "hash"};
  for (const bool ascii : {true, false}) {
    for (const jint size : {1023, 1024, 1025, 2048, 2049, 64 * 1024, 16 * 1024 * 1024}) {
      std::u16string units = Made(size, ascii);
      ASSERT_EQ(units.size(), static_cast<std::size_t>(size));
      EXPECT_EQ(Hash(units), HashOf(units)) << size;
      const std::string text = MadeUtf8(size, ascii);
      EXPECT_TRUE(text == java::detail::ToUtf8(units)) << size;  // too long to be printed
      EXPECT_EQ(HashUtf8(text), HashOf(java::detail::ToUtf16(text))) << size;
    }
  }
}

TEST_F(ConvertTest, TextThatIsNotUtf8IsRefusedWithItsByte) {
  const std::string same = " in argument 1 of fixture.Values.same(java.lang.String)";
  EXPECT_EQ(WhatOf<Misuse>([] { SameText("abc\xFF"); }), "invalid UTF-8 at byte 3" + same);
  EXPECT_EQ(WhatOf<Misuse>([] { SameText(std::string(3000, 'x') + "\xC3"); }), "invalid UTF-8 at byte 3000" + same);
  EXPECT_EQ(WhatOf<Misuse>([] { java::NewString("\xC0\x80"); }), "invalid UTF-8 at byte 0");
}

TEST_F(ConvertTest, NullGoesAsAnOptionalAPointerOrNull) {
  using Text = std::optional<std::string>;
  static constexpr StaticMethod<Text(Text)> Same{"fixture/Values", "same"};
  static constexpr StaticMethod<Text()> None{"fixture/Values", "none"};
  EXPECT_EQ(Same("x"), "x");
  EXPECT_EQ(Same(Text("")), "");
  EXPECT_EQ(Same(Text()), std::nullopt);
  EXPECT_EQ(Same(std::nullopt), std::nullopt);
  EXPECT_EQ(Same(nullptr), std::nullopt);
  const char* const nothing = nullptr;
  EXPECT_EQ(Same(nothing), std::nullopt);
  EXPECT_EQ(None(), std::nullopt);
  EXPECT_EQ(Same(java::NewString("made")), "made");
}

TEST_F(ConvertTest, ANullThatTheTypeHasNotNamesTheMember) {
  static constexpr StaticMethod<std::string()> None{"fixture/Values", "none"};
  static constexpr StaticMethod<Name()> NoName{"fixture/Values", "none"};
  static constexpr java::Method<Values, std::u16string()> NoneOfObject{"noneOfObject"};
  static constexpr java::Field<Values, std::string> Text{"textField"};
  const std::string end = "null, which its C++ type cannot be: declare it as std::optional";
  EXPECT_EQ(WhatOf<Misuse>([] { None(); }), "fixture.Values.none() returned " + end);
  EXPECT_EQ(WhatOf<Misuse>([] { NoName(); }), "fixture.Values.none() returned " + end);
  EXPECT_EQ(WhatOf<Misuse>([] { SameText(nullptr); }), "fixture.Values.same(java.lang.String) returned " + end);
  EXPECT_EQ(WhatOf<Misuse>([] { java::CallStatic<std::string>("fixture.Values", "none"); }),
            "fixture.Values.none() returned " + end);
  const Local<Values> values = java::New<Values>();
  EXPECT_EQ(WhatOf<Misuse>([&] { NoneOfObject(values); }), "fixture.Values.noneOfObject() returned " + end);
  EXPECT_EQ(WhatOf<Misuse>([&] { Text.Get(values); }), "the value of fixture.Values.textField is " + end);
}

template <typename T>
void IsBoxed(const char* type, T value, const std::string& text) {
  using Optional = std::optional<T>;
  static constexpr StaticMethod<Optional(Optional)> Same{"fixture/Values", "same"};
  static constexpr StaticMethod<std::string(Optional)> Seen{"fixture/Values", "seen",
                                                            "(Ljava/lang/Object;)Ljava/lang/String;"};
  EXPECT_EQ(Same(value), Optional(value));
  EXPECT_EQ(Same(Optional(value)), Optional(value));
  EXPECT_EQ(Same(std::nullopt), std::nullopt);
  EXPECT_EQ(Seen(value), std::string("java.lang.") + type + " " + text);
}

TEST_F(ConvertTest, OptionalNumbersAreJavasObjects) {
  IsBoxed<bool>("Boolean", true, "true");
  IsBoxed<jbyte>("Byte", -128, "-128");
  IsBoxed<char16_t>("Character", u'x', "x");
  IsBoxed<jshort>("Short", -32768, "-32768");
  IsBoxed<jint>("Integer", 1 << 30, "1073741824");
  IsBoxed<jlong>("Long", -1, "-1");
  IsBoxed<float>("Float", 0.5f, "0.5");
  IsBoxed<double>("Double", -0.25, "-0.25");
  static constexpr StaticMethod<std::optional<jint>()> NoNumber{"fixture/Values", "noNumber"};
  EXPECT_EQ(NoNumber(), std::nullopt);
}

TEST_F(ConvertTest, ANumberOfAnotherClassIsRefused) {
  static constexpr StaticMethod<std::optional<jint>(Ref<Object>)> Any{"fixture/Values", "any",
                                                                      "(Ljava/lang/Object;)Ljava/lang/Object;"};
  EXPECT_EQ(Any(NewInteger(5)), 5);
  EXPECT_EQ(WhatOf<Misuse>([] { Any("five"); }),
            "a java.lang.String comes from fixture.Values.any(java.lang.Object), whose C++ type needs a "
            "java.lang.Integer");
}

TEST_F(ConvertTest, AHostsOwnTypes) {
  static constexpr StaticMethod<Cents(Cents)> SameCents{"fixture/Values", "same"};
  static constexpr StaticMethod<Name(Name)> SameName{"fixture/Values", "same"};
  static constexpr StaticMethod<Seconds(Seconds)> SameSeconds{"fixture/Values", "any",
                                                              "(Ljava/lang/Object;)Ljava/lang/Object;"};
  static constexpr StaticMethod<std::string(Seconds)> SeenSeconds{"fixture/Values", "seen",
                                                                  "(Ljava/lang/Object;)Ljava/lang/String;"};
  static constexpr StaticMethod<std::optional<Cents>(std::optional<Cents>)> MaybeCents{"fixture/Values", "same"};
  static constexpr StaticMethod<std::optional<Name>(std::optional<Name>)> MaybeName{"fixture/Values", "same"};
  static constexpr StaticMethod<Nickname(Nickname)> SameNickname{"fixture/Values", "same"};
  EXPECT_EQ(SameCents(Cents{7}).value, 7);
  EXPECT_EQ(SameName(Name{"Ada", "Lovelace"}).last, "Lovelace");
  EXPECT_EQ(SameSeconds(Seconds{90}).value, 90);
  EXPECT_EQ(SeenSeconds(Seconds{90}), "java.time.Duration PT1M30S");
  EXPECT_EQ(MaybeCents(Cents{8})->value, 8);
  EXPECT_FALSE(MaybeCents(std::nullopt));
  EXPECT_EQ(MaybeName(Name{"Ada", "Lovelace"})->first, "Ada");
  EXPECT_FALSE(MaybeName(nullptr));
  EXPECT_EQ(SameNickname(Nickname{"x"}).text, "x");
  EXPECT_EQ(SameNickname(Nickname{""}).text, "");
  EXPECT_EQ(java::CallStatic<std::string>("fixture/Values", "seen", Cents{9}), "long 9");
  EXPECT_EQ(java::CallStatic<std::string>("fixture/Values", "units", Name{"a", "b"}), "61 20 62");
}

TEST_F(ConvertTest, ReferencesGoAsTheyAre) {
  static constexpr StaticMethod<Local<Object>(Ref<Object>)> Same{"fixture/Values", "same"};
  static constexpr StaticMethod<Global<Object>(Ref<Object>)> SameGlobal{"fixture/Values", "same"};
  const Local<Values> values = java::New<Values>();
  const Global<Values> global(values);
  const torvan::jni::CJavaObject handle = java::Handle(values);
  EXPECT_TRUE(java::Same(Same(values), values));
  EXPECT_TRUE(java::Same(Same(global), values));
  EXPECT_TRUE(java::Same(Same(handle), values));
  EXPECT_TRUE(java::Same(Same(values.Get()), values));
  EXPECT_TRUE(java::Same(SameGlobal(values), values));
  EXPECT_FALSE(Same(nullptr));
  EXPECT_FALSE(SameGlobal(nullptr));
  EXPECT_EQ(java::ToText(Ref<java::String>(Same("text").Get())), "text");
}

TEST_F(ConvertTest, FieldsOfEveryType) {
  const Local<Values> values = java::New<Values>();
  const java::Thread thread;
  const auto goes = [&](const auto& field, const auto& staticField, auto value) {
    field.Set(values, value);
    EXPECT_EQ(field.Get(values), value);
    EXPECT_EQ(field.Get(thread, values), value);
    staticField.Set(thread, value);
    EXPECT_EQ(staticField.Get(), value);
    EXPECT_EQ(staticField.Get(thread), value);
  };
  using V = Values;
  const char* const t = "fixture/Values";
  goes(java::Field<V, bool>{"booleanField"}, java::StaticField<bool>{t, "staticBoolean"}, true);
  goes(java::Field<V, jbyte>{"byteField"}, java::StaticField<jbyte>{t, "staticByte"}, jbyte{-128});
  goes(java::Field<V, char16_t>{"charField"}, java::StaticField<char16_t>{t, "staticChar"}, u'\xFFFF');
  goes(java::Field<V, jshort>{"shortField"}, java::StaticField<jshort>{t, "staticShort"}, jshort{-32768});
  goes(java::Field<V, jint>{"intField"}, java::StaticField<jint>{t, "staticInt"}, std::numeric_limits<jint>::min());
  goes(java::Field<V, jlong>{"longField"}, java::StaticField<jlong>{t, "staticLong"},
       std::numeric_limits<jlong>::min());
  goes(java::Field<V, float>{"floatField"}, java::StaticField<float>{t, "staticFloat"}, 0.5f);
  goes(java::Field<V, double>{"doubleField"}, java::StaticField<double>{t, "staticDouble"}, -0.25);
  goes(java::Field<V, std::string>{"textField"}, java::StaticField<std::string>{t, "staticText"}, "Z\xC3\xBCrich"s);
  goes(java::Field<V, std::optional<jint>>{"integerField"}, java::StaticField<jint>{t, "staticInt"}, 5);
  java::Field<V, Local<Object>> object{"objectField"};
  object.Set(values, "text");
  EXPECT_EQ(java::Call<std::string>(object.Get(values), "toString"), "text");
  object.Set(thread, values, nullptr);
  EXPECT_FALSE(object.Get(thread, values));
}

}  // namespace
}  // namespace tests
