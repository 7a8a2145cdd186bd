// The hash table.
#pragma once

#include <mirel/base/At.h>
#include <mirel/base/Base.h>
#include <mirel/util/NoSuchElementException.h>
#include <rx/Memory.h>

#include <cstddef>
#include <cstring>

namespace mirel::util {

// Maps keys to values, both by value, through chained buckets.
// Keys are compared by hash and then with operator==. The table grows and never shrinks. Throws CMemoryException (no
// message) when memory runs out, and the table is then unchanged; CNoSuchElementException (no message) for a key that
// is not there.
template <typename K, typename V>
class CHashtable {
 public:
  // Makes an empty table of `initialCapacity` buckets (below 1: 101) that grows when the buckets are filled to
  // `loadFactor` (0, below or no number: 0.75).
  CHashtable(int (*hash)(const K&), int initialCapacity, float loadFactor)
      : m_buckets(nullptr),
        m_bucketCount(initialCapacity < 1 ? 101 : static_cast<unsigned int>(initialCapacity)),
        m_count(0),
        m_threshold(0),
        m_loadFactor(loadFactor > 0 ? loadFactor : 0.75f),
        m_hash(hash) {
    m_buckets = AllocateBuckets(m_bucketCount, base::At(282));
    m_threshold = ThresholdOf(m_bucketCount);
  }

  ~CHashtable() {
    for (unsigned int bucket = 0; bucket < m_bucketCount; ++bucket) {
      for (Entry* entry = m_buckets[bucket]; entry != nullptr;) {
        Entry* const next = entry->next;
        try {
          delete entry;
        } catch (...) {
          // The other entries still have to go.
        }
        entry = next;
      }
    }
    RX_free(m_buckets);
  }

  CHashtable(const CHashtable&) = delete;
  CHashtable& operator=(const CHashtable&) = delete;

  unsigned int GetSize() const noexcept { return m_count; }

  bool ContainsKey(const K& key) const { return *FindLink(HashOf(key), key) != nullptr; }

  // Returns the value stored for a key; it stays where it is until the key is removed.
  V& Get(const K& key) const {
    Entry* const entry = *FindLink(HashOf(key), key);
    if (entry == nullptr) throw CNoSuchElementException("mirel/util/Hashtable", base::At(498), nullptr, nullptr);
    return entry->value;
  }

  // Stores a copy of a value under a key, and so replaces the one stored before.
  // `previous`, if given, receives a copy of that one, or is value-initialised when there was none.
  void Put(const K& key, const V& value, V* previous = nullptr) {
    const unsigned int hash = HashOf(key);
    if (Entry* const entry = *FindLink(hash, key)) {
      if (previous != nullptr) *previous = entry->value;
      entry->value = value;
      return;
    }
    if (m_count < m_threshold) {
      Entry*& head = m_buckets[BucketOf(hash, m_bucketCount)];
      head = new Entry(hash, key, value, head);
      ++m_count;
    } else {
      Rehash();
      Put(key, value);
    }
    if (previous != nullptr) *previous = V();
  }

  // Removes a key and returns a copy of its value.
  V Remove(const K& key) {
    Entry** const link = FindLink(HashOf(key), key);
    Entry* const entry = *link;
    if (entry == nullptr) throw CNoSuchElementException("mirel/util/Hashtable", base::At(580), nullptr, nullptr);
    V value(entry->value);
    *link = entry->next;
    --m_count;
    delete entry;
    return value;
  }

 private:
  struct Entry : base::CBase {
    Entry(unsigned int h, const K& k, const V& v, Entry* n) : hash(h), key(k), value(v), next(n) {}

    unsigned int hash;
    K key;
    V value;
    Entry* next;
  };

  static Entry** AllocateBuckets(unsigned int count, base::At line) {
    const std::size_t size = count * sizeof(Entry*);
    auto buckets = static_cast<Entry**>(RX_malloc(size));
    if (buckets == nullptr) base::CBase::_ThrowMemoryException("mirel/util/Hashtable", line);
    std::memset(static_cast<void*>(buckets), 0, size);
    return buckets;
  }

  static unsigned int BucketOf(unsigned int hash, unsigned int count) noexcept { return (hash & 0x7fffffffu) % count; }

  unsigned int ThresholdOf(unsigned int buckets) const noexcept {
    const float threshold = static_cast<float>(buckets) * m_loadFactor;
    // The language leaves open what a number beyond the type becomes: such a table just never grows.
    return threshold < 4294967296.0f ? static_cast<unsigned int>(threshold) : 0xFFFFFFFFu;
  }

  unsigned int HashOf(const K& key) const { return static_cast<unsigned int>(m_hash(key)); }

  // The link that points at the key's entry: the bucket's head, or the `next` of the entry before it. It holds null
  // when the key is not there.
  Entry** FindLink(unsigned int hash, const K& key) const {
    Entry** link = &m_buckets[BucketOf(hash, m_bucketCount)];
    while (*link != nullptr && !((*link)->hash == hash && (*link)->key == key)) link = &(*link)->next;
    return link;
  }

  void Rehash() {
    // Growing ends with the 32-bit bucket count. A table that would have no room even then does not grow.
    if (m_bucketCount > 0x7FFFFFFFu || ThresholdOf(0xFFFFFFFFu) == 0) {
      base::CBase::_ThrowMemoryException("mirel/util/Hashtable", base::At(649));
    }
    const unsigned int bucketCount = m_bucketCount * 2 + 1;
    Entry** const buckets = AllocateBuckets(bucketCount, base::At(649));
    for (unsigned int bucket = 0; bucket < m_bucketCount; ++bucket) {
      for (Entry* entry = m_buckets[bucket]; entry != nullptr;) {
        Entry* const next = entry->next;
        Entry*& head = buckets[BucketOf(entry->hash, bucketCount)];
        entry->next = head;
        head = entry;
        entry = next;
      }
    }
    RX_free(m_buckets);
    m_buckets = buckets;
    m_bucketCount = bucketCount;
    m_threshold = ThresholdOf(bucketCount);
  }

  Entry** m_buckets;
  unsigned int m_bucketCount;
  unsigned int m_count;
  unsigned int m_threshold;
  float m_loadFactor;
  int (*m_hash)(const K&);
};

}  // namespace mirel::util
