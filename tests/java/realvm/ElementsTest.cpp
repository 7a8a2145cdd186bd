// Java arrays in place, and new ones.
#include <numeric>
#include <optional>
#include <thread>

#include "java/realvm/OneVm.h"

namespace tests {
namespace {

using java::Array;
using java::CriticalElements;
using java::Elements;
using java::Error;
using java::Local;
using java::Misuse;
using java::NewArray;
using java::Object;
using java::Ref;
using java::StaticMethod;
using testing::ElementsAre;

class ElementsTest : public RealVmTest {};

constexpr StaticMethod<void(Ref<Array<jint>>)> Twice{"fixture/Arrays", "twice"};
constexpr StaticMethod<std::vector<jint>(Ref<Array<jint>>)> Ints{"fixture/Arrays", "same"};

std::string Seen(const Ref<Object>& array) { return java::CallStatic<std::string>("fixture/Arrays", "seen", array); }

TEST_F(ElementsTest, NewArrays) {
  EXPECT_EQ(Seen(NewArray<jint>(3)), "[I: [0, 0, 0]");
  EXPECT_EQ(Seen(NewArray<bool>(2)), "[Z: [false, false]");
  EXPECT_EQ(Seen(NewArray<std::byte>(1)), "[B: [0]");
  EXPECT_EQ(Seen(NewArray<java::String>(2)), "[Ljava.lang.String;: [null, null]");
  EXPECT_EQ(Seen(NewArray<Array<jdouble>>(1)), "[[D: [null]");
  EXPECT_EQ(Seen(NewArray<jlong>(0)), "[J: []");
  EXPECT_EQ(Seen(NewArray<jint>({5})), "[I: [5]");
  EXPECT_EQ(Seen(NewArray<jint>({5, 6})), "[I: [5, 6]");
  const Local<Array<java::String>> texts = NewArray(std::vector<std::string>{"a", "b"});
  const Ref<Array<Object>> objects = texts;  // an array of a class is one of what it extends
  EXPECT_EQ(Seen(objects), "[Ljava.lang.String;: [a, b]");
}

TEST_F(ElementsTest, WhatIsPendingIsThrownAndNothingStarts) {
  const Local<Array<jint>> array = NewArray<jint>(3);
  jbyte memory[4]{};
  const Local<java::Class> type = java::FindClass(Child::JavaName);
  const std::vector<Local<Child>> none;
  Elements<java::String> texts(NewArray(std::vector<std::string>{"a", "b"}));
  ExpectWhatIsPendingFirst([] { NewArray<jint>(3); });
  ExpectWhatIsPendingFirst([] { NewArray(std::vector<std::string>{"a"}); });
  ExpectWhatIsPendingFirst([&] { NewArray(none, type); });
  ExpectWhatIsPendingFirst([] { Elements<jint>{nullptr}; });
  ExpectWhatIsPendingFirst([] { Elements<java::String>{nullptr}; });
  ExpectWhatIsPendingFirst([&] { texts.At(0); });
  ExpectWhatIsPendingFirst([&] { texts.Set(0, nullptr); });
  EXPECT_EQ(java::ToText(texts.At(0)), "a");
  ExpectWhatIsPendingFirst([&] { Elements<jint>{array}; });
  ExpectWhatIsPendingFirst([&] { CriticalElements<jint>{array}; });
  ExpectWhatIsPendingFirst([&] { java::Copy<std::vector<jint>>(array); });
  ExpectWhatIsPendingFirst([&] { java::ByteBuffer(memory, sizeof memory); });
}

TEST_F(ElementsTest, ANewArrayOfAClassThatIsGiven) {
  std::vector<Local<Named>> elements;
  elements.push_back(New<Child>());
  const Local<java::Class> type = java::FindClass(Parent::JavaName);
  EXPECT_EQ(java::Call<std::string>(java::Call<Local<java::Class>>(NewArray(elements, type), "getClass"), "getName"),
            "[Lfixture.Kinds$Parent;");
  EXPECT_EQ(WhatOf<Misuse>([&] { NewArray(elements, nullptr); }), "null is given as the class of an array's elements");
  const Local<java::Class> other = java::FindClass("java/lang/Integer");
  EXPECT_THAT(WhatOf<Error>([&] { NewArray(elements, other); }), testing::StartsWith("java.lang.ArrayStoreException"));
}

TEST_F(ElementsTest, AreReadAndWrittenInPlace) {
  const Local<Array<jint>> array = NewArray(std::vector<jint>{1, 2, 3});
  {
    Elements<jint> numbers(array);
    EXPECT_EQ(numbers.size(), 3u);
    EXPECT_EQ(numbers.data(), numbers.begin());
    EXPECT_EQ(std::accumulate(numbers.begin(), numbers.end(), 0), 6);
    numbers.At(0) = 10;
    for (jint& number : numbers) number += 1;
  }
  Twice(array);
  EXPECT_THAT(Ints(array), ElementsAre(22, 6, 8));
}

TEST_F(ElementsTest, OfConstAreNotWrittenBack) {
  const Local<Array<jint>> array = NewArray(std::vector<jint>{1, 2});
  {
    const Elements<const jint> numbers(array);
    EXPECT_EQ(numbers.At(1), 2);
    const_cast<jint&>(numbers.At(1)) = 5;
  }
  EXPECT_THAT(Ints(array), ElementsAre(1, 2));
}

template <typename E>
void WorksInPlace(E value) {
  const auto array = NewArray<E>(1025);
  Elements<E>(array).At(1024) = value;
  EXPECT_EQ(Elements<const E>(array).At(1024), value);
  CriticalElements<E>(array).At(1023) = value;
  EXPECT_EQ(CriticalElements<const E>(array).At(1023), value);
  EXPECT_EQ(CriticalElements<const E>(array).At(0), E{});
}

TEST_F(ElementsTest, OfEveryNumber) {
  WorksInPlace<jboolean>(JNI_TRUE);
  WorksInPlace<jbyte>(-128);
  WorksInPlace<std::byte>(std::byte{0xFF});
  WorksInPlace<char16_t>(u'\xFFFF');
  WorksInPlace<jshort>(-32768);
  WorksInPlace<int>(1 << 30);
  WorksInPlace<jint>(1 << 30);
  WorksInPlace<jlong>(jlong{1} << 62);
  WorksInPlace<float>(0.5f);
  WorksInPlace<double>(-0.25);
}

TEST_F(ElementsTest, OutsideOfThemIsRefused) {
  const Local<Array<jint>> array = NewArray<jint>(3);
  const Local<Array<jint>> empty = NewArray<jint>(0);
  Elements<java::String> texts(NewArray<java::String>(2));
  EXPECT_EQ(WhatOf<Misuse>([&] { Elements<jint>(array).At(3); }), "index 3 is outside an array of 3");
  EXPECT_EQ(WhatOf<Misuse>([&] { CriticalElements<jint>(array).At(4); }), "index 4 is outside an array of 3");
  EXPECT_EQ(WhatOf<Misuse>([&] { Elements<jint>(empty).At(0); }), "index 0 is outside an array of 0");
  EXPECT_EQ(WhatOf<Misuse>([&] { texts.At(2); }), "index 2 is outside an array of 2");
  EXPECT_EQ(WhatOf<Misuse>([&] { texts.Set(2, "x"); }), "index 2 is outside an array of 2");
}

TEST_F(ElementsTest, OfNullOrOfAnotherClassAreRefused) {
  EXPECT_EQ(WhatOf<Misuse>([] { Elements<jint>(nullptr); }), "null is given for a Java array");
  EXPECT_EQ(WhatOf<Misuse>([] { CriticalElements<jint>(nullptr); }), "null is given for a Java array");
  EXPECT_EQ(WhatOf<Misuse>([] { Elements<std::string>(nullptr); }), "null is given for a Java array");
  const Local<Array<jlong>> longs = NewArray<jlong>(1);
  EXPECT_EQ(WhatOf<Misuse>([&] { Elements<jint>(longs.Get()); }), "A [J is given where a [I is needed");
}

TEST_F(ElementsTest, TheArrayLivesAsLongAsTheyDo) {
  Local<Array<jint>> array = NewArray<jint>(1000);
  const java::Weak<Array<jint>> weak(array);
  {
    Elements<jint> numbers(array);
    array.Reset();
    java::CallStatic<void>("java/lang/System", "gc");
    EXPECT_TRUE(weak.Lock());
    numbers.At(999) = 1;
  }
  for (int i = 0; i < 10 && weak.Lock(); ++i) java::CallStatic<void>("java/lang/System", "gc");
  EXPECT_FALSE(weak.Lock());
}

// The attachments may well have the same environment, and the same local references.
TEST_F(ElementsTest, OfAnAttachmentThatHasEndedTouchNoOtherArray) {
  std::thread([] {
    std::optional<java::Thread> thread(std::in_place, "first");
    std::optional<Elements<jint>> elements(std::in_place, NewArray<jint>(3));
    elements->At(0) = 7;
    thread.reset();
    const java::Thread second("second");
    std::vector<Local<Array<jint>>> arrays;
    for (int i = 0; i < 20; ++i) arrays.push_back(NewArray<jint>(3));
    elements.reset();
    for (const auto& array : arrays) EXPECT_EQ(Seen(array), "[I: [0, 0, 0]");
  }).join();
}

TEST_F(ElementsTest, ObjectsComeAndGoOneByOne) {
  const Local<Array<java::String>> array = NewArray(std::vector<std::string>{"a", "b", "c"});
  Elements<java::String> references(array);
  references.Set(0, "x");
  references.Set(1, references.At(2));
  references.Set(2, nullptr);
  EXPECT_EQ(Seen(array), "[Ljava.lang.String;: [x, c, null]");
  EXPECT_EQ(java::ToText(references.At(0)), "x");
  EXPECT_FALSE(references.At(2));

  Elements<std::optional<std::string>> texts(array);
  std::vector<std::optional<std::string>> all;
  for (const auto& text : texts) all.push_back(text);
  EXPECT_THAT(all, ElementsAre("x", "c", std::nullopt));
  texts.Set(2, std::string("z"));
  EXPECT_EQ(Elements<std::string>(array).At(2), "z");
}

TEST_F(ElementsTest, AreOfAnyTypeOfTheTable) {
  const auto matrix = NewArray(std::vector<std::vector<double>>{{1, 2}, {3}});
  EXPECT_EQ(Elements<std::vector<double>>(matrix).At(1), std::vector<double>{3});
  Elements<Array<jdouble>> rows(matrix);
  Elements<jdouble>(rows.At(0)).At(1) = 7;
  rows.Set(1, std::vector<double>{8, 9});
  EXPECT_EQ(Seen(matrix), "[[D: [[1.0, 7.0], [8.0, 9.0]]");
  Elements<std::optional<jint>> numbers(NewArray<Integer>(2));
  numbers.Set(0, 5);
  EXPECT_EQ(numbers.At(0), 5);
  EXPECT_EQ(numbers.At(1), std::nullopt);
}

TEST_F(ElementsTest, ANullElementAndOneOfAnotherClassAreRefused) {
  Elements<std::string> texts(NewArray<java::String>(2));
  EXPECT_EQ(WhatOf<Misuse>([&] { texts.At(1); }),
            "element [1] of a Java array is null, which its C++ type cannot be: declare the element as std::optional");
  // A Number[] that is known as an Object[] takes no text.
  Elements<Object> numbers(java::CallStatic<Local<Array<Object>>>("fixture/Arrays", "numbers"));
  EXPECT_EQ(WhatOf<Error>([&] { numbers.Set(0, "text"); }).substr(0, 29), "java.lang.ArrayStoreException");
  EXPECT_EQ(java::Call<std::string>(numbers.At(0), "toString"), "1");
}

TEST_F(ElementsTest, AMillionElementsLeaveNoReferences) {
  Elements<Object> objects(NewArray<Object>(1000));
  const Local<Object> object = New<Child>();
  for (std::size_t i = 0; i < 1000; ++i) objects.Set(i, object);
  jlong same = 0;
  for (int round = 0; round < 1000; ++round) {
    for (const Local<Object>& element : objects) same += element.Get() != nullptr;
  }
  EXPECT_EQ(same, 1000000);
}

TEST_F(ElementsTest, CriticalOnesAreTheArraysOwnMemory) {
  const Local<Array<jint>> array = NewArray<jint>(100000);
  {
    CriticalElements<jint> numbers(array);
    EXPECT_EQ(numbers.size(), 100000u);
    for (jint& number : numbers) number = 3;
  }
  Twice(array);
  EXPECT_EQ(Ints(array), std::vector<jint>(100000, 6));
}

TEST_F(ElementsTest, NothingIsCalledInACriticalScope) {
  const Local<Array<jint>> array = NewArray<jint>(4);
  Local<java::String> text = java::NewString("text");
  const std::string refused = "Java is called while CriticalElements are open in this thread";
  {
    CriticalElements<jint> numbers(array);
    EXPECT_EQ(WhatOf<Misuse>([&] { Twice(array); }), refused);
    EXPECT_EQ(WhatOf<Misuse>([] { java::NewString("x"); }), refused);
    EXPECT_EQ(WhatOf<Misuse>([] { java::Thread thread; }), refused);
    EXPECT_EQ(WhatOf<Misuse>([&] { Elements<jint>{array}; }), refused);
    EXPECT_EQ(WhatOf<Misuse>([&] { CriticalElements<jint>{array}; }), refused);
#ifdef NDEBUG
    text.Reset();  // which assertions would find out
    EXPECT_EQ(WhatOf<Misuse>([&] { Twice(array); }), refused);
#endif
    numbers.At(0) = 1;
  }
  Twice(array);
  EXPECT_THAT(Ints(array), ElementsAre(2, 0, 0, 0));
}

TEST_F(ElementsTest, AThreadThatIsGivenIsFoundOutWithAssertions) {
#ifdef NDEBUG
  GTEST_SKIP() << "this build has no assertions";
#else
  const Local<Array<jint>> array = NewArray<jint>(4);
  const java::Thread thread;
  const CriticalElements<jint> numbers(array);
  EXPECT_EQ(WhatOf<Misuse>([&] { Twice(thread, array); }),
            "Java is called while CriticalElements are open in this thread");
#endif
}

}  // namespace
}  // namespace tests
