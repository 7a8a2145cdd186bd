// Operations on arrays, buffers and collections leave no reference, whether they succeed or fail.
#include <map>

#include "java/realvm/NothingLeft.h"

namespace tests {
namespace {

using java::Array;
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
  ExpectNothingWhereverItFails([] { SameInts(std::vector<jint>{1, 2}); }, 3);
  ExpectNothingWhereverItFails([] { SameTexts(Texts{"a", "b"}); }, 6);
  ExpectNothingWhereverItFails([] { SameMatrix(Matrix{{1}, {2}}); }, 6);
  ExpectNothingWhereverItFails([] { SameNumbers(std::vector<std::optional<jint>>{1, 2}); }, 4);
  ExpectNothingWhereverItFails([] { Elements<jint>(NewArray<jint>(1)).At(0) = 1; }, 3);
  ExpectNothingWhereverItFails([] { java::CriticalElements<jint>(NewArray<jint>(1)).At(0) = 1; }, 3);
  ExpectNothingWhereverItFails([] { Elements<std::string>(NewArray(Texts{"x"})).At(0); }, 4);
  const Local<HashMap> map = java::New<HashMap>();
  java::Call<void>(map, "put", "key", 1);
  ExpectNothingWhereverItFails([&] { Copy<std::map<std::string, jint>>(map); }, 5);
}

}  // namespace
}  // namespace tests
