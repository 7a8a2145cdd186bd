// An element that counts what is done with it.
#pragma once

#include <algorithm>
#include <vector>

namespace tests {

// What happened to all elements since the last Reset, and which of them throws.
struct Tally {
  int constructed = 0;
  int copied = 0;
  int assigned = 0;
  std::vector<int> destroyed;  // the values, in order
  std::vector<int> throwWhenCopied;
  std::vector<int> throwWhenDestroyed;

  int Live() const { return constructed + copied - static_cast<int>(destroyed.size()); }
  void ForgetDone() { *this = {Live(), 0, 0, {}, throwWhenCopied, throwWhenDestroyed}; }
};

// What a counted element throws.
struct ElementFailure {
  int value;
};

// A value whose copies and destructions are counted; it may be moved byte by byte.
class Counted {
 public:
  static inline Tally tally;

  Counted() : Counted(0) {}
  Counted(int value) : m_value(value) { ++tally.constructed; }
  Counted(const Counted& other) : m_value(other.m_value) {
    ThrowIfListed(tally.throwWhenCopied);
    ++tally.copied;
  }
  ~Counted() noexcept(false) {
    tally.destroyed.push_back(m_value);
    ThrowIfListed(tally.throwWhenDestroyed);
  }
  Counted& operator=(const Counted& other) {
    m_value = other.m_value;
    ++tally.assigned;
    return *this;
  }

  int Value() const { return m_value; }

 private:
  void ThrowIfListed(const std::vector<int>& values) const {
    if (std::count(values.begin(), values.end(), m_value) != 0) throw ElementFailure{m_value};
  }

  int m_value;
};

}  // namespace tests
