#include <mirel/base/IllegalArgumentException.h>
#include <mirel/base/MemoryException.h>
#include <mirel/util/NoSuchElementException.h>
#include <torvan/jni/options/ClassPath.h>
#include <torvan/jni/options/LibraryPath.h>

#include <memory>

#include "fakes/Allocations.h"
#include "fakes/Failure.h"
#include "fakes/TextRoom.h"
#include "jni/options/OptionSupport.h"

namespace tests {

using namespace torvan::jni;
using namespace torvan::jni::options;

namespace {

using mirel::base::CIllegalArgumentException;

class CNamedList : public CPathList {
 public:
  explicit CNamedList(const RX::UniChar* name) : CPathList(name) {}
};

std::string Separated(const std::string& text) {
  std::string result = text;
  for (char& unit : result) {
    if (unit == '|') unit = ListSeparator[0];
  }
  return result;
}

TEST(PathListTest, NeedsAName) {
  const auto invalid =
      Throws<CIllegalArgumentException>("jni/options/SystemProperty", 77, "Invalid system property name.");
  EXPECT_EQ(FailureOf([] { CNamedList list(nullptr); }), invalid);
  EXPECT_EQ(FailureOf([] { CNamedList list(RX_TEXT("")); }), invalid);
}

TEST(PathListTest, HasTheNameOfItsClassAndNoValue) {
  EXPECT_EQ(Text(CClassPath().GetName()), "java.class.path");
  EXPECT_EQ(Text(CLibraryPath().GetName()), "java.library.path");
  CClassPath list;
  list.AddPath(RX_TEXT("a.jar"));
  EXPECT_EQ(list.GetValue().GetLength(), 0u);
}

TEST(PathListTest, EmptyListRendersAsEmptyText) {
  EXPECT_EQ(Text(CClassPath().GetOptionString()), "");
  EXPECT_EQ(Text(CLibraryPath().GetOptionString()), "");
  EXPECT_EQ(Text(CNamedList(RX_TEXT("my.path")).GetOptionString()), "");
}

TEST(PathListTest, SeparatorFollowsEveryPathTheLastOneIncluded) {
  CClassPath list;
  list.AddPath(RX_TEXT("a.jar"));
  EXPECT_EQ(Text(list.GetOptionString()), Separated("-Djava.class.path=a.jar|"));
  list.AddPath(RX_TEXT("b.jar"));
  EXPECT_EQ(Text(list.GetOptionString()), Separated("-Djava.class.path=a.jar|b.jar|"));
  EXPECT_EQ(list.GetExtraInfo(), nullptr);
}

TEST(PathListTest, LibraryPathRendersWithItsOwnName) {
  CLibraryPath list;
  list.AddPath(RX_TEXT("lib"));
  EXPECT_EQ(Text(list.GetOptionString()), Separated("-Djava.library.path=lib|"));
}

TEST(PathListTest, TakesPathsAsTheyAre) {
  CClassPath list;
  list.AddPath(RX_TEXT("x"));
  list.AddPath(RX_TEXT("x"));
  list.AddPath(RX_TEXT(""));
  list.AddPath(nullptr);
  list.AddPath(RX_TEXT("a;b:c \u00FC"));
  ASSERT_EQ(list.GetPathCount(), 5u);
  EXPECT_EQ(Text(list.GetPathAt(0)), "x");
  EXPECT_EQ(Text(list.GetPathAt(1)), "x");
  EXPECT_EQ(list.GetPathAt(2).GetLength(), 0u);
  EXPECT_EQ(list.GetPathAt(3).GetLength(), 0u);
  EXPECT_EQ(Text(list.GetPathAt(4)), "a;b:c \xC3\xBC");
  EXPECT_EQ(Text(list.GetOptionString()),
            "-Djava.class.path=" + Separated("x|x|||") + "a;b:c \xC3\xBC" + ListSeparator);
}

TEST(PathListTest, ListOfOneEmptyPathIsNotEmpty) {
  CClassPath list;
  list.AddPath(RX_TEXT(""));
  EXPECT_EQ(Text(list.GetOptionString()), Separated("-Djava.class.path=|"));
}

TEST(PathListTest, RendersPathsOfAnyLength) {
  const std::string path(1000, 'p');
  CClassPath list;
  list.AddPath(Widen(path).c_str());
  EXPECT_EQ(Text(list.GetOptionString()), "-Djava.class.path=" + path + ListSeparator);
}

TEST(PathListTest, RenderingStartsWithRoomFor256UnitsAPath) {
  CClassPath list;
  for (int i = 0; i < 3; ++i) list.AddPath(RX_TEXT("x"));
  EXPECT_EQ(FirstRoomOf([&] { list.GetOptionString(); }), RoomForUnits(3 * 256));
}

TEST(PathListTest, StartsWithRoomForTenPathsAndGrowsByFive) {
  Allocations allocations;
  CClassPath list;
  const std::size_t path = sizeof(mirel::base::CUnicodeString);
  EXPECT_EQ(allocations.Taken().back().size, 10 * path);
  for (int i = 0; i < 10; ++i) {
    list.AddPath(RX_TEXT("x"));
    EXPECT_LT(allocations.Taken().back().size, 10 * path);
  }
  allocations.Fail(0);
  list.AddPath(RX_TEXT("x"));
  bool hasGrown = false;
  for (const auto& block : allocations.Taken()) hasGrown = hasGrown || block.size == 15 * path;
  EXPECT_TRUE(hasGrown);
}

TEST(PathListTest, IndexPastTheEndIsRefused) {
  CClassPath list;
  list.AddPath(RX_TEXT("x"));
  EXPECT_EQ(FailureOf([&] { list.GetPathAt(1); }),
            Throws<mirel::util::CNoSuchElementException>("mirel/util/Vector", 175, nullptr));
}

TEST(PathListTest, EqualsOneWithEqualPathsInTheSameOrder) {
  CClassPath list, equal, reversed, shorter;
  EXPECT_TRUE(list.Equals(&equal));
  for (const RX::UniChar* path : {RX_TEXT("a"), RX_TEXT("b")}) list.AddPath(path), equal.AddPath(path);
  for (const RX::UniChar* path : {RX_TEXT("b"), RX_TEXT("a")}) reversed.AddPath(path);
  shorter.AddPath(RX_TEXT("a"));
  EXPECT_TRUE(list.Equals(&equal));
  EXPECT_TRUE(equal.Equals(&list));
  EXPECT_FALSE(list.Equals(&reversed));
  EXPECT_FALSE(list.Equals(&shorter));
  EXPECT_FALSE(shorter.Equals(&list));
}

TEST(PathListTest, ClassPathAndLibraryPathAreNeverEqual) {
  CClassPath classPath;
  CLibraryPath libraryPath;
  EXPECT_FALSE(classPath.Equals(&libraryPath));
  classPath.AddPath(RX_TEXT("a"));
  libraryPath.AddPath(RX_TEXT("a"));
  EXPECT_FALSE(classPath.Equals(&libraryPath));
  EXPECT_FALSE(libraryPath.Equals(&classPath));
}

// Writes the name and value of a property into a list and leaves its paths.
void Rename(CSystemProperty& list, const CSystemProperty& property) { list = property; }

TEST(PathListTest, ComparesNamesButNotTheUnusedValue) {
  const CClassPath list;
  CClassPath withValue, otherName;
  Rename(withValue, CSystemProperty(RX_TEXT("java.class.path"), RX_TEXT("value")));
  Rename(otherName, CSystemProperty(RX_TEXT("my.path"), RX_TEXT("value")));
  EXPECT_TRUE(list.Equals(&withValue));
  EXPECT_TRUE(withValue.Equals(&list));
  EXPECT_FALSE(list.Equals(&otherName));
  EXPECT_FALSE(otherName.Equals(&list));
}

TEST(PathListTest, CopiesAsAValue) {
  CClassPath a, b;
  a.AddPath(RX_TEXT("a"));
  b.AddPath(RX_TEXT("b"));
  ExpectCopiesAsAValue(a, b);
  CLibraryPath c, d;
  c.AddPath(RX_TEXT("c"));
  d.AddPath(RX_TEXT("d"));
  ExpectCopiesAsAValue(c, d);
}

TEST(PathListTest, CopyDoesNotFollowItsOriginal) {
  CClassPath list;
  list.AddPath(RX_TEXT("a"));
  const CClassPath copy(list);
  list.AddPath(RX_TEXT("b"));
  EXPECT_EQ(Text(copy.GetOptionString()), Separated("-Djava.class.path=a|"));
}

TEST(PathListTest, BaseClonesAsASystemPropertyWithoutAValue) {
  CNamedList list(RX_TEXT("my.path"));
  list.AddPath(RX_TEXT("a"));
  EXPECT_EQ(list.GetClass(), &CPathList::m_classCPathList);
  const std::unique_ptr<mirel::base::CObject> clone(list.Clone());
  ASSERT_NE(clone, nullptr);
  const mirel::base::CObject& copy = *clone;
  EXPECT_EQ(typeid(copy), typeid(CSystemProperty));
  EXPECT_EQ(Text(static_cast<const CSystemProperty&>(*clone).GetOptionString()), "-Dmy.path=");
}

class PathListFailedAddTest : public ::testing::TestWithParam<unsigned int> {};

TEST_P(PathListFailedAddTest, LeavesTheListAsItWas) {
  const unsigned int count = GetParam();
  CClassPath list;
  for (unsigned int i = 0; i < count; ++i) list.AddPath(RX_TEXT("a"));
  bool hasThrown = false;
  const int failures = FailEachAllocation(
      [&] {
        hasThrown = false;
        try {
          list.AddPath(RX_TEXT("b"));
        } catch (const mirel::base::CMemoryException&) {
          hasThrown = true;
        }
      },
      [&](int, const Allocations& allocations) {
        EXPECT_TRUE(hasThrown);
        EXPECT_EQ(list.GetPathCount(), count);
        EXPECT_EQ(Text(list.GetPathAt(count - 1)), "a");
        // A list that was full may have grown nevertheless.
        EXPECT_LE(allocations.Live(), count == 10 ? 1u : 0u);
      });
  EXPECT_GE(failures, count == 10 ? 2 : 1);
  EXPECT_EQ(list.GetPathCount(), count + 1);
}

INSTANTIATE_TEST_SUITE_P(Paths, PathListFailedAddTest, ::testing::Values(9u, 10u));

}  // namespace
}  // namespace tests
