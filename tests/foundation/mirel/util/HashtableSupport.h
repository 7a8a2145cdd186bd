// Hash tables of counted values; each call of a key's hash is counted.
#pragma once

#include "foundation/mirel/util/ContainerTest.h"

#include <mirel/base/MemoryException.h>
#include <mirel/util/Hashtable.h>

namespace tests {

// A key with a hash of the test's choice. Keys with the same number are equal.
struct Key {
  int number;
  int hash;
};
inline bool operator==(const Key& left, const Key& right) { return left.number == right.number; }

inline int hashCalls = 0;
inline int HashOfKey(const Key& key) {
  ++hashCalls;
  return key.hash;
}

using Table = mirel::util::CHashtable<Key, Counted>;

struct EntryFields {
  unsigned int hash;
  Key key;
  int value;
  const EntryFields* next;
};

struct TableFields {
  const EntryFields* const* buckets;
  unsigned int bucketCount;
  unsigned int count;
  unsigned int threshold;
  float loadFactor;
  int (*hash)(const Key&);
};

// The numbers of the keys in a bucket, in the order of its chain.
inline std::vector<int> ChainOf(const Table& table, unsigned int bucket) {
  std::vector<int> numbers;
  const auto fields = FieldsOf<TableFields>(table);
  for (const EntryFields* entry = fields.buckets[bucket]; entry != nullptr; entry = entry->next) {
    numbers.push_back(entry->key.number);
  }
  return numbers;
}

// Puts `count` keys that are their own hashes, `first` and those that follow it, each under itself as value.
inline void Fill(Table& table, int first, int count) {
  for (int number = first; number < first + count; ++number) table.Put(Key{number, number}, Counted(number));
}

}  // namespace tests
