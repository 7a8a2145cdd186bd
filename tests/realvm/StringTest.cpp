// Text on its way to Java and back.
#include "realvm/RealVmTest.h"

namespace tests {
namespace {

using mirel::base::CNull;
using mirel::base::CUnicodeString;
using torvan::jni::CJavaClass;
using torvan::jni::CJavaString;

class StringTest : public RealVmTest {
 protected:
  ~StringTest() noexcept override {}

  jint Ask(const char* method, const CJavaString& text) {
    return texts.CallStaticIntMethod(method, "(Ljava/lang/String;)I", static_cast<jstring>(text));
  }

  CJavaString Field(const char* name) { return texts.GetStaticObjectField(name, "Ljava/lang/String;"); }

  // What java.lang.String.hashCode returns for the units.
  static jint Hash(const WideText& text) {
    unsigned hash = 0;
    for (const RX::UniChar unit : text) hash = 31 * hash + static_cast<unsigned>(unit);
    return static_cast<jint>(hash);
  }

  const CJavaClass texts = vm.FindClass("fixture/Texts");
};

TEST_F(StringTest, EveryUnitArrivesAndComesBack) {
  WideText everyUnit;
  for (unsigned unit = 1; unit <= 0xFFFF; ++unit) everyUnit += static_cast<RX::UniChar>(unit);
  const struct {
    const char* name;
    WideText text;
    jint codePoints;
  } rows[] = {
      {"one letter", RX_TEXT("x"), 1},
      {"emoji", RX_TEXT("caf\u00E9 \U0001F600 \u6F22"), 8},
      {"half a pair", {RX_TEXT('x'), static_cast<RX::UniChar>(0xD83D), RX_TEXT('y')}, 3},
      // In numerical order, halves form one pair: the last high one and the first low one.
      {"64 Ki units", everyUnit + everyUnit[0], 0x10000 - 1},
  };
  for (const auto& row : rows) {
    const CJavaString string = vm.NewString(row.text.c_str());
    EXPECT_EQ(Ask("length", string), static_cast<jint>(row.text.size())) << row.name;
    EXPECT_EQ(Ask("codePoints", string), row.codePoints) << row.name;
    EXPECT_EQ(Ask("hash", string), Hash(row.text)) << row.name;
    const CUnicodeString back = string;
    EXPECT_TRUE(WideText(back) == row.text) << row.name;
  }
}

TEST_F(StringTest, WhatJavaMadeIsReadToItsFirstZero) {
  EXPECT_EQ(Utf8(Field("emoji")), "caf\xC3\xA9 \xF0\x9F\x98\x80 \xE6\xBC\xA2");
  EXPECT_EQ(Utf8(Field("withZero")), "ab");
  EXPECT_EQ(WideText(CUnicodeString(Field("halfPair"))),
            (WideText{RX_TEXT('x'), static_cast<RX::UniChar>(0xD83D), RX_TEXT('y')}));
  EXPECT_EQ(Utf8(Field("empty")), "");
  const CJavaString counting = texts.CallStaticObjectMethod("counting", "(I)Ljava/lang/String;", 0xFFFF);
  const WideText units = static_cast<const RX::UniChar*>(CUnicodeString(counting));
  ASSERT_EQ(units.size(), 0xFFFFu);
  EXPECT_EQ(units.back(), static_cast<RX::UniChar>(0xFFFF));
}

TEST_F(StringTest, NoTextMakesANullString) {
  for (const RX::UniChar* text : {static_cast<const RX::UniChar*>(nullptr), RX_TEXT("")}) {
    const CJavaString string = vm.NewString(text);
    EXPECT_TRUE(string == CNull());
    EXPECT_EQ(static_cast<jstring>(string), nullptr);
    EXPECT_EQ(static_cast<const RX::UniChar*>(CUnicodeString(string)), nullptr);
    EXPECT_TRUE(texts.CallStaticBooleanMethod("isNull", "(Ljava/lang/String;)Z", static_cast<jstring>(string)) ==
                JNI_TRUE);
  }
  EXPECT_TRUE(Field("none") == CNull());
  EXPECT_FALSE(Field("empty") == CNull());
}

TEST_F(StringTest, AnAssignedTextReplacesTheOld) {
  CJavaString string = vm.NewString(RX_TEXT("old"));
  const CJavaString copy = string;
  string = RX_TEXT("new");
  EXPECT_EQ(Utf8(string), "new");
  EXPECT_EQ(Utf8(copy), "old");
  EXPECT_EQ(Ask("length", string), 3);
  string = RX_TEXT("");
  EXPECT_TRUE(string == CNull());
  string = RX_TEXT("again");
  EXPECT_EQ(Utf8(string), "again");
  string = static_cast<const RX::UniChar*>(nullptr);
  EXPECT_TRUE(string == CNull());
}

// The made string is kept by a global reference, and used by it; an assigned one is kept likewise, but used by the
// local reference that the VM returned.
TEST_F(StringTest, AnAssignedTextIsUsedByItsLocalReference) {
  CJavaString string = vm.NewString(RX_TEXT("made"));
  EXPECT_EQ(env->GetObjectRefType(string), JNIGlobalRefType);
  string = RX_TEXT("assigned");
  EXPECT_EQ(env->GetObjectRefType(string), JNILocalRefType);
  const CJavaString copy = string;
  EXPECT_EQ(static_cast<jstring>(copy), static_cast<jstring>(string));
}

TEST_F(StringTest, AnAssignedTextEndsWithItsLocalFrameAndAMadeOneDoesNot) {
  CJavaString assigned = vm.NewString(RX_TEXT("old"));
  env->PushLocalFrame(16);
  const CJavaString made = vm.NewString(RX_TEXT("made"));
  assigned = RX_TEXT("new");
  EXPECT_EQ(env->GetObjectRefType(assigned), JNILocalRefType);
  env->PopLocalFrame(nullptr);
  EXPECT_EQ(env->GetObjectRefType(assigned), JNIInvalidRefType);
  EXPECT_EQ(Utf8(made), "made");
  assigned = RX_TEXT("newer");
  EXPECT_EQ(Utf8(assigned), "newer");
}

TEST_F(StringTest, AStringIsMadeFromAnyObjectUntested) {
  const CJavaString string = vm.NewObject("java/lang/Object", "()V");
  EXPECT_FALSE(string.IsInstanceOf("java/lang/String"));
}

}  // namespace
}  // namespace tests
