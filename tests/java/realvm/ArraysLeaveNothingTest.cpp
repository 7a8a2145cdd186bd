// Operations on arrays, buffers and collections leave no reference, whether they succeed or fail.
#include <map>

#include "java/realvm/NothingLeft.h"

namespace tests {
namespace {

using java::Array;
using java::ByteBuffer;
using java::Copy;
using java::Elements;
using java::Local;
using java::NewArray;
using java::Object;
using java::Ref;
using java::StaticMethod;

using Texts = std::vector<std::string>;
using Matrix = std::vector<std::vector<double>>;

class ArraysLeaveNothingTest : public NothingLeftTest {};

constexpr StaticMethod<Texts(Texts)> SameTexts{"fixture/Arrays", "same"};
constexpr StaticMethod<Matrix(Matrix)> SameMatrix{"fixture/Arrays", "same"};
constexpr StaticMethod<std::vector<jint>(std::vector<jint>)> SameInts{"fixture/Arrays", "same"};
constexpr StaticMethod<std::vector<std::optional<jint>>(std::vector<std::optional<jint>>)> SameNumbers{"fixture/Arrays",
                                                                                                       "same"};

struct HashMap {
  static constexpr char JavaName[] = "java/util/HashMap";
};

TEST_F(ArraysLeaveNothingTest, AfterCalls) {
  ExpectNothing([] { SameInts(std::vector<jint>(2000, 1)); });
  ExpectNothing([] { SameTexts(Texts(1000, "Zo\xC3\xAB")); });
  ExpectNothing([] { SameMatrix(Matrix(100, {1, 2})); });
  ExpectNothing([] { SameNumbers(std::vector<std::optional<jint>>{1, std::nullopt}); });
  ExpectNothing([] { java::CallStatic<Texts>("fixture/Arrays", "same", Texts{"a"}); });
  ExpectNothing([] {
    Elements<java::String> elements(NewArray(Texts(100, "x")));
    for (const auto& element : elements) elements.Set(0, element);
  });
  ExpectNothing([] { Elements<jint>(NewArray<jint>(5)).At(1) = 1; });
  ExpectNothing([] { java::CriticalElements<jint>(NewArray<jint>(5)).At(1) = 1; });
}

TEST_F(ArraysLeaveNothingTest, AfterCallsThatThrow) {
  static constexpr StaticMethod<Texts()> WithNull{"fixture/Arrays", "withNull"};
  static constexpr StaticMethod<Matrix()> WithNullRow{"fixture/Arrays", "withNullRow"};
  static constexpr StaticMethod<std::vector<jint>(Ref<Object>)> Ints{"fixture/Arrays", "same",
                                                                     "(Ljava/lang/Object;)Ljava/lang/Object;"};
  ExpectNothingOfThrowing([] { WithNull(); });
  ExpectNothingOfThrowing([] { WithNullRow(); });
  ExpectNothingOfThrowing([] { java::CallStatic<Texts>("fixture/Arrays", "withNull"); });
  ExpectNothingOfThrowing([] { SameTexts(Texts{"a", "b\xFF"}); });
  ExpectNothingOfThrowing([] { Ints("text"); });
  ExpectNothingOfThrowing([] { Elements<std::string>(NewArray<java::String>(1)).At(0); });
  ExpectNothingOfThrowing([] { Elements<jint>(NewArray<jint>(1)).At(1); });
  ExpectNothingOfThrowing([] { java::CriticalElements<jint>(NewArray<jint>(1)).At(1); });
  ExpectNothingOfThrowing([] { Copy<Texts>(NewArray<java::String>(1)); });
  ExpectNothingOfThrowing([] { Copy<Texts>(java::NewString("no collection")); });
  ExpectNothingOfThrowing([] { Copy<Texts>(java::New<HashMap>()); });
}

TEST_F(ArraysLeaveNothingTest, WhereverMemoryRunsOut) {
  ExpectNothingWhereverItFails([] { SameInts(std::vector<jint>{1, 2}); }, 2);
  ExpectNothingWhereverItFails([] { SameTexts(Texts{"a", "b"}); }, 6);
  ExpectNothingWhereverItFails([] { SameMatrix(Matrix{{1}, {2}}); }, 6);
  ExpectNothingWhereverItFails([] { SameNumbers(std::vector<std::optional<jint>>{1, 2}); }, 4);
  ExpectNothingWhereverItFails([] { Elements<jint>(NewArray<jint>(1)).At(0) = 1; }, 3);
  ExpectNothingWhereverItFails([] { java::CriticalElements<jint>(NewArray<jint>(1)).At(0) = 1; }, 3);
  ExpectNothingWhereverItFails([] { Elements<std::string>(NewArray(Texts{"x"})).At(0); }, 4);
  const Local<HashMap> map = java::New<HashMap>();
  java::Call<void>(map, "put", "key", 1);
  ExpectNothingWhereverItFails([&] { Copy<std::map<std::string, jint>>(map); }, 8);
}

TEST_F(ArraysLeaveNothingTest, WhereverTheVmMakesNoArrayAndDoesNotSayWhy) {
  ExpectNothingWhereverItFailsSilently([] { SameInts(std::vector<jint>{1, 2}); }, 1);
  ExpectNothingWhereverItFailsSilently([] { SameMatrix(Matrix{{1}, {2}}); }, 3);
  ExpectNothingWhereverItFailsSilently([] { SameTexts(Texts{"a"}); }, 1);
  ExpectNothingWhereverItFailsSilently([] { NewArray<java::String>(3); }, 1);
}

TEST_F(ArraysLeaveNothingTest, WhereverABufferFails) {
  static char memory[16];
  const auto make = [] {
    ByteBuffer(memory, sizeof memory, std::make_shared<int>(1)).Order(java::ByteOrder::LittleEndian);
  };
  ExpectNothingWhereverItFails([] { ByteBuffer(memory, sizeof memory).Order(java::ByteOrder::LittleEndian); }, 2);
  ExpectNothingWhereverItFails([] { ByteBuffer(static_cast<const void*>(memory), sizeof memory); }, 3);
  ExpectNothingWhereverItFails(make, 5);
  ExpectNothingWhereverItFailsSilently([] { ByteBuffer(memory, sizeof memory); }, 2);
  const ByteBuffer buffer(memory, sizeof memory);
  ExpectNothingWhereverItFails([&] { java::ViewOf(buffer).At(0) = std::byte{1}; }, 3);
  ExpectNothingWhereverItFails([&] { java::ViewOf<const std::byte>(buffer); }, 2);
}

TEST_F(ArraysLeaveNothingTest, WhereverALoaderFails) {
  const auto loader = java::ClassLoader::Platform();
  ExpectNothingWhereverItFails([&] { loader.FindClass("java/util/ArrayList"); }, 3);
  const java::Local<java::Class> type = java::FindClass("fixture/Arrays");
  ExpectNothingWhereverItFails([&] { java::ClassLoader::Of(type); }, 2);
  ExpectNothingWhereverItFails([&] { java::ClassLoader::System(); }, 2);
  ExpectNothingWhereverItFails([&] { java::ClassLoader::Platform(); }, 2);
  ExpectNothingWhereverItFails([] { java::ClassLoader::OfJars({TORVAN_TEST_CLASSES}).Close(); }, 5);
}

// The memory of a copy is freed, which no count of references shows.
TEST_F(ArraysLeaveNothingTest, ElementsAreReleasedOnceAndOfConstWithoutBeingCopied) {
  JNIEnv* const env = java::detail::Env();
  static const JNINativeInterface_* const real = env->functions;
  static std::vector<jint> modes;
  modes.clear();
  JNINativeInterface_ table = *real;
  table.ReleaseIntArrayElements = [](JNIEnv* e, jintArray array, jint* elements, jint mode) {
    modes.push_back(mode);
    real->ReleaseIntArrayElements(e, array, elements, mode);
  };
  table.ReleasePrimitiveArrayCritical = [](JNIEnv* e, jarray array, void* elements, jint mode) {
    modes.push_back(mode);
    real->ReleasePrimitiveArrayCritical(e, array, elements, mode);
  };
  const auto array = NewArray<jint>(5);
  env->functions = &table;
  { const Elements<jint> elements(array); }
  { const Elements<const jint> elements(array); }
  { const java::CriticalElements<jint> elements(array); }
  { const java::CriticalElements<const jint> elements(array); }
  env->functions = real;
  EXPECT_THAT(modes, testing::ElementsAre(0, JNI_ABORT, 0, JNI_ABORT));
}

// Where the VM has no room for as many references as the array has elements, they are made nevertheless.
TEST_F(ArraysLeaveNothingTest, WithoutRoomForAllReferences) {
  JNIEnv* const env = java::detail::Env();
  static const JNINativeInterface_* const real = env->functions;
  static int refused = 0;
  JNINativeInterface_ table = *real;
  table.EnsureLocalCapacity = [](JNIEnv* e, jint) -> jint {
    ++refused;
    jclass const type = real->FindClass(e, "java/lang/OutOfMemoryError");
    real->ThrowNew(e, type, "as the test wants");
    real->DeleteLocalRef(e, type);
    return JNI_ENOMEM;
  };
  const auto array = NewArray(Texts{"a", "b"});
  env->functions = &table;
  const auto elements = Copy<std::vector<Local<java::String>>>(array);
  env->functions = real;
  EXPECT_EQ(refused, 1);
  ASSERT_EQ(elements.size(), 2u);
  EXPECT_EQ(java::ToText(elements[1]), "b");
  EXPECT_EQ(env->ExceptionCheck(), JNI_FALSE);
}

}  // namespace
}  // namespace tests
