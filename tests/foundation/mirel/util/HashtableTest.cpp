#include "foundation/mirel/util/HashtableSupport.h"

#include <mirel/util/NoSuchElementException.h>

#include <limits>

namespace tests {
namespace {

using mirel::util::CNoSuchElementException;

static_assert(sizeof(Table) == 32);
static_assert(sizeof(mirel::util::CHashtable<int, int>) == 32);

class HashtableTest : public ContainerTest {};

TEST_F(HashtableTest, HoldsItsFieldsInPublishedOrder) {
  Table table(HashOfKey, 11, 0.5f);
  Fill(table, 3, 1);
  const auto fields = FieldsOf<TableFields>(table);
  EXPECT_EQ(fields.bucketCount, 11u);
  EXPECT_EQ(fields.count, 1u);
  EXPECT_EQ(fields.threshold, 5u);
  EXPECT_EQ(fields.loadFactor, 0.5f);
  EXPECT_EQ(fields.hash, &HashOfKey);
  const EntryFields* const entry = fields.buckets[3];
  ASSERT_NE(entry, nullptr);
  EXPECT_EQ(entry->hash, 3u);
  EXPECT_EQ(entry->key.number, 3);
  EXPECT_EQ(entry->value, 3);
  EXPECT_EQ(entry->next, nullptr);
  EXPECT_EQ(allocations.LastSize(), sizeof(EntryFields));
  for (unsigned int bucket = 0; bucket < 11; ++bucket) EXPECT_EQ(fields.buckets[bucket] != nullptr, bucket == 3);
}

TEST_F(HashtableTest, CapacityAndLoadFactorHaveDefaults) {
  struct Row {
    const char* name;
    int capacity;
    float loadFactor;
    unsigned int buckets, threshold;
  };
  const Row rows[] = {
      {"both by default", 0, 0, 101, 75},
      {"negative ones", -5, -1, 101, 75},
      {"as the pool asks", 101, 0.75f, 101, 75},
      {"one bucket", 1, 0.75f, 1, 0},
      {"rounded toward zero", 203, 0.75f, 203, 152},
      {"load factor above one", 3, 2.5f, 3, 7},
      {"capacity by default only", 0, 0.5f, 101, 50},
      {"load factor by default only", 10, 0, 10, 7},
      {"no number", 101, std::numeric_limits<float>::quiet_NaN(), 101, 75},
      {"the last threshold that fits", 1, 4294967040.0f, 1, 4294967040u},
      {"the first threshold that does not", 1, 4294967296.0f, 1, 0xFFFFFFFFu},
      {"a threshold beyond 64 bits", 101, 1e20f, 101, 0xFFFFFFFFu},
      {"the largest load factor", 101, std::numeric_limits<float>::max(), 101, 0xFFFFFFFFu},
      {"infinity", 101, std::numeric_limits<float>::infinity(), 101, 0xFFFFFFFFu},
      {"minus infinity", 101, -std::numeric_limits<float>::infinity(), 101, 75},
      {"the smallest load factor", 101, std::numeric_limits<float>::denorm_min(), 101, 0},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    const Table table(HashOfKey, row.capacity, row.loadFactor);
    const auto fields = FieldsOf<TableFields>(table);
    EXPECT_EQ(fields.bucketCount, row.buckets);
    EXPECT_EQ(fields.threshold, row.threshold);
    EXPECT_EQ(allocations.LastSize(), row.buckets * sizeof(void*));
    EXPECT_EQ(table.GetSize(), 0u);
  }
}

TEST_F(HashtableTest, TheBucketIsTheHashWithoutItsSignModuloTheBucketCount) {
  struct Row {
    int hash;
    unsigned int storedHash, bucket;
  };
  const Row rows[] = {{0, 0, 0}, {101, 101, 0}, {205, 205, 3}, {-1, 0xFFFFFFFF, 33}, {-5, 0xFFFFFFFB, 29}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.hash);
    Table table(HashOfKey, 101, 0.75f);
    table.Put(Key{1, row.hash}, Counted(7));
    EXPECT_THAT(ChainOf(table, row.bucket), ElementsAre(1));
    EXPECT_EQ(FieldsOf<TableFields>(table).buckets[row.bucket]->hash, row.storedHash);
    EXPECT_EQ(table.Get(Key{1, row.hash}).Value(), 7);
  }
}

TEST_F(HashtableTest, TellsWhichKeysItHolds) {
  Table table(HashOfKey, 101, 0.75f);
  EXPECT_FALSE(table.ContainsKey(Key{1, 1}));
  Fill(table, 1, 1);
  EXPECT_TRUE(table.ContainsKey(Key{1, 1}));
  EXPECT_FALSE(table.ContainsKey(Key{2, 1})) << "the same hash, another key";
  EXPECT_FALSE(table.ContainsKey(Key{1, 102})) << "an equal key with another hash in the same bucket";
}

TEST_F(HashtableTest, GetReturnsTheStoredValueItself) {
  Table table(HashOfKey, 101, 0.75f);
  Fill(table, 1, 1);
  table.Get(Key{1, 1}) = Counted(9);
  EXPECT_EQ(table.Get(Key{1, 1}).Value(), 9);
}

TEST_F(HashtableTest, AnAbsentKeyThrows) {
  Table table(HashOfKey, 101, 0.75f);
  Fill(table, 1, 2);
  for (const Key& key : {Key{3, 3}, Key{4, 1}, Key{1, 102}}) {
    EXPECT_EQ(FailureOf([&] { table.Get(key); }),
              Throws<CNoSuchElementException>("mirel/util/Hashtable", 498, nullptr));
    EXPECT_EQ(FailureOf([&] { table.Remove(key); }),
              Throws<CNoSuchElementException>("mirel/util/Hashtable", 580, nullptr));
  }
  EXPECT_EQ(table.GetSize(), 2u);
}

TEST_F(HashtableTest, NewEntriesStandAtTheHeadOfTheirChain) {
  Table table(HashOfKey, 101, 0.75f);
  for (int number : {1, 2, 3}) table.Put(Key{number, 7}, Counted(number));
  EXPECT_THAT(ChainOf(table, 7), ElementsAre(3, 2, 1));
}

TEST_F(HashtableTest, EntriesWithIdenticalHashesAreRemovedFromEveryPlaceOfTheChain) {
  struct Row {
    const char* name;
    int removed;
    std::vector<int> left;
  };
  const Row rows[] = {{"head", 3, {2, 1}}, {"middle", 2, {3, 1}}, {"end", 1, {3, 2}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    Table table(HashOfKey, 101, 0.75f);
    for (int number : {1, 2, 3}) table.Put(Key{number, 7}, Counted(10 * number));
    EXPECT_EQ(table.Remove(Key{row.removed, 7}).Value(), 10 * row.removed);
    EXPECT_EQ(ChainOf(table, 7), row.left);
    EXPECT_EQ(table.GetSize(), 2u);
    for (int number : row.left) EXPECT_EQ(table.Get(Key{number, 7}).Value(), 10 * number);
  }
}

TEST_F(HashtableTest, RemoveCopiesTheValueOutBeforeItDestroysTheStoredOne) {
  Table table(HashOfKey, 101, 0.75f);
  Fill(table, 1, 1);
  Counted::tally.ForgetDone();
  const std::size_t live = allocations.Live();
  const Counted removed = table.Remove(Key{1, 1});
  EXPECT_EQ(Counted::tally.copied, 1);
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(1));
  EXPECT_EQ(allocations.Live(), live - 1);
}

TEST_F(HashtableTest, PutOfAPresentKeyReplacesTheValueOnly) {
  Table table(HashOfKey, 101, 0.75f);
  Fill(table, 1, 3);
  const int made = allocations.Made();
  table.Put(Key{2, 2}, Counted(20));
  EXPECT_EQ(allocations.Made(), made);
  EXPECT_EQ(table.GetSize(), 3u);
  EXPECT_EQ(table.Get(Key{2, 2}).Value(), 20);
}

TEST_F(HashtableTest, PutReturnsThePreviousValue) {
  Table table(HashOfKey, 1, 1);
  Counted previous(99);
  table.Put(Key{1, 1}, Counted(10), &previous);
  EXPECT_EQ(previous.Value(), 0) << "there was none";
  table.Put(Key{1, 1}, Counted(11), &previous);
  EXPECT_EQ(previous.Value(), 10);
  table.Put(Key{2, 2}, Counted(20), &previous);
  EXPECT_EQ(FieldsOf<TableFields>(table).bucketCount, 3u);
  EXPECT_EQ(previous.Value(), 0) << "there was none, and the table has grown";
}

TEST_F(HashtableTest, ThePreviousValueOfAPointerIsNullWhenThereWasNone) {
  mirel::util::CHashtable<Key, const char*> table(HashOfKey, 101, 0.75f);
  const char* previous = "left from before";
  table.Put(Key{1, 1}, "one", &previous);
  EXPECT_EQ(previous, nullptr);
}

TEST_F(HashtableTest, ThePreviousValueIsCopiedBeforeTheNewOneIsAssigned) {
  Table table(HashOfKey, 101, 0.75f);
  Fill(table, 1, 1);
  Counted value(2);
  table.Put(Key{1, 1}, value, &value);
  EXPECT_EQ(value.Value(), 1);
  EXPECT_EQ(table.Get(Key{1, 1}).Value(), 1) << "the out place was the new value, and is written first";
}

TEST_F(HashtableTest, The76thKeyOf101BucketsGrowsTheTableTo203) {
  Table table(HashOfKey, 0, 0);
  Fill(table, 0, 75);
  EXPECT_EQ(FieldsOf<TableFields>(table).bucketCount, 101u);
  table.Put(Key{5, 5}, Counted(5));
  EXPECT_EQ(FieldsOf<TableFields>(table).bucketCount, 101u) << "a present key needs no room";
  const std::size_t live = allocations.Live();
  Fill(table, 75, 1);
  const auto fields = FieldsOf<TableFields>(table);
  EXPECT_EQ(fields.bucketCount, 203u);
  EXPECT_EQ(fields.threshold, 152u);
  EXPECT_EQ(table.GetSize(), 76u);
  EXPECT_EQ(allocations.Live(), live + 1) << "one entry more; the old buckets are freed";
  for (int number = 0; number < 76; ++number) EXPECT_EQ(table.Get(Key{number, number}).Value(), number);
}

TEST_F(HashtableTest, RehashingReversesChainsAndPutsTheNewKeyInFront) {
  Table table(HashOfKey, 101, 0.04f);  // grows with the 5th key
  const int both = 101 * 203;          // in bucket 0 before and after
  for (int times : {1, 2, 3}) table.Put(Key{times, times * both}, Counted(times));
  table.Put(Key{4, 101}, Counted(4));
  EXPECT_THAT(ChainOf(table, 0), ElementsAre(4, 3, 2, 1));
  hashCalls = 0;
  table.Put(Key{5, 0}, Counted(5));
  EXPECT_EQ(hashCalls, 2) << "the new key's, before and after; stored hashes serve for the rest";
  EXPECT_THAT(ChainOf(table, 0), ElementsAre(5, 1, 2, 3));
  EXPECT_THAT(ChainOf(table, 101), ElementsAre(4));
}

TEST_F(HashtableTest, RehashingMovesEntriesWithoutCopies) {
  Table table(HashOfKey, 3, 1);
  Fill(table, 0, 3);
  const Counted* const value = &table.Get(Key{2, 2});
  Counted::tally.ForgetDone();
  table.Put(Key{3, 3}, Counted(3));
  EXPECT_EQ(Counted::tally.copied, 1);
  EXPECT_EQ(&table.Get(Key{2, 2}), value);
}

TEST_F(HashtableTest, ATableWithoutRoomGrowsUntilOneKeyFits) {
  Table table(HashOfKey, 1, 0.25f);
  Fill(table, 0, 1);
  EXPECT_EQ(FieldsOf<TableFields>(table).bucketCount, 7u);
  EXPECT_EQ(FieldsOf<TableFields>(table).threshold, 1u);
}

TEST_F(HashtableTest, ALoadFactorWithoutBoundsLetsTheTableNeverGrow) {
  for (const float loadFactor : {1e20f, std::numeric_limits<float>::infinity()}) {
    SCOPED_TRACE(loadFactor);
    Table table(HashOfKey, 3, loadFactor);
    Fill(table, 0, 100);
    EXPECT_EQ(FieldsOf<TableFields>(table).bucketCount, 3u);
    EXPECT_EQ(table.Get(Key{99, 99}).Value(), 99);
  }
}

TEST_F(HashtableTest, ATableNeverShrinks) {
  Table table(HashOfKey, 3, 1);
  Fill(table, 0, 4);
  for (int number = 0; number < 4; ++number) table.Remove(Key{number, number});
  EXPECT_EQ(table.GetSize(), 0u);
  EXPECT_EQ(FieldsOf<TableFields>(table).bucketCount, 7u);
}

TEST_F(HashtableTest, TheEndDestroysEntriesInTheOrderOfBucketsAndChains) {
  {
    Table table(HashOfKey, 3, 10);
    for (const Key& key : {Key{1, 2}, Key{2, 0}, Key{3, 1}, Key{4, 0}, Key{5, 1}}) table.Put(key, Counted(key.number));
    Counted::tally.ForgetDone();
  }
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(4, 2, 5, 3, 1));
  EXPECT_EQ(allocations.Live(), 0u);
}

// A counted key.
struct CountedKey : Counted {
  using Counted::Counted;
};
bool operator==(const CountedKey& left, const CountedKey& right) { return left.Value() == right.Value(); }

TEST_F(HashtableTest, AnEntryDestroysItsValueBeforeItsKey) {
  {
    mirel::util::CHashtable<CountedKey, Counted> table([](const CountedKey& key) { return key.Value(); }, 3, 1);
    table.Put(CountedKey(1), Counted(2));
    Counted::tally.ForgetDone();
  }
  EXPECT_THAT(Counted::tally.destroyed, ElementsAre(2, 1));
}

TEST_F(HashtableTest, AnEntryIsTakenOutBeforeItIsDestroyed) {
  mirel::util::CHashtable<CountedKey, Counted> table([](const CountedKey& key) { return key.Value(); }, 3, 1);
  const CountedKey key(1);
  table.Put(key, Counted(2));
  Counted::tally.throwWhenDestroyed = {1};
  EXPECT_THROW(table.Remove(key), ElementFailure);
  Counted::tally.throwWhenDestroyed = {};
  EXPECT_FALSE(table.ContainsKey(key));
  EXPECT_EQ(table.GetSize(), 0u);
  EXPECT_EQ(allocations.Live(), 1u) << "the buckets";
}

}  // namespace
}  // namespace tests
