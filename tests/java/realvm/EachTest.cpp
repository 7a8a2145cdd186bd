// Java's collections, walked through and copied.
#include <deque>
#include <list>
#include <map>
#include <set>
#include <unordered_map>

#include "java/realvm/CountedReferences.h"
#include "java/realvm/OneVm.h"

namespace tests {

// A host's own type by way of a number.
struct Price {
  jlong cents;
  friend bool operator==(const Price& a, const Price& b) { return a.cents == b.cents; }
};

}  // namespace tests

template <>
struct torvan::java::Convert<tests::Price> : ConvertAs<jlong> {
  static tests::Price From(jlong cents) { return {cents}; }
};

namespace tests {
namespace {

using java::Copy;
using java::Each;
using java::Error;
using java::Local;
using java::Misuse;
using java::Object;
using java::Ref;
using testing::ElementsAre;
using testing::Pair;

struct Collection {
  static constexpr char JavaName[] = "java/util/Collection";
};
struct ArrayList {
  static constexpr char JavaName[] = "java/util/ArrayList";
  using Super = Collection;
};
struct Map {
  static constexpr char JavaName[] = "java/util/Map";
};
struct TreeMap {
  static constexpr char JavaName[] = "java/util/TreeMap";
  using Super = Map;
};

constexpr java::Method<Collection, bool(Ref<Object>)> Add{"add"};
constexpr java::Method<Collection, bool(std::optional<jint>)> AddNumber{"add", "(Ljava/lang/Object;)Z"};
constexpr java::Method<Map, Local<Object>(Ref<Object>, std::optional<jint>)> Put{
    "put", "(Ljava/lang/Object;Ljava/lang/Object;)Ljava/lang/Object;"};

class EachTest : public RealVmTest {
 protected:
  EachTest() {
    for (const char* text : {"a", "b", "c"}) Add(texts, text);
    for (const jint number : {3, 1, 2}) AddNumber(numbers, number);
    Put(ages, "Zo\xC3\xAB", 30);
    Put(ages, "Ada", 36);
  }

  const Local<ArrayList> texts = java::New<ArrayList>();
  const Local<ArrayList> numbers = java::New<ArrayList>();
  const Local<TreeMap> ages = java::New<TreeMap>();
};

TEST_F(EachTest, GoesThroughWhatIsIterable) {
  std::vector<std::string> seen;
  for (const std::string& text : Each<std::string>(texts)) seen.push_back(text);
  EXPECT_THAT(seen, ElementsAre("a", "b", "c"));
  jint sum = 0;
  for (const jint number : Each<jint>(numbers)) sum += number;
  EXPECT_EQ(sum, 6);
  seen.clear();
  for (const Local<java::String>& text : Each<java::String>(texts)) seen.push_back(java::ToText(text));
  EXPECT_THAT(seen, ElementsAre("a", "b", "c"));
  for (const auto& text : Each<std::string>(java::New<ArrayList>())) ADD_FAILURE() << text;
}

TEST_F(EachTest, GoesThroughTheRestOfAnIterator) {
  const auto iterator = java::Call<Local<java::Object>>(texts, "iterator");
  java::Call<void>(iterator, "next");
  EXPECT_THAT(Copy<std::vector<std::string>>(iterator), ElementsAre("b", "c"));
  EXPECT_THAT(Copy<std::vector<std::string>>(iterator), ElementsAre());
}

TEST_F(EachTest, GoesThroughTheEntriesOfAMap) {
  std::vector<std::pair<std::string, jint>> seen;
  for (const auto& [name, age] : Each<std::pair<std::string, jint>>(ages)) seen.emplace_back(name, age);
  EXPECT_THAT(seen, ElementsAre(Pair("Ada", 36), Pair("Zo\xC3\xAB", 30)));
  jint sum = 0;
  const auto entries = java::Call<Local<Object>>(ages, "entrySet");
  for (const auto& [name, age] : Each<std::pair<java::String, Integer>>(entries)) {
    sum += java::Call<jint>(age, "intValue") + (name ? 1 : 0);
  }
  EXPECT_EQ(sum, 68);
  EXPECT_THAT(Copy<std::set<std::string>>(java::Call<Local<Object>>(ages, "keySet")), ElementsAre("Ada", "Zo\xC3\xAB"));
}

TEST_F(EachTest, ElementsMayBeMovedOut) {
  std::vector<Local<Object>> kept;
  for (Local<Object>& element : Each<Object>(texts)) kept.push_back(std::move(element));
  ASSERT_EQ(kept.size(), 3u);
  EXPECT_EQ(java::Call<std::string>(kept[2], "toString"), "c");
}

TEST_F(EachTest, EachElementIsDropped) {
  Each<Object> range(texts);
  const CountedReferences counted(java::detail::Env());
  for (const Local<Object>& element : range) EXPECT_EQ(counted.Locals(), element ? 1 : 0);
  EXPECT_EQ(counted.Locals(), 0);
}

TEST_F(EachTest, CopiesToAnyContainer) {
  EXPECT_THAT(Copy<std::vector<std::string>>(texts), ElementsAre("a", "b", "c"));
  EXPECT_THAT(Copy<std::list<std::u16string>>(texts), ElementsAre(u"a", u"b", u"c"));
  EXPECT_THAT(Copy<std::set<jint>>(numbers), ElementsAre(1, 2, 3));
  EXPECT_THAT(Copy<std::deque<std::optional<jint>>>(numbers), ElementsAre(3, 1, 2));
  EXPECT_THAT((Copy<std::map<std::string, jint>>(ages)), ElementsAre(Pair("Ada", 36), Pair("Zo\xC3\xAB", 30)));
  EXPECT_EQ((Copy<std::unordered_map<std::string, jint>>(ages).at("Ada")), 36);
  EXPECT_THAT((Copy<std::vector<std::pair<std::string, jint>>>(ages)), ElementsAre(Pair("Ada", 36), testing::_));
  EXPECT_EQ(Copy<std::vector<Local<java::String>>>(texts).size(), 3u);
  EXPECT_EQ(Copy<std::vector<java::Global<Object>>>(numbers).size(), 3u);
  EXPECT_TRUE(Copy<std::vector<std::string>>(java::New<ArrayList>()).empty());
}

TEST_F(EachTest, CopiesNestedContainersAndOwnTypes) {
  const Local<ArrayList> prices = java::New<ArrayList>();
  java::Call<void>(prices, "add", jlong{5});
  EXPECT_THAT(Copy<std::vector<Price>>(prices), ElementsAre(Price{5}));
  const Local<ArrayList> arrays = java::New<ArrayList>();
  Add(arrays, java::NewArray(std::vector<double>{1, 2}));
  EXPECT_THAT(Copy<std::vector<std::vector<double>>>(arrays), ElementsAre(ElementsAre(1, 2)));
}

TEST_F(EachTest, CopiesArrays) {
  EXPECT_THAT(Copy<std::vector<jint>>(java::NewArray(std::vector<jint>{2, 1})), ElementsAre(2, 1));
  EXPECT_THAT(Copy<std::set<jint>>(java::NewArray(std::vector<jint>{2, 1})), ElementsAre(1, 2));
  EXPECT_THAT(Copy<std::list<jint>>(java::NewArray(std::vector<jint>{2, 1, 3})), ElementsAre(2, 1, 3));
  EXPECT_THAT(Copy<std::vector<std::string>>(java::NewArray(std::vector<std::string>{"x"})), ElementsAre("x"));
  EXPECT_EQ(WhatOf<Misuse>([] { Copy<std::vector<jint>>(Ref<java::Array<jint>>(nullptr)); }),
            "null is given for a Java array");
}

TEST_F(EachTest, WhatCannotBeWalkedThroughIsRefused) {
  EXPECT_EQ(WhatOf<Misuse>([] { Copy<std::vector<std::string>>(Local<Object>()); }),
            "null is given where a Java collection is needed");
  EXPECT_EQ(WhatOf<Misuse>([] { Copy<std::vector<std::string>>(java::NewString("x")); }),
            "a java.lang.String is given where an Iterable, an Iterator or a Map is needed");
  EXPECT_EQ(WhatOf<Misuse>([&] { Copy<std::vector<std::string>>(ages); }),
            "a java.util.TreeMap is given, whose entries are std::pair: ask for these");
}

TEST_F(EachTest, ANullOrAnObjectOfAnotherClassIsRefused) {
  const std::string end = "null, which its C++ type cannot be: declare it as std::optional";
  AddNumber(numbers, std::nullopt);
  EXPECT_THAT(Copy<std::vector<std::optional<jint>>>(numbers), ElementsAre(3, 1, 2, std::nullopt));
  EXPECT_EQ(WhatOf<Misuse>([&] { Copy<std::vector<jint>>(numbers); }), "java.util.Iterator.next() returned " + end);
  EXPECT_EQ(WhatOf<Misuse>([&] { Copy<std::vector<std::string>>(numbers); }),
            "a java.lang.Integer comes from java.util.Iterator.next(), whose C++ type needs a java.lang.String");
  EXPECT_EQ(WhatOf<Misuse>([&] { Copy<std::vector<jint>>(texts); }),
            "a java.lang.String comes from java.util.Iterator.next(), whose C++ type needs a java.lang.Integer");
  Put(ages, "", std::nullopt);
  EXPECT_EQ(WhatOf<Misuse>([&] { Copy<std::map<std::string, jint>>(ages); }),
            "java.util.Map$Entry.getValue() returned " + end);
  EXPECT_EQ(WhatOf<Misuse>([&] { Copy<std::map<jint, jint>>(ages); }),
            "a java.lang.String comes from java.util.Map$Entry.getKey(), whose C++ type needs a java.lang.Integer");
  EXPECT_EQ(WhatOf<Misuse>([&] { Copy<std::map<std::string, jint>>(texts); }),
            "a java.lang.String comes from java.util.Iterator.next(), whose C++ type needs a java.util.Map$Entry");
}

TEST_F(EachTest, WhatIsPendingIsThrownFirst) {
  ExpectWhatIsPendingFirst([&] { Each<std::string>{texts}; });
  ExpectWhatIsPendingFirst([&] { Copy<std::vector<std::string>>(texts); });
}

TEST_F(EachTest, WhatJavaThrowsOnTheWayComesOut) {
  EXPECT_EQ(WhatOf<Error>([&] {
              for (const std::string& text : Each<std::string>(texts)) Add(texts, text);
            }),
            "java.util.ConcurrentModificationException");
}

}  // namespace
}  // namespace tests
