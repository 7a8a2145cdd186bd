// What a hash table holds after memory ran out or an element threw, and tables as the library makes them.
#include "foundation/mirel/util/HashtableSupport.h"

#include <mirel/base/Ref.h>
#include <mirel/util/HashCode.h>

#include <limits>

namespace tests {
namespace {

using mirel::base::CMemoryException;

class HashtableFailureTest : public ContainerTest {};

TEST_F(HashtableFailureTest, ConstructionWithoutMemoryThrows) {
  allocations.Fail(1);
  EXPECT_EQ(FailureOf([] { Table(HashOfKey, 101, 0.75f); }),
            Throws<CMemoryException>("mirel/util/Hashtable", 282, nullptr));
}

TEST_F(HashtableFailureTest, EveryPutThatFailsLeavesTheContents) {
  struct Failing {
    int allocation;
    const char* file;
    unsigned int line;
    unsigned int buckets;
  };
  // The 76th key: first the new buckets are allocated, then the entry.
  for (const Failing& failing : {Failing{1, "mirel/util/Hashtable", 649, 101}, Failing{2, nullptr, 0, 203}}) {
    SCOPED_TRACE(failing.allocation);
    Table table(HashOfKey, 101, 0.75f);
    Fill(table, 0, 75);
    const std::size_t live = allocations.Live();
    Counted previous(99);
    allocations.Fail(failing.allocation);
    const Failure failure = FailureOf([&] { table.Put(Key{75, 75}, Counted(75), &previous); });
    EXPECT_EQ(failure.type, typeid(CMemoryException));
    EXPECT_EQ(failure.message, "(null)");
    if (failing.file != nullptr) {
      EXPECT_EQ(failure.file, failing.file);
      EXPECT_EQ(failure.line, failing.line);
    }
    EXPECT_EQ(previous.Value(), 99);
    EXPECT_EQ(allocations.Live(), live);
    EXPECT_EQ(table.GetSize(), 75u);
    EXPECT_EQ(FieldsOf<TableFields>(table).bucketCount, failing.buckets);
    for (int number = 0; number < 75; ++number) EXPECT_EQ(table.Get(Key{number, number}).Value(), number);
    EXPECT_FALSE(table.ContainsKey(Key{75, 75}));
    allocations.Fail(0);
    Fill(table, 75, 1);
    EXPECT_EQ(table.GetSize(), 76u);
  }
}

TEST_F(HashtableFailureTest, APutWithBothAllocationsSucceeds) {
  Table table(HashOfKey, 101, 0.75f);
  Fill(table, 0, 75);
  allocations.Fail(3);
  Fill(table, 75, 1);
  EXPECT_FALSE(allocations.HasFailed());
  EXPECT_EQ(allocations.Made(), 2);
}

TEST_F(HashtableFailureTest, ATableThatNoNumberOfBucketsHasRoomForDoesNotGrow) {
  for (const float loadFactor : {1e-10f, std::numeric_limits<float>::denorm_min()}) {
    SCOPED_TRACE(loadFactor);
    Table table(HashOfKey, 101, loadFactor);
    allocations.Fail(5);  // if it grew nevertheless
    EXPECT_EQ(FailureOf([&] { Fill(table, 1, 1); }), Throws<CMemoryException>("mirel/util/Hashtable", 649, nullptr));
    EXPECT_EQ(allocations.Made(), 0);
    EXPECT_EQ(FieldsOf<TableFields>(table).bucketCount, 101u);
    EXPECT_FALSE(table.ContainsKey(Key{1, 1}));
  }
}

TEST_F(HashtableFailureTest, ABucketCountThatWouldWrapAroundThrows) {
  // No machine has room for so many buckets, so the fields are written instead, and only the first bucket is used.
  Table table(HashOfKey, 1, 1);
  Fill(table, 0, 1);
  const auto real = FieldsOf<TableFields>(table);
  for (const unsigned int buckets : {0x80000000u, 0xFFFFFFFFu}) {
    SCOPED_TRACE(buckets);
    TableFields full = real;
    full.bucketCount = buckets;
    std::memcpy(static_cast<void*>(&table), &full, sizeof(full));
    allocations.Fail(1);
    EXPECT_EQ(FailureOf([&] {
                table.Put(Key{1, 0}, Counted(1));
              }),
              Throws<CMemoryException>("mirel/util/Hashtable", 649, nullptr));
    EXPECT_EQ(allocations.Made(), 0);
    std::memcpy(static_cast<void*>(&table), &real, sizeof(real));
  }
  EXPECT_EQ(table.Get(Key{0, 0}).Value(), 0);
}

TEST_F(HashtableFailureTest, APutWhoseCopyThrowsLeavesTheContents) {
  Table table(HashOfKey, 101, 0.75f);
  Fill(table, 1, 1);
  const std::size_t live = allocations.Live();
  Counted::tally.throwWhenCopied = {2};
  EXPECT_THROW(table.Put(Key{2, 1}, Counted(2)), ElementFailure);
  EXPECT_THAT(ChainOf(table, 1), ElementsAre(1));
  EXPECT_EQ(table.GetSize(), 1u);
  EXPECT_EQ(allocations.Live(), live);
}

TEST_F(HashtableFailureTest, ARemovalWhoseCopyThrowsLeavesTheContents) {
  Table table(HashOfKey, 101, 0.75f);
  Fill(table, 1, 1);
  Counted::tally.throwWhenCopied = {1};
  EXPECT_THROW(table.Remove(Key{1, 1}), ElementFailure);
  EXPECT_EQ(table.Get(Key{1, 1}).Value(), 1);
  EXPECT_EQ(table.GetSize(), 1u);
}

TEST_F(HashtableFailureTest, ValuesThatThrowAtTheEndKeepNoOtherAndNoMemory) {
  {
    Table table(HashOfKey, 3, 10);
    Fill(table, 0, 6);
    Counted::tally.ForgetDone();
    Counted::tally.throwWhenDestroyed = {3, 4};
  }
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(3, 0, 4, 1, 5, 2));
  EXPECT_EQ(allocations.Live(), 0u);
}

// The table of the library: keys are texts, values counted references.
struct Library : mirel::base::CBase {
  explicit Library(int value) : counted(value) {}
  Counted counted;
};

TEST_F(HashtableFailureTest, ReferencesUnderTextsAreCounted) {
  using mirel::base::CRef;
  using mirel::base::CUnicodeString;
  static_assert(sizeof(CUnicodeString) == 16, "the entry holds the hash, the text, the reference and the next entry");
  mirel::util::CHashtable<CUnicodeString, CRef<Library>> table(mirel::util::GetCUnicodeStringHashCode, 101, 0.75f);
  table.Put(RX_TEXT("a/jvm.dll"), CRef<Library>(new Library(1)));
  EXPECT_EQ(table.Get(RX_TEXT("a/jvm.dll"))->counted.Value(), 1);
  EXPECT_FALSE(table.ContainsKey(RX_TEXT("A/jvm.dll")));

  CRef<Library> previous(new Library(9));
  table.Put(RX_TEXT("a/jvm.dll"), CRef<Library>(new Library(2)), &previous);
  EXPECT_EQ(previous->counted.Value(), 1);
  table.Put(RX_TEXT("b/jvm.dll"), previous, &previous);
  EXPECT_TRUE(previous == mirel::base::CNull());

  Counted::tally.ForgetDone();
  {
    const CRef<Library> removed = table.Remove(RX_TEXT("a/jvm.dll"));
    EXPECT_THAT(Counted::tally.destroyed, IsEmpty()) << "the copy given holds the object";
    EXPECT_FALSE(table.ContainsKey(RX_TEXT("a/jvm.dll")));
  }
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(2));
}

}  // namespace
}  // namespace tests
